#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "kit/base/available_memory.h"
#include "kit/base/context.h"
#include "kit/maps/faces.h"
#include "kit/maps/map.h"
#include "kit/maps/network.h"
#include "kit/maps/noding.h"
#include "kit/maps/traced_network.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// How `find_regions` works.
struct FindOptions {
    /// Curve ends closer than half of this, in units of the map, are joined; one step of its grid
    /// if nothing is given; 0 joins within 3 steps.
    std::optional<double> tolerance = {};

    /// The answer of `CREGION` alone: curves that overlap along a stretch are not split there,
    /// holes depend on the order of the curves, and a ring that touches itself is left out.
    bool as_traced = false;

    /// Smaller regions, in square units of the map, go into the neighbour with the longest common
    /// border; not with `as_traced`.
    double min_area = 0;

    /// In bytes. What is needed grows with the crossings of the network; one with more crossings
    /// than this is enough for is refused.
    std::uint64_t memory = available_memory();
};

/// What became of a network. Counts of segments are those after splitting; each is a border, a
/// bridge, dangling or a duplicate.
struct NetworkReport {
    int joined_ends = 0; ///< ends of curves that moved onto others
    int crossings = 0;   ///< points where no curve has one, at which some were split
    int points = 0;      ///< distinct ones
    int segments = 0;
    int borders = 0;    ///< with different regions on their sides, or a region and the outside
    int bridges = 0;    ///< with the same region, or the outside, on both sides
    int dangling = 0;   ///< on a tree that ends loosely
    int duplicates = 0; ///< the same as an earlier one: overlaps that were resolved
    int merged = 0;     ///< regions below `FindOptions::min_area` that went into others
};

/// Something of a network that is on no region's border.
struct Dropped {
    enum class Reason {
        no_length,       ///< a curve without two different points
        duplicate,       ///< a piece of a curve that is the same as one of an earlier curve
        dangling,        ///< a piece of a curve that ends loosely, or is connected to such a one
        bridge,          ///< a piece of a curve with the same region on both sides
        touching_itself, ///< a ring that passes a point twice, with `FindOptions::as_traced`
    };
    Reason reason = Reason::no_length;
    int curve = -1;              ///< of the network; −1 for a ring
    std::vector<GridPoint> line; ///< the piece; of a ring the point where it touches itself

    /// In steps of the grid, as the line.
    double length() const;
};

/// "curve 7 repeats an earlier line from 1,1 to 5,5", "curve 3 ends loosely from 5,5 to 9,9", …
std::string text(const Dropped& dropped);

/// The regions of a network, and how they were found.
class FoundRegions {
public:
    /// All regions. They partition the area within the outermost borders: each face of the network
    /// is a region, holes are what lies inside and is regions of its own. Numbered in the order of
    /// the curves, by the first piece of their outer rings.
    const Map& map() const { return map_; }

    /// Hands the map over; `curves_of_rings` and `around` answer for no region afterwards.
    Map take_map() { return std::move(map_); }

    // Ask.

    /// What was split, joined and left out. With `FindOptions::as_traced` only the points are
    /// counted.
    const NetworkReport& report() const { return state_->report; }

    /// What is on no border, in the order of the network. Linear in the network.
    std::vector<Dropped> dropped() const;

    /// The lines of `dropped()` as curves.
    Network leftover() const;

    /// For each ring of `map().regions().ring_list` the curves that it runs along, ascending.
    /// Where curves overlap, a side counts for the first of them. Near-linear.
    std::vector<std::vector<int>> curves_of_rings() const;

    /// The region around a point as a map of its own; an empty map where there is none. With
    /// `FindOptions::as_traced` the smallest ring around the nearest point of the grid and the
    /// rings directly inside it.
    Map around(const Point2& seed) const;

    /// The network as it was split, without what is on no border.
    Network noded() const;

    // The exact class.

    /// The library's own answer: for the network as given with `FindOptions::as_traced`, else for
    /// `noded()`, which it neither splits nor moves; computed by the first call then.
    const CREGION& builder() const;

private:
    friend FoundRegions find_regions(Network network, const FindOptions& options,
                                     const Context& context);

    // Never changed, so that copies can share it, except for the builder, which the first call
    // fills.
    struct State {
        Network network;
        bool is_traced = false;
        NetworkReport report;
        NodedNetwork noded;             // unless `is_traced`
        std::vector<SegmentKind> kinds; // of its segments
        mutable std::once_flag is_built;
        mutable TracedNetwork traced;
    };

    std::shared_ptr<const State> state_;
    Map map_;
};

/// Joins the ends of the curves, splits these where they meet or overlap, and finds the regions
/// that they enclose. The results are exact on the grid; crossings move to its points (`node`).
///
/// Throws an `Error` when the network has more crossings than there is memory for, and
/// std::logic_error when the regions do not add up (`faces_of`). Can last over a second with more
/// than a million points or crossings.
FoundRegions find_regions(Network network, const FindOptions& options = {},
                          const Context& context = {});

} // namespace korvel::kit
