#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "kit/base/context.h"
#include "kit/base/points.h"
#include "kit/maps/network.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// A network as `CREGION` traces it, with the arrays that it points into.
struct TracedNetwork {
    CArray<GridPoint> points; ///< of the network, as the builder has cleaned them
    CArray<int> counts;
    CREGION builder;

    /// Fills them. Throws an `Error` when there are more crossings than `most_crossings`.
    void trace(const Network& network, double tolerance, std::size_t most_crossings,
               const Context& context = {});

    /// All regions.
    std::unique_ptr<CCPloy2DRg> regions() const;

    /// The smallest ring around a point and the rings directly inside it, as one region; no region
    /// where no ring surrounds the point.
    std::unique_ptr<CCPloy2DRg> around(const GridPoint& seed) const;
};

} // namespace korvel::kit
