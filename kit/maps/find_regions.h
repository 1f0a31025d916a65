#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "kit/base/available_memory.h"
#include "kit/base/context.h"
#include "kit/maps/map.h"
#include "kit/maps/network.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// How `find_regions` works.
struct FindOptions {
    double tolerance = 1; ///< curve ends closer than half of this are joined; 0 joins within 3

    /// In bytes. What is needed grows with the crossings of the network; one with more crossings
    /// than this is enough for is refused.
    std::uint64_t memory = available_memory();
};

/// Something of a network that is on no region's border.
struct Dropped {
    enum class Reason {
        no_length,       ///< a curve without two different points
        equal_curve,     ///< a curve that equals an earlier one, in either direction
        loose_end,       ///< a piece of a curve that is on no closed ring
        touching_itself, ///< a ring that passes a point twice: only the first such ring is lost
    };
    Reason reason = Reason::no_length;
    int curve = -1;      ///< of the network; −1 for a ring
    GridPoint from = {}; ///< where the piece starts, or where the ring touches itself
    GridPoint to = {};   ///< where the piece ends
};

/// "curve 7 equals an earlier one", "curve 3 ends loosely between 5,5 and 9,9", …
std::string text(const Dropped& dropped);

/// The regions of a network, and the builder that found them.
class FoundRegions {
public:
    /// All regions, and for each hole its own region as well.
    const Map& map() const { return map_; }
    Map take_map() { return std::move(map_); }

    // Ask.

    /// What is on no border, in the order of the network. Linear in the network.
    std::vector<Dropped> dropped() const;

    /// For each ring of `map().regions().ring_list` the curves that it runs along, ascending.
    /// Where curves overlap, a side counts for the first of those nearest to it. Near-linear.
    std::vector<std::vector<int>> curves_of_rings() const;

    /// The smallest ring around a point and the rings directly inside it, as one region; an empty
    /// map where no ring surrounds the point. Unlike the regions of `map()`, its holes do not
    /// depend on the order of the curves.
    Map around(const GridPoint& seed) const;

    // The exact class.

    const CREGION& builder() const { return state_->builder; }

private:
    friend FoundRegions find_regions(Network network, const FindOptions& options,
                                     const Context& context);

    struct State {
        Network network;
        CArray<GridPoint> points; // of the network, as the builder has cleaned them
        CArray<int> counts;
        CREGION builder; // points into the arrays
    };

    std::shared_ptr<const State> state_; // never changed, so that copies can share it
    Map map_;
};

/// Splits the curves of a network where they meet, joins their ends and finds the regions that they
/// enclose. Throws an `Error` when the network has more crossings than there is memory for. Can
/// last over a second with more than a million points or crossings.
FoundRegions find_regions(Network network, const FindOptions& options = {},
                          const Context& context = {});

} // namespace korvel::kit
