#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

#include "korvel/polyregion/triangulation/region_points.h"

namespace korvel {

/// A triangulation of all points of a region that has the region's sides among its edges, and
/// is otherwise Delaunay up to rounding. It covers a wide triangle around the points, so that every
/// vertex has a closed ring of neighbours.
///
/// Each of its triangles is larger than rounding, and no two overlap. So its answers about points
/// and sides in and around a triangle are certain, although rounding may decide which triangles it
/// has. Where this cannot be kept, for points too close together, it answers nothing from then on.
class ConstrainedDelaunay {
public:
    static constexpr int none = RegionPoints::none;

    explicit ConstrainedDelaunay(const RegionPoints& points) : points_(points) {}

    /// To be called when the points have started over.
    void start();

    /// Makes the side between two vertices an edge, or a chain of edges through the vertices on it.
    /// Returns a hint for `apex`.
    int add_side(int p0, int p1);

    /// The third corner of the triangle on the left of a → b, or `none` where a-b is no edge or the
    /// triangle is outside of all points. With the hint of its side it is found at once, unless the
    /// triangles there have changed.
    int apex(int a, int b, int hint);

    /// The first edge from u to v on the way that is a side or part of one, as its two vertices.
    std::optional<std::array<int, 2>> side_across(int u, int v) const;

    /// Whether no vertex lies near the way from u through v and on, beyond v, but for those behind
    /// a side that certainly crosses all ways from u to them. Near is within `distance` and `slope`
    /// times how far the vertex is from u. The test is one-sided: false may mean that it is not
    /// known.
    bool is_free_beyond(int u, int v, double distance, double slope) const;

    /// Whether no other vertex and no side that ends elsewhere comes within a distance of a vertex.
    bool is_clear_vertex(int p, double distance) const {
        return is_usable_ && clearance2(p) > distance * distance;
    }

    /// Whether u-v is an edge and no other vertex, nor a side that touches neither end, comes
    /// within a distance of it.
    ///
    /// Around a vertex v there is nothing up to its clearance k(v), the least height over the
    /// opposite edges of the triangles around it. Beyond that, an edge u-v has nothing nearer than
    /// k(u) k(v) / |u − v|, since the sines of the angles at its ends are no smaller than the other
    /// end's clearance over its length.
    bool is_clear_edge(int u, int v, int hint, double distance) const {
        return is_usable_ && has_room(u, v, distance) && half_edge(u, v, hint) != none;
    }

    /// Whether neither crossing tests with the sides of a triangle of these nor the tests of points
    /// inside it can be misled, unless a side makes an angle of less than `tolerance::least_angle`
    /// with one of them on nearly the same line.
    bool is_clear_triangle(int a, int b, int c) const {
        return has_room(a, b, clear_) && has_room(b, c, clear_) && has_room(c, a, clear_);
    }

private:
    /// The most triangles around a vertex, and along a line, that a test may visit before it
    /// answers that it does not know: a vertex may have very many neighbours.
    static constexpr int most_turns = 64;
    static constexpr int most_steps = 32;

    // Three half-edges to a triangle, anticlockwise; h runs from `from(h)` to `from(next(h))`, and
    // the triangle lies on its left.
    static int next(int h) { return h % 3 == 2 ? h - 2 : h + 1; }
    static int previous(int h) { return h % 3 == 0 ? h + 2 : h - 1; }
    int from(int h) const { return from_[h]; }
    int to(int h) const { return from(next(h)); }
    int twin(int h) const { return twin_[h]; }
    int next_around(int h) const { return twin(previous(h)); } // anticlockwise
    bool is_side(int h) const { return is_side_[h] != 0; }
    PlanePoint at(int p) const { return at_[p]; }

    static double squared_length(PlanePoint from, PlanePoint to) {
        return (to.x - from.x) * (to.x - from.x) + (to.y - from.y) * (to.y - from.y);
    }
    double twice_area(int a, int b, int c) const;
    bool is_sound(int a, int b, int c) const { return twice_area(a, b, c) > margin_; }
    bool has_room(int u, int v, double distance) const {
        return clearance2(u) * clearance2(v) > distance * distance * squared_length(at(u), at(v));
    }
    double clearance2(int p) const { return clearance2_[p]; }

    void link(int h, int other);
    int add_triangle(int a, int b, int c);
    void insert_in_rounds();
    void insert(int p, int start);
    int edge_or_triangle_at(int p, int start, int& on_edge) const;
    void divide_triangle(int h, int p);
    void divide_edge(int h, int p);
    void make_delaunay_around(int p);
    bool is_in_circle(int a, int b, int c, int p) const;
    bool may_flip(int h) const;
    void flip(int h);

    struct RayBeyond;
    bool blocks(int h, const RayBeyond& ray) const;
    int half_edge(int a, int b) const;
    int half_edge(int a, int b, int hint) const;
    std::array<int, 2> add_piece(int u, int v);
    template <class Visit>
    int walk(int u, int v, int turns, Visit visit) const;
    int find_crossed(int u, int v);
    bool remove_crossed(int u, int v);
    int mark_side(int h);
    void limit_clearances(int h); // of the corners of a triangle

    const RegionPoints& points_;
    double margin_ = 0; ///< twice an area up to this may be rounding
    double clear_ = 0;  ///< see `is_clear_triangle`
    bool is_usable_ = false;
    std::vector<PlanePoint> at_; ///< the corners of the wide triangle last
    std::vector<int> from_;
    std::vector<int> twin_;
    std::vector<char> is_side_;
    int last_ = 0;                   ///< of the triangle that was asked for last
    std::vector<int> first_;         ///< for each vertex a half-edge that begins there
    std::vector<double> clearance2_; ///< for each vertex, squared
    std::vector<char> rounds_;       ///< of insertion, for each vertex
    std::vector<int> to_check_;
    std::vector<std::array<int, 2>> crossed_;
    std::vector<std::array<int, 2>> flipped_;
};

} // namespace korvel
