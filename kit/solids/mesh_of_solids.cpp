#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

#include "kit/solids/mesh_solids.h"
#include "kit/solids/own_orientation.h"

namespace korvel::kit {
namespace {

std::vector<int> turns_of(const Solids& solids, const Body& body);
void append_points(const Solids& solids, const Body& body, std::vector<std::int32_t>& number_of,
                   Mesh& mesh);
void append_face(std::span<const int> vertices, bool is_turned,
                 const std::vector<std::int32_t>& number_of, Mesh& mesh);

} // namespace

Mesh mesh_of(const Solids& solids) {
    Mesh mesh;
    mesh.parts_are_bodies = true;
    mesh.placement = solids.placement();
    mesh.points.reserve(static_cast<std::size_t>(solids.vertex_count()));
    mesh.corners.reserve(3 * static_cast<std::size_t>(solids.face_count()));
    mesh.parts.reserve(static_cast<std::size_t>(solids.size()));
    const auto all = solids.faces();
    const bool are_triangles = std::all_of(
        all.begin(), all.end(), [](const Face& face) { return face.vertices().size() == 3; });
    std::vector<std::int32_t> number_of(static_cast<std::size_t>(solids.vertex_count()));
    std::size_t faces = 0;
    for (const Body body : solids) {
        append_points(solids, body, number_of, mesh);
        const std::vector<int> turns = turns_of(solids, body);
        auto turn = turns.begin();
        for (const Face face : body.faces()) {
            append_face(face.vertices(), *turn++ < 0, number_of, mesh);
            if (!are_triangles) {
                mesh.face_ends.push_back(static_cast<std::uint32_t>(mesh.corners.size()));
            }
            ++faces;
        }
        mesh.parts.push_back({body.name(), body.colour().rgb(), faces});
    }
    return mesh;
}

namespace {

// An open body has no outside; its faces run as they do in the model.
std::vector<int> turns_of(const Solids& solids, const Body& body) {
    std::vector<int> turns = own_orientation(solids.model(), body.index()).turns;
    const bool is_any_turned =
        std::any_of(turns.begin(), turns.end(), [](int turn) { return turn < 0; });
    if (is_any_turned && body.neighbours().empty() && !body.surface().is_closed()) {
        std::fill(turns.begin(), turns.end(), 1);
    }
    return turns;
}

// `number_of` becomes valid for the vertices of the body.
void append_points(const Solids& solids, const Body& body, std::vector<std::int32_t>& number_of,
                   Mesh& mesh) {
    std::vector<int> vertices;
    for (const Face face : body.faces()) {
        const std::span<const int> corners = face.vertices();
        vertices.insert(vertices.end(), corners.begin(), corners.end());
    }
    std::sort(vertices.begin(), vertices.end());
    vertices.erase(std::unique(vertices.begin(), vertices.end()), vertices.end());
    for (const int vertex : vertices) {
        number_of[vertex] = static_cast<std::int32_t>(mesh.points.size());
        mesh.points.push_back(solids.vertex(vertex));
    }
}

void append_face(std::span<const int> vertices, bool is_turned,
                 const std::vector<std::int32_t>& number_of, Mesh& mesh) {
    const auto first = static_cast<std::ptrdiff_t>(mesh.corners.size());
    for (const int vertex : vertices) {
        mesh.corners.push_back(number_of[vertex]);
    }
    if (is_turned) { // from the same corner on
        std::reverse(mesh.corners.begin() + first + 1, mesh.corners.end());
    }
}

} // namespace
} // namespace korvel::kit
