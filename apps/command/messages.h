#pragma once

#include <string>

namespace korvel::command {

/// "1 region", "2 regions".
std::string counted(int number, const char* thing);
/// "1 body", "2 bodies".
std::string counted(int number, const char* thing, const char* things);

/// A number in up to 15 digits; exact for areas of polygons on the integer lattice as long as that
/// is enough.
std::string number_text(double area);

/// "x 0 to 10, y -5 to 5, z 1 to 2" from pairs of minimum and maximum for each of the first axes.
std::string bounds_text(const double* pairs, int axes);

/// Tells the user on standard error of something that is odd but does not stop the command.
void warn(const std::string& message);

/// Makes the exit status 3 once the command is done and all its files are written: the result
/// leaves out something of the input, and the user asked for a strict run.
void note_incomplete();
bool is_incomplete();

} // namespace korvel::command
