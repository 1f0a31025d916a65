#include "kit/files/mesh_colours.h"

#include <algorithm>

#include "kit/files/mesh_mark.h"

namespace korvel::kit {
namespace {

constexpr Colour white = {255, 255, 255};

} // namespace

std::vector<Colour> colours_of_faces(const Mesh& mesh) {
    const bool have_parts =
        std::any_of(mesh.parts.begin(), mesh.parts.end(),
                    [](const MeshPart& part) { return part.colour.has_value(); });
    if (!mesh.face_colours.empty() || !have_parts) {
        return mesh.face_colours;
    }
    std::vector<Colour> colours(mesh.face_count(), white);
    for (std::size_t part = 0; part < mesh.parts.size(); ++part) {
        const FaceRange faces = part_faces(mesh, part);
        std::fill(colours.begin() + static_cast<std::ptrdiff_t>(faces.begin),
                  colours.begin() + static_cast<std::ptrdiff_t>(faces.end),
                  mesh.parts[part].colour.value_or(white));
    }
    return colours;
}

std::vector<Colour> colours_of_points(const Mesh& mesh, const std::vector<Colour>& face_colours) {
    if (!mesh.point_colours.empty() || face_colours.empty() || !mesh.parts_are_bodies) {
        return mesh.point_colours;
    }
    std::vector<Colour> colours(mesh.points.size(), white);
    for (std::size_t face = mesh.face_count(); face-- > 0;) {
        for (const std::int32_t corner : mesh.face(face)) {
            colours[static_cast<std::size_t>(corner)] = face_colours[face];
        }
    }
    return colours;
}

} // namespace korvel::kit
