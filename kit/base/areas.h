#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "korvel/module/korvel.h"

namespace korvel::kit {

/// Holds sums of products of 32-bit coordinates, so that areas of lattice polygons are exact.
__extension__ using WideInteger = __int128;

/// True when every coordinate is an integer of 32 bits.
inline bool are_lattice_points(const CArray<VERT2D>& points) {
    const auto is_integer = [](double v) {
        using Limits = std::numeric_limits<std::int32_t>;
        return v >= Limits::min() && v <= Limits::max() && v == std::trunc(v);
    };
    return std::all_of(points.begin(), points.end(), [&](const VERT2D& point) {
        return is_integer(point.x) && is_integer(point.y);
    });
}

/// Twice the area of the triangle abc, positive when it turns from the x towards the y axis. Number
/// is WideInteger (exact, for lattice points) or double.
template <class Number>
Number twice_area(const VERT2D& a, const VERT2D& b, const VERT2D& c) {
    const auto apart = [](double from, double to) {
        return static_cast<Number>(to) - static_cast<Number>(from);
    };
    return apart(a.x, b.x) * apart(a.y, c.y) - apart(a.y, b.y) * apart(a.x, c.x);
}

/// Twice the area that a ring encloses, signed like that of a triangle.
template <class Number>
Number twice_area(const CArray<VERT2D>& points, const RING& ring) {
    Number sum = 0;
    for (int k = 1; k + 1 < ring.pts.GetSize(); ++k) {
        sum +=
            twice_area<Number>(points[ring.pts[0]], points[ring.pts[k]], points[ring.pts[k + 1]]);
    }
    return sum;
}

/// Twice the area of a region: its outer ring without its holes, whichever way the rings turn.
template <class Number, class Set>
Number twice_area(const Set& set, const typename Set::PyToRg& region) {
    const auto size = [](Number area) { return area < 0 ? -area : area; };
    Number sum = 0;
    for (int i = 0; i < region.rings.GetSize(); ++i) {
        const Number ring = size(twice_area<Number>(set.pt_list, set.ring_list[region.rings[i]]));
        sum += i == 0 ? ring : -ring;
    }
    return sum;
}

/// The area of a region of a `CCPloy2DRg` or a `PLYDT`; with `lattice` exact up to one rounding.
template <class Set>
double region_area(const Set& set, const typename Set::PyToRg& region, bool lattice) {
    return lattice ? static_cast<double>(twice_area<WideInteger>(set, region)) / 2
                   : twice_area<double>(set, region) / 2;
}

} // namespace korvel::kit
