#pragma once

#include <cstdio>
#include <vector>

#include "kit/files/file_kind.h"
#include "kit/files/repair.h"

// Repairs of files that were read whole, all indices in range. The lines of the records that remain
// stay those of the file.

namespace korvel::kit {

/// Removes repeated points of curves, then curves of fewer than two points.
void repair_curves(FileContents& contents, std::vector<Repair>& out);

/// Removes points that a ring repeats, rings without area and regions whose outer ring has none,
/// then the rings and points that nothing uses.
void repair_regions(FileContents& contents, std::vector<Repair>& out);

void write_curve_file(const FileContents& contents, FILE* out);
void write_region_file(const FileContents& contents, FILE* out);

} // namespace korvel::kit
