#pragma once

#include <optional>
#include <string>

#include "host/io/text_file.h"
#include "korvel/module/korvel.h"

namespace korvel::host {

/// True for a polygon-region file, false for a curve file. A curve file holds integers only; a
/// polygon-region file holds reals, so that its second word, the x of the first point, has a
/// decimal point.
bool holds_regions(const TextFile& file);

/// Reads a polygon-region file into an empty set with `CCPloy2DRg::readpolyrg`, after checking what
/// that call takes on trust: counts, numbers and indices. Throws InputError at the first thing that
/// does not fit.
///
/// Coordinates pass through single precision. The result names the first whole-numbered coordinate
/// that this changes, if there is one.
std::optional<std::string> read_regions(const TextFile& file, CCPloy2DRg& out);

} // namespace korvel::host
