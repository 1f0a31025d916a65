#include "kit/solids/surface.h"

#include <algorithm>
#include <string>
#include <tuple>

#include "kit/base/disjoint_sets.h"

namespace korvel::kit {
namespace {

// A side of a face, by its vertices.
struct FaceSide {
    int low;
    int high;
    int face; // counted within the body
};

void count_edges(std::vector<FaceSide>& sides, Surface& surface);
bool names_vertices(const TMOD3D& model, const POLY3D& face);
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
    std::vector<FaceSide> sides;
    std::vector<int> vertices;
    for (const int f : model.bodies[body].polys) {
        if (f < 0 || f >= model.polys.GetSize() || !names_vertices(model, model.polys[f])) {
            continue;
        }
        const CArray<int>& corners = model.polys[f].verts;
        for (int k = 0; k < corners.GetSize(); ++k) {
            const int next = corners[(k + 1) % corners.GetSize()];
            vertices.push_back(corners[k]);
            if (corners[k] != next) {
                sides.push_back(
                    {std::min(corners[k], next), std::max(corners[k], next), surface.faces});
            }
        }
        ++surface.faces;
    }
    std::sort(vertices.begin(), vertices.end());
    surface.vertices = static_cast<int>(
        std::distance(vertices.begin(), std::unique(vertices.begin(), vertices.end())));
    count_edges(sides, surface);
    return surface;
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

void count_edges(std::vector<FaceSide>& sides, Surface& surface) {
    const auto is_before = [](const FaceSide& a, const FaceSide& b) {
        return std::tie(a.low, a.high) < std::tie(b.low, b.high);
    };
    std::sort(sides.begin(), sides.end(), is_before);
    DisjointSets pieces(surface.faces);
    for (auto side = sides.begin(); side != sides.end();) {
        const auto end = std::upper_bound(side, sides.end(), *side, is_before);
        const auto faces = end - side;
        ++surface.edges;
        surface.open_edges += faces % 2 != 0 ? 1 : 0;
        surface.crowded_edges += faces > 2 && faces % 2 == 0 ? 1 : 0;
        for (; side != end; ++side) {
            pieces.join(side->face, end[-1].face);
        }
    }
    surface.pieces = pieces.count();
}

bool names_vertices(const TMOD3D& model, const POLY3D& face) {
    return std::all_of(face.verts.begin(), face.verts.end(),
                       [&](int v) { return v >= 0 && v < model.verts.GetSize(); });
}

std::string edges_text(int edges) {
    return std::to_string(edges) + (edges == 1 ? " edge" : " edges");
}

} // namespace
} // namespace korvel::kit
