#include "korvel/polyregion/triangulation/side_tree.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <utility>

namespace korvel {
namespace {

/// Sides that make an angle of more than 1e-9 with a segment are reported to cross it only where
/// they do, to 3e-15 / 1e-9 of the extent: well within this part of it.
constexpr double end_margin = 2e-5;

bool has_direction(Direction direction) {
    return std::isfinite(direction.ux) && std::isfinite(direction.uy);
}

bool shares_end(const SideTree::Side& side, int p0, int p1) {
    return side.p0 == p0 || side.p0 == p1 || side.p1 == p0 || side.p1 == p1;
}

/// Where a line stands among all lines. Slopes, those of steep lines upside down, fill a circle of
/// 4 units, on which the lines of a small angle stand at least that far and at most twice as far
/// apart.
struct LinePlace {
    double slope;
    double intercept; ///< without its sign, which differs between the two kinds of slopes
};

LinePlace place_of_line(PlanePoint p, PlanePoint q) {
    const double dx = q.x - p.x;
    const double dy = q.y - p.y;
    if (std::fabs(dx) >= std::fabs(dy)) {
        const double slope = dy / dx;
        return {slope, std::fabs(p.y - slope * p.x)};
    }
    const double slope = dx / dy;
    return {2 - slope, std::fabs(p.x - slope * p.y)};
}

/// The cell of a line's place, with intercepts in parts of the extent.
constexpr int line_cells = 10'000; // per unit
std::uint64_t line_key(double slope, double intercept) {
    return pair_key(static_cast<int>((slope + 5) * line_cells) % (4 * line_cells),
                    static_cast<int>(intercept * line_cells));
}

} // namespace

void SideTree::start() {
    tree_.start();
    const auto places = static_cast<std::size_t>(points_.count());
    sides_.clear();
    for (std::vector<Ends>& ends : ends_) {
        ends.assign(places, {});
    }
    for (std::vector<int>& sides : in_box_) {
        sides.assign(static_cast<std::size_t>(tree_.shape().boxes()), none);
    }
    lines_ = KeyIndex(2 * points_.count());
    near_lines_.start(2 * points_.count());
    shares_line_.clear();
    has_stray_ = false;
}

int SideTree::add(int p0, int p1, Direction direction, Kind kind) {
    const int number = count();
    const int box = smallest_box_with(p0, p1);
    Side added{p0, p1, direction, kind, {none, none}, {none, none}, none};
    for (const std::size_t end : {0, 1}) {
        Ends& at_end = ends_[of(kind)][static_cast<std::size_t>(end == 0 ? p0 : p1)];
        added.next_at_end[end] = std::exchange(at_end.last, number);
        ++at_end.count;
    }
    added.next_in_box = std::exchange(in_box_[of(kind)][box], number);
    sides_.push_back(added);
    shares_line_.push_back(0);
    if (has_direction(direction)) {
        const LinePlace line = place_of_line(points_.local(p0), points_.local(p1));
        if (std::isnan(line.slope)) {
            has_stray_ = true;
            return number;
        }
        const std::uint64_t key = line_key(line.slope, line.intercept / points_.extent());
        near_lines_.add(mix_bits(key));
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
    const Side& of = side(number);
    return of.apex[of.p0 == from ? 0 : 1];
}

void SideTree::set_apex(int number, int from, int corner) {
    Side& of = sides_[number];
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
    const Side& e = side(number);
    const Direction& s = tested.direction;
    // Most sides have both ends on one side of the segment's line, by more than the rounding of a
    // distance; the crossing test then places the meeting outside of them for certain.
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
    constexpr double around = 0.25 / line_cells; // twice that is less than a cell
    const LinePlace line = place_of_line(points_.local(p0), points_.local(p1));
    if (has_stray_ || std::isnan(line.slope)) {
        return true;
    }
    const double intercept = line.intercept / points_.extent();
    const auto has_other = [&](std::uint64_t key) {
        if (!near_lines_.may_have(mix_bits(key))) {
            return false;
        }
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

/// Rounding can report a crossing of two far sides that lie on nearly one line, so the whole line
/// is searched where there may be one. Others meet the segment where the crossing test says so, to
/// 3e-15 / 1e-9 of the extent.
int SideTree::find_crossed(const Segment& tested) const {
    const Direction& s = tested.direction;
    if (!has_direction(s)) {
        return none; // a segment without a direction crosses nothing
    }
    const PlanePoint start = points_.local(tested.p0);
    const LineForm off = distance_left_of(start, s);
    // From the middle of the segment.
    const LineForm along{s.ux, s.uy, -(s.ux * start.x + s.uy * start.y) - s.len / 2};
    const double room = s.len / 2 + end_margin * points_.extent();
    const bool whole_line = tree_.shape().is_undivided() || may_be_in_line(tested.p0, tested.p1);
    const double margin = 2 * points_.line_margin();
    int crossed = none;
    tree_.shape().any_box(
        [&](int box) {
            std::array<int, 2> lists{none, none};
            if (!tested.on_boundary) {
                lists[0] = in_box_[of(Kind::boundary)][box];
            }
            if (!tested.on_front) {
                lists[1] = in_box_[of(Kind::front)][box];
            }
            if (lists[0] != none || lists[1] != none) {
                crossed = tree_.shape().is_leaf(box) ? crossed_in_leaf(tested, off, box, lists)
                                                     : crossed_in_lists(tested, lists);
            }
            return crossed != none;
        },
        [&](int first) {
            const TurnedBoxes::Sorted beside = tree_.boxes().sorted(first, off, margin);
            const TurnedBoxes::Sorted ahead =
                whole_line ? TurnedBoxes::Sorted{} : tree_.boxes().sorted(first, along, room);
            return ~(beside.above | beside.below | ahead.above | ahead.below);
        });
    return crossed;
}

int SideTree::crossed_in_lists(const Segment& tested, const std::array<int, 2>& lists) const {
    for (const int first : lists) {
        for (int e = first; e != none; e = side(e).next_in_box) {
            if (crosses(tested, e)) {
                return e;
            }
        }
    }
    return none;
}

/// In a leaf the places are told apart by the line once for all sides.
int SideTree::crossed_in_leaf(const Segment& tested, const LineForm& off, int leaf,
                              const std::array<int, 2>& lists) const {
    const SlotTree::Sorted places = tree_.sorted(leaf, off, 2 * points_.line_margin());
    const int first_place = tree_.shape().first_slot(leaf);
    for (const int first : lists) {
        for (int e = first; e != none; e = side(e).next_in_box) {
            const int from = side(e).p0 - first_place;
            const int to = side(e).p1 - first_place;
            const SlotTree::Bits beside = ((places.above >> from) & (places.above >> to)) |
                                          ((places.below >> from) & (places.below >> to));
            if ((beside & 1U) == 0 && crosses(tested, e)) {
                return e;
            }
        }
    }
    return none;
}

} // namespace korvel
