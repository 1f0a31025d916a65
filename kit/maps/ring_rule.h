#pragma once

#include <algorithm>

#include "kit/base/exact_predicates.h"
#include "kit/base/points.h"

namespace korvel::kit {

/// Whether a side of a ring is to the right of a point, so that the ring encloses the point if an
/// odd number of its sides are. Of a side the lower end counts, and a point on a side is to the
/// right of it, so that it is on one side of each border. Exact.
inline bool is_right_of(const Point2& point, PlanePoint a, PlanePoint b) {
    const bool is_upward = a.y <= point[1] && point[1] < b.y;
    const bool is_downward = b.y <= point[1] && point[1] < a.y;
    if (!is_upward && !is_downward) {
        return false;
    }
    const auto [least, greatest] = std::minmax(a.x, b.x);
    if (point[0] < least || point[0] > greatest) {
        return point[0] < least;
    }
    const int side = turn(a, b, {point[0], point[1]});
    return is_upward ? side > 0 : side < 0;
}

} // namespace korvel::kit
