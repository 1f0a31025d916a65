#include "kit/maps/border_index.h"

#include <utility>

namespace korvel::kit {

// A tree of short runs along the curves is built much sooner than one of segments.
BorderIndex::BorderIndex(const NodedNetwork& network, const std::vector<SegmentKind>& kinds)
    : network_(network), kinds_(kinds) {
    constexpr int longest = 8;
    const int count = static_cast<int>(network.segments.size());
    for (int first = 0; first < count; first = ends_.back()) {
        const int curve = network.segments[first].curve;
        int end = first + 1;
        while (end < count && end - first < longest && network.segments[end].curve == curve) {
            ++end;
        }
        ends_.push_back(end);
    }
    tree_ = BoxTree(ends_.size(), [&](std::size_t run) {
        BoxTree::Box box;
        for_each_in_run(run, [&](int border) { box.take_in(box_of(segment(border))); });
        return box;
    });
}

int BorderIndex::below(const GridPoint& point) const {
    int highest = -1;
    const auto may_hold = [&](const BoxTree::Box& box) {
        return box.left < point.x && box.right >= point.x && box.bottom <= point.y &&
               (highest < 0 || box.top >= box_of(segment(highest)).bottom);
    };
    tree_.for_each_in(may_hold, [&](std::size_t run) {
        for_each_in_run(run, [&](int border) {
            const GridSegment at = segment(border);
            if (may_hold(box_of(at)) && side(at.from, at.to, point) > 0 &&
                (highest < 0 || is_below(highest, border))) {
                highest = border;
            }
        });
    });
    return highest;
}

/// Calls `work` for each border of a run, as a half-edge to the right.
template <class Work>
void BorderIndex::for_each_in_run(std::size_t run, Work work) const {
    for (int i = run == 0 ? 0 : ends_[run - 1]; i < ends_[run]; ++i) {
        if (kinds_[i] == SegmentKind::border) {
            const NodedSegment& border = network_.segments[i];
            const bool runs_right =
                is_before(network_.points[border.from], network_.points[border.to]);
            work(runs_right ? 2 * i : 2 * i + 1);
        }
    }
}

GridSegment BorderIndex::segment(int half_edge) const {
    GridPoint from = network_.points[network_.segments[half_edge / 2].from];
    GridPoint to = network_.points[network_.segments[half_edge / 2].to];
    if (half_edge % 2 != 0) {
        std::swap(from, to);
    }
    return {from, to};
}

// Of two that a vertical line crosses.
bool BorderIndex::is_below(int a, int b) const {
    const GridSegment s = segment(a);
    const GridSegment t = segment(b);
    const WideInteger at_start =
        s.from.x <= t.from.x ? side(s.from, s.to, t.from) : -side(t.from, t.to, s.from);
    return at_start != 0 ? at_start > 0 : side(s.from, s.to, t.to) > 0;
}

} // namespace korvel::kit
