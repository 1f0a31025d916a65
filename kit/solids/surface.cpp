#include "kit/solids/surface.h"

#include <algorithm>
#include <string>

#include "kit/base/disjoint_sets.h"
#include "kit/solids/face_sides.h"

namespace korvel::kit {
namespace {

void count_edges(const std::vector<FaceSide>& sides, int positions, Surface& surface);
std::string edges_text(int edges);

} // namespace

std::vector<Surface> surfaces(const TMOD3D& model) {
    std::vector<Surface> all;
    all.reserve(static_cast<std::size_t>(model.bodies.GetSize()));
    for (int body = 0; body < model.bodies.GetSize(); ++body) {
        all.push_back(surface_of(model, body));
    }
    return all;
}

Surface surface_of(const TMOD3D& model, int body) {
    Surface surface;
    std::vector<int> vertices;
    const CArray<int>& listed = model.bodies[body].polys;
    for (const int f : listed) {
        if (is_face(model, f)) {
            const CArray<int>& corners = model.polys[f].verts;
            vertices.insert(vertices.end(), corners.begin(), corners.end());
            ++surface.faces;
        }
    }
    std::sort(vertices.begin(), vertices.end());
    surface.vertices = static_cast<int>(
        std::distance(vertices.begin(), std::unique(vertices.begin(), vertices.end())));
    count_edges(sides_of(model, body), listed.GetSize(), surface);
    return surface;
}

std::array<int, 3> sorted_corners(const POLY3D& face) {
    std::array<int, 3> ascending = {face.verts[0], face.verts[1], face.verts[2]};
    std::sort(ascending.begin(), ascending.end());
    return ascending;
}

std::string state_text(const Surface& surface) {
    if (surface.faces == 0) {
        return "empty";
    }
    if (surface.open_edges > 0) {
        return "open at " + edges_text(surface.open_edges);
    }
    if (surface.pieces > 1) {
        return "closed, in " + std::to_string(surface.pieces) + " pieces";
    }
    if (surface.crowded_edges > 0) {
        return "closed, more than two faces at " + edges_text(surface.crowded_edges);
    }
    return "closed";
}

namespace {

void count_edges(const std::vector<FaceSide>& sides, int positions, Surface& surface) {
    DisjointSets pieces(positions);
    for_each_edge(sides, [&](std::span<const FaceSide> faces) {
        ++surface.edges;
        surface.open_edges += faces.size() % 2 != 0 ? 1 : 0;
        surface.crowded_edges += faces.size() > 2 && faces.size() % 2 == 0 ? 1 : 0;
        for (const FaceSide& side : faces) {
            pieces.join(side.position, faces.back().position);
        }
    });
    surface.pieces = pieces.count() - (positions - surface.faces);
}

std::string edges_text(int edges) {
    return std::to_string(edges) + (edges == 1 ? " edge" : " edges");
}

} // namespace
} // namespace korvel::kit
