#pragma once

#include <optional>
#include <vector>

#include "korvel/base/equal_pairs.h"
#include "korvel/body/tmod3d.h"

namespace korvel {

/// What is rewritten of faces whose edges have been found: nothing, the vertices by
/// `POLY3D::line_to_vert`, or the vertices and then the edges by `POLY3D::vert_to_line`.
enum class Chains { stay, of_verts, of_both };

/// What `POLY3D::find_side` does, for every face from `first_face` on, in order, without a scan of
/// all edges for each: finds or appends the faces' edges and rebuilds their edge lists. Then
/// rewrites their chains. Linear in the faces and the edges.
void find_all_sides(TMOD3D& model, int first_face, Chains chains = Chains::stay);

/// Rewrites both chains of every face. No two edges may join the same two vertices.
void chain_verts_and_lines(TMOD3D& model);

/// The result of `find_all_sides` for the triangles of a new model, as flat lists of three: its
/// edges, and each triangle's edges and rewritten vertices.
struct TriangleChains {
    std::vector<IndexPair> edges;
    std::vector<int> lines;
    std::vector<int> verts;
    std::vector<int> side_lines; ///< the triangles' edges in the order of their rewritten vertices
};

/// Nothing where a triangle lacks three different vertices that exist, and where so many edges end
/// at one vertex that this would not be linear.
std::optional<TriangleChains> chain_triangles(const std::vector<int>& corners, int vertices);

} // namespace korvel
