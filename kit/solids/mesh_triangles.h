#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "kit/base/points.h"
#include "kit/files/mesh.h"
#include "kit/solids/mesh_solids.h"

namespace korvel::kit {

/// The faces of a mesh as triangles over joined points, none without area.
struct TriangleList {
    std::vector<Point3> points; ///< those of the mesh, some not used any more
    std::vector<std::array<int, 3>> corners;
    std::vector<int> faces;             ///< of the mesh, ascending
    std::vector<int> empty_faces;       ///< of the mesh, those that have no triangle
    std::vector<std::size_t> part_ends; ///< after the last triangle of each part, one at least

    std::size_t size() const { return corners.size(); }
};

/// Joins points, within a part where parts are bodies, divides faces and leaves out those without
/// area.
TriangleList triangles_of(const Mesh& mesh, const MeshSolidsOptions& options, MeshReport& report);

} // namespace korvel::kit
