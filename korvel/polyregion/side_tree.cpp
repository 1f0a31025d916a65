#include "korvel/polyregion/side_tree.h"

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

bool shares_end(const SideTree::Side& side, const SideTree::Segment& tested) {
    return side.p0 == tested.p0 || side.p0 == tested.p1 || side.p1 == tested.p0 ||
           side.p1 == tested.p1;
}

/// Where a direction stands, either sense alike, on a circle of 4 units: lines that make a small
/// angle stand at least that far and at most twice as far apart.
double place_of_direction(Direction direction) {
    return std::fabs(direction.ux) >= std::fabs(direction.uy) ? direction.uy / direction.ux
                                                              : 2 - direction.ux / direction.uy;
}

/// The cell of a line of some direction at some distance from the origin, in parts of the extent.
std::uint64_t line_key(double direction, double distance) {
    constexpr double cells_per_unit = 1 << 26;
    constexpr double distance_cells = 1e8;
    constexpr int cells = 4 << 26;
    return pair_key(static_cast<int>((direction + 5) * cells_per_unit) % cells,
                    static_cast<int>(std::floor(distance * distance_cells)));
}

} // namespace

void SideTree::start() {
    shape_.start(points_.count());
    const auto places = static_cast<std::size_t>(points_.count());
    local_.resize(places);
    for (int p = 0; p < points_.count(); ++p) {
        local_.set(p, points_.local(p));
    }
    sides_.clear();
    for (std::vector<Ends>& ends : ends_) {
        ends.assign(places, {});
    }
    for (std::vector<int>& sides : in_box_) {
        sides.assign(static_cast<std::size_t>(shape_.boxes()), none);
    }
    lines_ = FirstIndex(shape_.is_undivided() ? 0 : 2 * points_.count());
    shares_line_.clear();
    boxes_.clear();
    for (int box = 0; box < shape_.boxes(); ++box) {
        boxes_.push_back(box >= SlotTree::root && shape_.has_slots(box)
                             ? box_around(local_, shape_.first_slot(box), shape_.end_slot(box),
                                          1e-14 * points_.extent())
                             : TurnedBox{});
    }
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
    added.next_in_box = std::exchange(in_box_[of(kind)][static_cast<std::size_t>(box)], number);
    sides_.push_back(added);
    shares_line_.push_back(0);
    if (!shape_.is_undivided() && has_direction(direction)) {
        const std::uint64_t key =
            line_key(place_of_direction(direction), distance_of_line(p0, direction));
        const int first = lines_.find_or_add(key, number);
        shares_line_[static_cast<std::size_t>(first)] = first != number ? 1 : 0;
    }
    return number;
}

int SideTree::smallest_box_with(int p0, int p1) const {
    const auto leaf0 = static_cast<unsigned>(shape_.leaf_of(p0));
    const auto leaf1 = static_cast<unsigned>(shape_.leaf_of(p1));
    return static_cast<int>(leaf0 >> std::bit_width(leaf0 ^ leaf1));
}

int SideTree::find(int p0, int p1, Kind kind) const {
    const std::vector<Ends>& at = ends(kind);
    if (at[static_cast<std::size_t>(p1)].count < at[static_cast<std::size_t>(p0)].count) {
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
    Side& of = sides_[static_cast<std::size_t>(number)];
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
    if (shares_end(e, tested)) {
        return false;
    }
    return meet_sides(from, e.direction, tested.start, s).crosses;
}

/// Of the line through a place from the tree's origin, in parts of the extent.
double SideTree::distance_of_line(int p, Direction direction) const {
    return std::fabs(direction.ux * points_.local(p).y - direction.uy * points_.local(p).x) /
           points_.extent();
}

/// Whether a side that does not share an end with the segment may make an angle of less than 1e-9
/// with it, on nearly the same line.
bool SideTree::may_be_in_line(const Segment& tested) const {
    constexpr double around = 4e-9; // twice that is less than a cell
    const double direction = place_of_direction(tested.direction);
    const double distance = distance_of_line(tested.p0, tested.direction);
    const auto has_other = [&](std::uint64_t key) {
        const int first = lines_.find(key);
        return first >= 0 && (shares_line_[static_cast<std::size_t>(first)] != 0 ||
                              !shares_end(side(first), tested));
    };
    std::uint64_t asked = 0;
    for (const double by_direction : {-around, around}) {
        for (const double by_distance : {-around, around}) {
            const std::uint64_t key = line_key(direction + by_direction, distance + by_distance);
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
    const LineForm along{s.ux, s.uy, -(s.ux * start.x + s.uy * start.y)};
    const bool whole_line = shape_.is_undivided() || may_be_in_line(tested);
    const double margin = 2 * points_.line_margin();
    int crossed = none;
    shape_.any_box([&](int number) {
        const TurnedBox& around = boxes_[static_cast<std::size_t>(number)];
        if (std::fabs(off.at(around.centre)) > around.spread(off) + margin) {
            return SlotTree::Next::pass;
        }
        if (!whole_line) {
            const double middle = along.at(around.centre);
            const double spread = around.spread(along) + end_margin * points_.extent();
            if (middle < -spread || middle > s.len + spread) {
                return SlotTree::Next::pass;
            }
        }
        std::array<int, 2> lists{none, none};
        if (!tested.on_boundary) {
            lists[0] = in_box_[of(Kind::boundary)][static_cast<std::size_t>(number)];
        }
        if (!tested.on_front) {
            lists[1] = in_box_[of(Kind::front)][static_cast<std::size_t>(number)];
        }
        if (lists[0] != none || lists[1] != none) {
            crossed = shape_.is_leaf(number) ? crossed_in_leaf(tested, off, number, lists)
                                             : crossed_in_lists(tested, lists);
        }
        return crossed != none ? SlotTree::Next::stop : SlotTree::Next::enter;
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
    const SlotTree::Sorted places = shape_.sorted(leaf, local_, off, 2 * points_.line_margin());
    const int first_place = shape_.first_slot(leaf);
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
