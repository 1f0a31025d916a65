#pragma once

#include <array>
#include <vector>

#include "korvel/base/key_index.h"
#include "korvel/polyregion/triangulation/point_tree.h"
#include "korvel/polyregion/triangulation/region_points.h"

namespace korvel {

/// The sides of a region's boundary and front, in a tree of boxes over the vertices that they join.
/// Places that follow one another on a ring lie together, and so do the sides between them, so a
/// line meets few of the tree's boxes.
class SideTree {
public:
    enum class Kind { boundary, front };
    static constexpr int none = RegionPoints::none;

    explicit SideTree(const RegionPoints& points)
        : points_(points), tree_(points, PointTree::Order::by_number) {}

    /// Forgets all sides; to be called when the points have started over. Their extent must not be
    /// 0.
    void start();

    /// A side between two different vertices.
    struct ListedSide {
        int p0;
        int p1;
        Direction direction;
        Kind kind;
        std::array<int, 2> apex; ///< of the triangle left of p0 → p1, and left of p1 → p0
        std::array<int, 2> next_at_end; ///< the side added before it at p0, and at p1
        int next_in_box;
    };

    int add(int p0, int p1, Direction direction, Kind kind);
    int count() const { return static_cast<int>(sides_.size()); }
    const ListedSide& side(int number) const { return sides_[number]; }
    /// The side between two vertices, whichever way it runs, or `none`.
    int find(int p0, int p1, Kind kind) const;
    /// The third corner of the first triangle on the left of a directed side, or `none`.
    int apex(int number, int from) const;
    void set_apex(int number, int from, int corner);

    /// Calls `visit(side, other end)` for the sides at a vertex, the last added first, until a call
    /// returns true.
    template <class Visit>
    void any_side_at(int p, Kind kind, Visit visit) const {
        for (int number = ends(kind)[p].last; number != none;) {
            const ListedSide& at_p = side(number);
            if (visit(number, at_p.p0 == p ? at_p.p1 : at_p.p0)) {
                return;
            }
            number = at_p.next_at_end[at_p.p0 == p ? 0 : 1];
        }
    }

    /// A side that a new triangle would have, under test.
    struct Segment {
        int p0;
        int p1;
        PlanePoint start;
        Direction direction;
        bool on_boundary;
        bool on_front;
    };
    Segment segment(int p0, int p1) const;

    /// Whether a side that ends elsewhere may make an angle of less than
    /// `tolerance::least_angle` with the line through two vertices, and lie nearly on it.
    bool may_be_in_line(int p0, int p1) const;

    /// Whether a segment crosses a side. One that is part of the boundary is not held against the
    /// boundary, and one that is part of the front not against the front.
    bool crosses(const Segment& tested, int number) const;
    /// A side that the segment crosses, or `none`.
    int find_crossed(const Segment& tested) const;

private:
    struct Ends {
        int last = none; ///< side
        int count = 0;
    };

    static std::size_t of(Kind kind) { return kind == Kind::boundary ? 0 : 1; }
    const std::vector<Ends>& ends(Kind kind) const { return ends_[of(kind)]; }

    int smallest_box_with(int p0, int p1) const;
    int crossed_in_list(const Segment& tested, int first) const;

    const RegionPoints& points_;
    PointTree tree_;
    std::vector<ListedSide> sides_;
    std::array<std::vector<Ends>, 2> ends_; ///< for each kind and vertex
    /// For each kind and box the last of its own sides: those that no smaller box holds.
    std::array<std::vector<int>, 2> in_box_;
    KeyIndex lines_{64};            ///< the first side on roughly each line
    std::vector<char> shares_line_; ///< for each of these: others lie on roughly its line
};

} // namespace korvel
