#pragma once

#include <array>

#include "korvel/module/korvel.h"

namespace korvel::kit {

/// A point of a map with integer coordinates, as the exact classes take them.
using GridPoint = ::tagPOINT;

/// x and y on a map, or u and v in a view.
using Point2 = std::array<double, 2>;

/// x, y and z in a model, or u, v and w in a view.
using Point3 = std::array<double, 3>;

/// The point whose coordinates are 0.
constexpr Point2 plane_origin = {0, 0};
constexpr Point3 space_origin = {0, 0, 0};

inline bool is_same(const GridPoint& a, const GridPoint& b) {
    return a.x == b.x && a.y == b.y;
}

/// The order of x, then y.
inline bool is_before(const GridPoint& a, const GridPoint& b) {
    return a.x != b.x ? a.x < b.x : a.y < b.y;
}

inline Point2 to_point(const GridPoint& point) {
    return {static_cast<double>(point.x), static_cast<double>(point.y)};
}

inline Point3 to_point(const double* xyz) {
    return {xyz[0], xyz[1], xyz[2]};
}

} // namespace korvel::kit
