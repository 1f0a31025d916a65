#pragma once

#include <string>
#include <vector>

#include "kit/files/text_file.h"

namespace korvel::kit {

/// What a check of a file finds, in the order of the lines.
struct Findings {
    std::vector<Finding> problems; ///< the file is wrong
    std::vector<Finding> notes;    ///< unusual, but harmless
};

/// Adds a note on the records that are not in use, if there are any: "point 7 and 2 more belong to
/// no ring". `lines` are the lines of the records.
void note_unused(const std::vector<bool>& is_used, const std::vector<int>& lines,
                 const char* things, const char* wholes, Findings& out);

/// "ring 7".
std::string numbered(const char* thing, int number);

} // namespace korvel::kit
