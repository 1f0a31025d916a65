#pragma once

#include <optional>
#include <string>

#include "kit/files/records.h"
#include "kit/files/text_file.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// Reads a polygon-region file into an empty set with `CCPloy2DRg::readpolyrg`, after checking what
/// that call takes on trust: counts, numbers and indices. Throws an input error at the first thing
/// that does not fit.
///
/// Coordinates pass through single precision. The result names the first whole-numbered coordinate
/// that this changes, if there is one.
std::optional<std::string> read_regions(const TextFile& file, CCPloy2DRg& out);

/// Reads points, rings and regions from words, coordinates in double precision. Ring and region
/// indices may come out as -1 where problems are collected.
RecordLines read_regions(WordReader& words, CCPloy2DRg& out);

/// The first coordinate that reading changes.
std::optional<Finding> first_change(const CCPloy2DRg& set, const RecordLines& lines);

} // namespace korvel::kit
