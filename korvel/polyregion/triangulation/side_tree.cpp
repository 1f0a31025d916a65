#include "korvel/polyregion/triangulation/side_tree.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <utility>

namespace korvel {
namespace {

bool has_direction(Direction direction) {
    return std::isfinite(direction.ux) && std::isfinite(direction.uy);
}

bool shares_end(const SideTree::ListedSide& side, int p0, int p1) {
    return side.p0 == p0 || side.p0 == p1 || side.p1 == p0 || side.p1 == p1;
}

/// The position of a line among all lines. Slopes, those of steep lines as dx / dy, fill a circle
/// of 4 units, on which lines that make a small angle are at least that and at most twice that
/// apart.
struct LinePosition {
    double slope;
    double intercept; ///< without its sign, which differs between the two kinds of slopes
};

/// The line from p to q, with the intercept relative to the point at which `local_p` is 0. The
/// slope comes from the points as given: relative coordinates would spoil that of a short side.
LinePosition position_of_line(PlanePoint p, PlanePoint q, PlanePoint local_p) {
    const double dx = q.x - p.x;
    const double dy = q.y - p.y;
    if (std::fabs(dx) >= std::fabs(dy)) {
        const double slope = dy / dx;
        return {slope, std::fabs(local_p.y - slope * local_p.x)};
    }
    const double slope = dx / dy;
    return {2 - slope, std::fabs(local_p.x - slope * local_p.y)};
}

/// The cell of a line's position, with intercepts in parts of the extent. A cell is twice as wide
/// as what lies within `tolerance::nearly_in_line` of a line.
std::uint64_t line_key(double slope, double intercept) {
    constexpr int per_unit = 10'000;
    static_assert(2 * tolerance::nearly_in_line * per_unit < 1);
    return pair_key(static_cast<int>((slope + 5) * per_unit) % (4 * per_unit),
                    static_cast<int>(intercept * per_unit));
}

} // namespace

void SideTree::start() {
    tree_.start();
    const auto vertices = static_cast<std::size_t>(points_.count());
    sides_.clear();
    for (std::vector<Ends>& ends : ends_) {
        ends.assign(vertices, {});
    }
    for (std::vector<int>& sides : in_box_) {
        sides.assign(static_cast<std::size_t>(tree_.shape().boxes()), none);
    }
    lines_ = KeyIndex(2 * points_.count());
    shares_line_.clear();
}

int SideTree::add(int p0, int p1, Direction direction, Kind kind) {
    const int number = count();
    const int box = smallest_box_with(p0, p1);
    ListedSide added{p0, p1, direction, kind, {none, none}, {none, none}, none};
    for (const std::size_t end : {0, 1}) {
        Ends& at_end = ends_[of(kind)][static_cast<std::size_t>(end == 0 ? p0 : p1)];
        added.next_at_end[end] = std::exchange(at_end.last, number);
        ++at_end.count;
    }
    added.next_in_box = std::exchange(in_box_[of(kind)][box], number);
    sides_.push_back(added);
    shares_line_.push_back(0);
    if (has_direction(direction)) {
        const LinePosition line =
            position_of_line(points_.at(p0), points_.at(p1), points_.local(p0));
        const std::uint64_t key = line_key(line.slope, line.intercept / points_.extent());
        const int first = lines_.find_or_add(key, number);
        shares_line_[first] = first != number ? 1 : 0;
    }
    return number;
}

int SideTree::smallest_box_with(int p0, int p1) const {
    const auto leaf0 = static_cast<unsigned>(tree_.shape().leaf_of(p0));
    const auto leaf1 = static_cast<unsigned>(tree_.shape().leaf_of(p1));
    return static_cast<int>(leaf0 >> std::bit_width(leaf0 ^ leaf1));
}

int SideTree::find(int p0, int p1, Kind kind) const {
    const std::vector<Ends>& at = ends(kind);
    if (at[p1].count < at[p0].count) {
        std::swap(p0, p1);
    }
    int found = none;
    any_side_at(p0, kind, [&](int number, int other) {
        found = other == p1 ? number : none;
        return found != none;
    });
    return found;
}

int SideTree::apex(int number, int from) const {
    const ListedSide& of = side(number);
    return of.apex[of.p0 == from ? 0 : 1];
}

void SideTree::set_apex(int number, int from, int corner) {
    ListedSide& of = sides_[number];
    int& apex = of.apex[of.p0 == from ? 0 : 1];
    if (apex == none) {
        apex = corner;
    }
}

SideTree::Segment SideTree::segment(int p0, int p1) const {
    return {p0,
            p1,
            points_.at(p0),
            direction_between(points_.at(p0), points_.at(p1)),
            find(p0, p1, Kind::boundary) != none,
            find(p0, p1, Kind::front) != none};
}

bool SideTree::crosses(const Segment& tested, int number) const {
    const ListedSide& e = side(number);
    const Direction& s = tested.direction;
    // Most sides have both ends on one side of the segment's line, by more than the rounding of a
    // distance; the crossing test then puts the meeting point outside of them for certain.
    const double line_margin = points_.line_margin();
    const PlanePoint from = points_.at(e.p0);
    const PlanePoint to = points_.at(e.p1);
    const double off_from = (tested.start.x - from.x) * s.uy - (tested.start.y - from.y) * s.ux;
    const double off_to = (tested.start.x - to.x) * s.uy - (tested.start.y - to.y) * s.ux;
    if ((off_from > line_margin && off_to > line_margin) ||
        (off_from < -line_margin && off_to < -line_margin)) {
        return false;
    }
    if (e.kind == Kind::boundary ? tested.on_boundary : tested.on_front) {
        return false;
    }
    if (shares_end(e, tested.p0, tested.p1)) {
        return false;
    }
    return meet_sides(from, e.direction, tested.start, s).crosses;
}

bool SideTree::may_be_in_line(int p0, int p1) const {
    constexpr double around = tolerance::nearly_in_line;
    const LinePosition line = position_of_line(points_.at(p0), points_.at(p1), points_.local(p0));
    if (std::isnan(line.slope)) {
        return true;
    }
    const double intercept = line.intercept / points_.extent();
    const auto has_other = [&](std::uint64_t key) {
        const int first = lines_.find(key);
        return first >= 0 && (shares_line_[first] != 0 || !shares_end(side(first), p0, p1));
    };
    std::uint64_t asked = 0;
    for (const double by_slope : {-around, around}) {
        for (const double by_intercept : {-around, around}) {
            const std::uint64_t key = line_key(line.slope + by_slope, intercept + by_intercept);
            if (key != asked && has_other(key)) {
                return true;
            }
            asked = key;
        }
    }
    return false;
}

/// Rounding can report a crossing of two distant sides that lie on nearly one line, so the whole
/// line is searched where there may be one. All others are reported to cross only where they do,
/// within `tolerance::crossing` / `tolerance::least_angle`.
int SideTree::find_crossed(const Segment& tested) const {
    const Direction& s = tested.direction;
    if (!has_direction(s)) {
        return none; // a segment without a direction crosses nothing
    }
    const PlanePoint start = points_.local(tested.p0);
    const LineForm off = distance_left_of(start, s);
    // From the middle of the segment.
    const LineForm along{s.ux, s.uy, -(s.ux * start.x + s.uy * start.y) - s.len / 2};
    const double reach = s.len / 2 + tolerance::beyond_segment * points_.extent();
    const bool whole_line = tree_.shape().is_undivided() || may_be_in_line(tested.p0, tested.p1);
    const double margin = 2 * points_.line_margin();
    int crossed = none;
    tree_.shape().any_box(
        [&](int box) {
            if (!tested.on_boundary) {
                crossed = crossed_in_list(tested, in_box_[of(Kind::boundary)][box]);
            }
            if (crossed == none && !tested.on_front) {
                crossed = crossed_in_list(tested, in_box_[of(Kind::front)][box]);
            }
            return crossed != none;
        },
        [&](int first) {
            const OrientedBoxes::Signs beside = tree_.boxes().signs(first, off, margin);
            const OrientedBoxes::Signs ahead =
                whole_line ? OrientedBoxes::Signs{} : tree_.boxes().signs(first, along, reach);
            return ~(beside.above | beside.below | ahead.above | ahead.below);
        });
    return crossed;
}

int SideTree::crossed_in_list(const Segment& tested, int first) const {
    for (int e = first; e != none; e = side(e).next_in_box) {
        if (crosses(tested, e)) {
            return e;
        }
    }
    return none;
}

} // namespace korvel
