#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "kit/solids/edge_sides.h"
#include "kit/solids/mesh_triangles.h"

namespace korvel::kit {

/// A side of a triangle: an edge by its points.
struct TriangleSide {
    std::int32_t low;
    std::int32_t high;
    std::int32_t third; ///< the corner opposite
    std::int32_t use;   ///< twice the triangle's position, and 1 if it runs from `high` to `low`

    int position() const { return use / 2; }
    bool ascends() const { return use % 2 == 0; }
};

/// The sides of triangles, by their positions in `triangles`: by edge, then by position. Linear;
/// for up to 2^30 triangles.
inline std::vector<TriangleSide> sides_of(const TriangleList& list,
                                          const std::vector<int>& triangles) {
    std::vector<TriangleSide> sides;
    sides.reserve(3 * triangles.size());
    for (std::size_t position = 0; position < triangles.size(); ++position) {
        const std::array<int, 3>& corners = list.corners[triangles[position]];
        const auto number = static_cast<int>(position);
        for (std::size_t k = 0; k < 3; ++k) {
            const int from = corners[k];
            const int to = corners[(k + 1) % 3];
            sides.push_back({std::min(from, to), std::max(from, to), corners[(k + 2) % 3],
                             2 * number + (from < to ? 0 : 1)});
        }
    }
    sort_by_edge(sides);
    return sides;
}

/// Of the sides at an edge the pairs between whose triangles the inside of a body is, by position.
/// `ascends` is for each side whether its triangle runs from the lower point to the higher one when
/// it runs counter-clockwise seen from outside. Of coincident triangles each bounds another body.
/// Where as many ascend as descend, all are paired; else what is left over is paired somehow, and
/// one remains of an odd number.
std::vector<std::pair<int, int>> pairs_around_edge(std::span<const TriangleSide> edge,
                                                   const std::vector<bool>& ascends,
                                                   const std::vector<Point3>& points);

} // namespace korvel::kit
