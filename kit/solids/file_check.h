#pragma once

#include "kit/files/file_kind.h"
#include "kit/files/findings.h"

namespace korvel::kit {

/// Checks a file of a kind: its words first, and if all of them are read, their meaning. The check
/// ends at a wrong or missing count.
Findings check_file(const TextFile& file, FileKind kind);

/// Checks the meaning of a file that was read whole.
Findings check_contents(const FileContents& contents, FileKind kind);

} // namespace korvel::kit
