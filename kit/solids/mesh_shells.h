#pragma once

#include <vector>

#include "kit/solids/box.h"
#include "kit/solids/mesh_triangles.h"
#include "kit/solids/triangle_sides.h"

namespace korvel::kit {

/// Triangles that edges connect.
struct Shell {
    std::vector<int> triangles; ///< ascending
    bool is_closed = true;
    bool is_turned_alike = true; ///< its triangles run like their neighbours in the mesh
    double volume = 0;           ///< with its triangles' turns; 0 if it is open
    Box box;
};

/// The shells of some triangles, in the order of their first triangles.
struct Shells {
    std::vector<Shell> shells;
    int doubled = 0;                 ///< triangles that are in none, because they equal others
    std::vector<TriangleSide> sides; ///< of the triangles, but of some that are in none
};

/// Connects triangles over edges. Where an edge has more than two, those are neighbours between
/// which the inside of a body is, so that bodies that touch stay apart. `turns` becomes, for each
/// triangle, 1 if it runs as in the mesh, else −1: most of a shell run as in the mesh. Triangles
/// that equal others are left out: those that run alike, but one; of a closed shell both of a pair.
/// Near-linear.
Shells shells_of(const TriangleList& list, const std::vector<int>& triangles,
                 std::vector<signed char>& turns);

} // namespace korvel::kit
