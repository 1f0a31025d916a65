#include "kit/maps/delaunay.h"

#include "kit/maps/delaunay_mesh.h"

namespace korvel::kit {
namespace {

std::optional<std::vector<int>> force_ring(DelaunayMesh& mesh, const std::vector<int>& ring,
                                           int difference);
void find_triangles_inside(const DelaunayMesh& mesh, DelaunayTriangles& found);

} // namespace

DelaunayTriangles delaunay_triangles(const Outline& outline) {
    DelaunayTriangles found;
    if (outline.rings.empty()) {
        return found;
    }
    DelaunayMesh mesh(outline.places);
    for (const std::vector<int>& ring : outline.rings) {
        const int on_inside = found.rings.empty() ? 1 : -1;
        auto forced = force_ring(mesh, ring, on_inside * turn_of_ring(outline, ring));
        if (!forced) {
            return {};
        }
        found.rings.push_back(std::move(*forced));
    }
    find_triangles_inside(mesh, found);
    return found;
}

std::vector<PLYDT::TRG> DelaunayTriangles::between(const std::vector<int>& points) const {
    const auto point = [&](int place) { return points[static_cast<std::size_t>(place)]; };
    std::vector<PLYDT::TRG> triangles(corners.size());
    for (std::size_t i = 0; i < corners.size(); ++i) {
        triangles[i].va = point(corners[i][0]);
        triangles[i].vb = point(corners[i][1]);
        triangles[i].vc = point(corners[i][2]);
    }
    return triangles;
}

void add_delaunay_triangles(PLYDT& set, const PLYDT::PyToRg& region) {
    const Outline outline = outline_of(set, region);
    for (PLYDT::TRG& triangle : delaunay_triangles(outline).between(outline.points)) {
        set.trg_list.Add(triangle);
    }
}

namespace {

std::optional<std::vector<int>> force_ring(DelaunayMesh& mesh, const std::vector<int>& ring,
                                           int difference) {
    std::vector<int> forced;
    forced.reserve(ring.size());
    for (std::size_t k = 0; k < ring.size(); ++k) {
        const int end = ring[k + 1 < ring.size() ? k + 1 : 0];
        for (int place = ring[k]; place != end;) {
            forced.push_back(place);
            place = mesh.force(place, end, static_cast<signed char>(difference));
            if (place < 0) {
                return std::nullopt;
            }
        }
    }
    return forced;
}

// Spreads the level from face to face: the number of times that the outer ring surrounds it, less
// that of the holes. Nothing unless each is 0 or 1.
void find_triangles_inside(const DelaunayMesh& mesh, DelaunayTriangles& found) {
    constexpr signed char unknown = -1;
    std::vector<signed char> levels(static_cast<std::size_t>(mesh.half_count()), unknown);
    const auto level = [&](int half) -> signed char& {
        return levels[static_cast<std::size_t>(half)];
    };
    std::vector<int> reached;
    const auto reach_face = [&](int first, int its_level) {
        int half = first;
        do {
            level(half) = static_cast<signed char>(its_level);
            reached.push_back(half);
            half = mesh.next_in_face(half);
        } while (half != first);
    };
    reach_face(mesh.outside(), 0);
    while (!reached.empty()) {
        const int half = reached.back();
        reached.pop_back();
        const int other = half ^ 1;
        if (level(other) != unknown) {
            continue;
        }
        const int beyond = level(half) - mesh.difference(half);
        if (beyond < 0 || beyond > 1) {
            found.corners.clear();
            found.misplaced = {mesh.origin(half), mesh.end(half)};
            return;
        }
        reach_face(other, beyond);
        if (beyond == 1) {
            found.corners.push_back(
                {mesh.origin(other), mesh.end(other), mesh.end(mesh.next_in_face(other))});
        }
    }
}

} // namespace
} // namespace korvel::kit
