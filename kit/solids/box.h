#pragma once

#include <algorithm>
#include <limits>

#include "kit/base/points.h"

namespace korvel::kit {

/// A box along the axes of a model. Empty (low above high) until it is enlarged.
struct Box {
    Point3 low = {infinity, infinity, infinity};
    Point3 high = {-infinity, -infinity, -infinity};

    bool is_empty() const { return low[0] > high[0]; }

    /// Enlarges the box by a point.
    void take_in(const Point3& point) {
        for (std::size_t k = 0; k < point.size(); ++k) {
            low[k] = std::min(low[k], point[k]);
            high[k] = std::max(high[k], point[k]);
        }
    }

private:
    static constexpr double infinity = std::numeric_limits<double>::infinity();
};

} // namespace korvel::kit
