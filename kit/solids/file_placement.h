#pragma once

#include <span>

#include "kit/base/placement.h"
#include "kit/base/points.h"
#include "kit/solids/solids.h"

namespace korvel::kit {

/// The placement with which a file keeps points: that which they have if its grid is set, or if six
/// decimals in single precision move none by more than 2^-24 of their extent, else one with a
/// decimal step. Its origin is 0 where the points are on the grid and near 0, else a round number
/// near their middle, so that at least 24 bits around it are kept. Linear.
Placement placement_for_file(std::span<const Point3> points, const Placement& present = {});
Placement placement_for_file(const Solids& solids);

} // namespace korvel::kit
