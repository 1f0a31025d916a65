#include "kit/files/mesh_triangulation.h"

#include <array>
#include <span>

#include "kit/base/polygon_triangles.h"

namespace korvel::kit {

Mesh triangulated(const Mesh& mesh) {
    Mesh made = mesh;
    if (mesh.face_ends.empty()) {
        return made;
    }
    made.corners.clear();
    made.face_ends.clear();
    made.face_colours.clear();
    std::size_t part = 0;
    for (std::size_t face = 0; face < mesh.face_count(); ++face) {
        const std::span<const std::int32_t> polygon = mesh.face(face);
        for (const std::array<int, 3>& triangle : polygon_triangles(mesh.points, polygon)) {
            made.corners.insert(made.corners.end(), triangle.begin(), triangle.end());
            if (!mesh.face_colours.empty()) {
                made.face_colours.push_back(mesh.face_colours[face]);
            }
        }
        for (; part < mesh.parts.size() && mesh.parts[part].face_end == face + 1; ++part) {
            made.parts[part].face_end = made.corners.size() / 3;
        }
    }
    return made;
}

} // namespace korvel::kit
