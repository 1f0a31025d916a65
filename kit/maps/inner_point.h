#pragma once

#include <optional>

#include "kit/base/points.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// A point inside a region, far from its border as a rule: the middle of the widest stretch inside
/// it on a few lines of equal y. Nothing for a region without area. Coordinates are those of the
/// set. Linear in the corners, n log n for those that a line meets.
std::optional<Point2> inner_point(const CCPloy2DRg& set, int region);

} // namespace korvel::kit
