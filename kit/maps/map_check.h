#pragma once

#include "kit/files/file_kind.h"
#include "kit/files/findings.h"

// Checks of the meaning of a whole file. Indices of -1 have been reported before and are skipped.

namespace korvel::kit {

void check_curves(const FileContents& contents, Findings& out);
void check_regions(const FileContents& contents, Findings& out);
void check_triangles(const FileContents& contents, Findings& out);

} // namespace korvel::kit
