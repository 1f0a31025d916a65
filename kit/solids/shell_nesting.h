#pragma once

#include <vector>

#include "kit/solids/mesh_shells.h"

namespace korvel::kit {

/// For each shell the one directly around it, or −1: the smallest closed one that contains an inner
/// point of it. Open shells contain nothing and are in nothing. By a ray for each closed shell,
/// which meets the triangles of those around it, and a tree of boxes.
std::vector<int> shells_around(const TriangleList& list, const std::vector<Shell>& shells);

} // namespace korvel::kit
