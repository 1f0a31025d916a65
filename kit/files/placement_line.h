#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kit/base/placement.h"
#include "kit/files/text_file.h"

// The line by which polygon-region, body model and section files store a placement:
//
//     grid STEP origin X Y [Z] [down] [reference TEXT TO THE END OF THE LINE]
//
// It is the last line that is not blank. What is before it is complete: the exact classes stop
// reading there.

namespace korvel::kit {

/// The line of a placement with its end; empty for a plain one. Numbers have the digits that read
/// back as the same placement; line breaks in the reference become blanks.
std::string placement_line(const Placement& placement);

/// The placement that a file stores; a plain one if its last line begins with another word than
/// `grid`. A line of another form is a problem, which is thrown as an input error with the number
/// of the line, or added to a list. Takes as long as finding the line.
Placement read_placement(const TextFile& file, std::vector<Finding>* problems = nullptr);

/// The text without such a line: all of it if there is none.
std::string_view without_placement(std::string_view text);

} // namespace korvel::kit
