#pragma once

#include <array>
#include <span>
#include <vector>

#include "kit/base/points.h"

namespace korvel::kit {

/// Divides a polygon into triangles that run like it, without further corners: by the diagonal of
/// four corners, else by cutting off ears (G. H. Meisters, 1975), in the plane of two axes on which
/// it is largest. Corners that coincide or are in line with their neighbours are no obstacle. A
/// polygon that crosses itself is divided somehow, and so is the rest of one after 2000 tests for
/// each corner; usual ones take few.
std::vector<std::array<int, 3>> polygon_triangles(std::span<const Point3> points,
                                                  std::span<const int> polygon);

} // namespace korvel::kit
