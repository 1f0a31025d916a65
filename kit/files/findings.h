#pragma once

#include <vector>

#include "kit/files/file_kind.h"
#include "kit/files/text_file.h"

namespace korvel::kit {

/// What a check of a file brings to light, in the order of the lines.
struct Findings {
    std::vector<Finding> problems; ///< something is wrong
    std::vector<Finding> notes;    ///< something is odd, but means no harm
};

/// Checks everything about a file of a kind: its words first, and if they can be told apart, what
/// they mean. Where a count is wrong or missing the check ends there.
Findings check_file(const TextFile& file, FileKind kind);

// What the words of a whole file mean. Indices of -1 have been reported and are passed over.
void check_curves(const FileContents& contents, Findings& out);
void check_regions(const FileContents& contents, Findings& out);
void check_triangles(const FileContents& contents, Findings& out);
void check_section(const FileContents& contents, Findings& out);
void check_model(const FileContents& contents, Findings& out);

/// Adds a note on how many of the things are not in use, if there are any: "3 points belong to no
/// ring, the first is point 7".
void note_unused(const std::vector<bool>& is_used, const std::vector<int>& lines,
                 const char* things, const char* wholes, Findings& out);

} // namespace korvel::kit
