#pragma once

#include "korvel/plane/plane_point.h"

namespace korvel {

/// The side of p relative to the line from a to b: 1 on the left (y axis up), −1 on the right, 0 on
/// the line, each by exact comparison of two products. Not-a-number gives −1.
inline int turn_sign(PlanePoint a, PlanePoint b, PlanePoint p) {
    const double left = (b.y - p.y) * (a.x - p.x);
    const double right = (a.y - p.y) * (b.x - p.x);
    if (left > right) {
        return 1;
    }
    return left == right ? 0 : -1;
}

/// The same with a point on the line counted as left: 1 or −1. −1 as well where the difference of
/// the two products is not a number.
inline int closed_turn_sign(PlanePoint a, PlanePoint b, PlanePoint p) {
    return (b.y - p.y) * (a.x - p.x) - (a.y - p.y) * (b.x - p.x) >= 0.0 ? 1 : -1;
}

} // namespace korvel
