#pragma once

#include <optional>
#include <vector>

#include "kit/base/context.h"
#include "kit/base/points.h"
#include "kit/maps/network.h"

namespace korvel::kit {

/// An end of a curve that meets no other curve, but comes close to one that its last segment does
/// not cross.
struct Gap {
    int curve = 0; ///< of the network
    GridPoint end;
    GridPoint to; ///< the point of the grid nearest to the place on the other line, or its end

    /// In steps of the grid.
    double length() const;
};

/// The gaps of a network that are at most as long as `reach`, in units of the map, in the order of
/// the curves. The nearest line counts, and the end of a line where that is within `reach` too; of
/// the curve itself its other end alone. Ends that `find_regions` joins with the same tolerance
/// leave no gap. A gap between two ends is listed once. n log n.
std::vector<Gap> find_gaps(const Network& network, double reach,
                           std::optional<double> tolerance = {}, const Context& context = {});

} // namespace korvel::kit
