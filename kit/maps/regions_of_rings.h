#pragma once

#include <memory>
#include <vector>

#include "kit/base/points.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// The points of a ring, by their indices.
using PointRing = std::vector<int>;

/// Makes regions of rings, for each region its outer ring and its holes. The points that a ring
/// uses keep their order. Linear.
std::unique_ptr<CCPloy2DRg> regions_of(const std::vector<std::vector<PointRing>>& rings_of_regions,
                                       const std::vector<GridPoint>& points);

} // namespace korvel::kit
