#pragma once

#include <vector>

#include "kit/base/exact_predicates.h"

namespace korvel::kit {

/// The Delaunay triangulation of points, into which edges can be forced.
///
/// Edges are pairs of directed halves, e and e ^ 1, linked around their origins (L. Guibas and
/// J. Stolfi, Primitives for the manipulation of general subdivisions, 1985). Of points on a common
/// circle the greatest in the order of the list counts as outside of it, so that the triangles
/// depend on the positions alone.
class DelaunayMesh {
public:
    /// Triangulates at least two points, by divide and conquer: n log n. They must be distinct, and
    /// sorted by x, then y.
    explicit DelaunayMesh(std::vector<PlanePoint> points);

    /// Makes the straight line from a point to another an edge, up to the first point that it
    /// passes, which is the result. A level is higher by `difference`, not 0, on the edge's left
    /// than on its right. Other triangles become those of the constrained Delaunay triangulation.
    /// -1 where the line crosses an edge of an earlier call or is the same. Near-linear in the
    /// edges that the line crosses.
    int force(int from, int to, signed char difference);

    /// The halves, with gaps where edges were removed: `is_edge` of each of them.
    int half_count() const { return static_cast<int>(halves_.size()); }
    bool is_edge(int half) const { return at(half).origin >= 0; }

    int origin(int half) const { return at(half).origin; }
    int end(int half) const { return at(half ^ 1).origin; }
    int difference(int half) const { return at(half).difference; }

    /// The next half around the face on the left.
    int next_in_face(int half) const { return at(half ^ 1).previous; }

    /// A half with the unbounded face on its left.
    int outside() const { return outside_; }

private:
    struct Half {
        int origin;             // -1: removed
        int next;               // around the origin, counterclockwise
        int previous;           // and back
        signed char difference; // 0: not forced
    };
    // The first half out of the leftmost point with the unbounded face on its right, and out of the
    // rightmost one with that on its left.
    struct Hull {
        int left;
        int right;
    };
    // Halves that a line crosses, from its right to its left, and those beside them that end at the
    // line's start and start at the first point that it meets.
    struct Crossed {
        std::vector<int> halves;
        int into_start = 0;
        int out_of_end = 0;
    };

    Half& at(int half) { return halves_[static_cast<std::size_t>(half)]; }
    const Half& at(int half) const { return halves_[static_cast<std::size_t>(half)]; }
    PlanePoint point(int index) const { return points_[static_cast<std::size_t>(index)]; }
    int turn_of(int a, int b, int c) const { return turn(point(a), point(b), point(c)); }
    bool is_in_circle(int a, int b, int c, int d) const;

    int add_edge(int from, int to);
    void attach(int half, int before);
    int connect(int half, int other);
    void remove(int half);

    Hull triangulate(int first, int end);
    Hull triangulate_few(int first, int end);
    Hull merge(Hull low, Hull high);
    void find_lower_tangent(int& low, int& high) const;
    void close_gap(int base);
    int left_candidate(int base);
    int right_candidate(int base);
    bool is_above(int half, int base) const;
    int half_before_in_face(int half) const { return at(half).next ^ 1; }
    int next_around(int half) const { return at(half).next; }
    int previous_around(int half) const { return at(half).previous; }

    int edge_towards(int from, int to) const;
    int half_before(int from, int to) const;
    bool cross(int from, int to, Crossed& crossed) const;
    void fill(int base);
    int half_to_apex(int base) const;
    bool is_in_corner(int half, int p) const;

    std::vector<PlanePoint> points_;
    std::vector<Half> halves_;
    std::vector<int> free_;   // halves of removed edges, one of each pair
    std::vector<int> out_of_; // a half for each point
    int outside_ = 0;
};

} // namespace korvel::kit
