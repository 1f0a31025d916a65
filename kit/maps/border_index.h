#pragma once

#include <vector>

#include "kit/base/box_tree.h"
#include "kit/maps/faces.h"
#include "kit/maps/grid_segment.h"
#include "kit/maps/noding.h"

namespace korvel::kit {

/// Finds borders of a noded network by position. Segment i as it runs is half-edge 2i, against its
/// direction half-edge 2i + 1. Refers to what it is made of. Building it takes n log n.
class BorderIndex {
public:
    BorderIndex(const NodedNetwork& network, const std::vector<SegmentKind>& kinds);

    /// The highest border below a point, just left of it, where no vertical border is: as a
    /// half-edge to the right, or −1. Near-logarithmic.
    int below(const GridPoint& point) const;

private:
    template <class Work>
    void for_each_in_run(std::size_t run, Work work) const;
    GridSegment segment(int half_edge) const;
    bool is_below(int a, int b) const;

    const NodedNetwork& network_;
    const std::vector<SegmentKind>& kinds_;
    std::vector<int> ends_; // of runs of segments
    BoxTree tree_;          // of the runs
};

} // namespace korvel::kit
