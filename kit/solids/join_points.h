#pragma once

#include <span>
#include <vector>

#include "kit/base/points.h"

namespace korvel::kit {

/// For each point the one that it becomes when points within a tolerance are joined. A point
/// becomes the first of those before it that stay and are no farther away than the tolerance, else
/// it stays; so no two points that stay are that near. With a tolerance of 0 only points of equal
/// coordinates are joined. Coordinates must be finite. n log n, as long as few points share a cube
/// of the size of the tolerance.
std::vector<int> joined_points(std::span<const Point3> points, double tolerance);

} // namespace korvel::kit
