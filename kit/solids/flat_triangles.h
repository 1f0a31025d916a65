#pragma once

#include <vector>

#include "kit/solids/mesh_triangles.h"

namespace korvel::kit {

/// Removes triangles that have three points in a line, given by their positions. Where an
/// even number of triangles meet at its longest edge, another one of them is divided at the point
/// between, so that a surface stays closed. Near-linear.
void remove_flat_triangles(TriangleList& list, std::vector<int> flat);

} // namespace korvel::kit
