#pragma once

#include <vector>

#include "kit/solids/mesh_solids.h"
#include "kit/solids/mesh_triangles.h"
#include "kit/solids/surface.h"

namespace korvel::kit {

/// A body of triangles.
struct MeshBody {
    std::vector<int> triangles; ///< ascending
    std::size_t part = 0;       ///< of the mesh, that of its first triangle
    Surface surface = {};
    bool has_crowded_edges = false; ///< with more than two triangles, be it an odd number
};

/// The bodies of a mesh, in the order of their first triangles, which are turned outward. Counts
/// what they are and what is left out.
std::vector<MeshBody> bodies_of(const Mesh& mesh, TriangleList& list, MeshReport& report);

} // namespace korvel::kit
