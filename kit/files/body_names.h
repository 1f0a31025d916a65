#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kit/files/text_file.h"

// The lines by which body model files store the names of bodies:
//
//     body INDEX name TEXT TO THE END OF THE LINE
//
// They follow the bodies, before the line of a placement. What is before them is complete: the
// exact class stops reading there.

namespace korvel::kit {

/// A line for each body that has a name. Line breaks in a name become blanks.
std::string body_name_lines(std::span<const std::string> names);

/// The names that a model file stores, as many as there are bodies, or none at all. A line of
/// another form is a problem, which is thrown as an input error with the number of the line, or
/// added to a list. Takes as long as finding the lines.
std::vector<std::string> read_body_names(const TextFile& file, int bodies,
                                         std::vector<Finding>* problems = nullptr);

/// The text without such lines and what follows them.
std::string_view without_body_names(std::string_view text);

} // namespace korvel::kit
