#pragma once

#include "kit/files/file_kind.h"
#include "kit/files/findings.h"

namespace korvel::kit {

/// Checks the faces and groups of a section. Indices of -1 have been reported before.
void check_section(const FileContents& contents, Findings& out);

} // namespace korvel::kit
