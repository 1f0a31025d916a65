#pragma once

#include "kit/files/file_kind.h"
#include "kit/files/findings.h"

namespace korvel::kit {

/// Checks the faces and bodies of a model. Indices of -1 have been reported before and are skipped.
void check_model(const FileContents& contents, Findings& out);

} // namespace korvel::kit
