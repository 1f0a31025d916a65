#pragma once

#include <string>

namespace korvel::host {

/// "1 region", "2 regions".
std::string counted(int number, const char* thing);

/// An area in plain digits, exact for polygons on the integer lattice as long as a double holds it.
std::string area_text(double area);

/// Tells the user on standard error of something that is odd but does not stop the command.
void warn(const std::string& message);

} // namespace korvel::host
