#pragma once

#include <vector>

#include "kit/base/exact_predicates.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// The rings of a region, with one number for all points of equal coordinates, and without points
/// that follow themselves and sides that run there and back.
struct Outline {
    std::vector<PlanePoint> places;      ///< distinct, sorted by x, then y; each is on a ring
    std::vector<int> points;             ///< the least point of the set at each place
    std::vector<std::vector<int>> rings; ///< by places; the outer ring first
    std::vector<int> numbers;            ///< of the rings among those of the region
};

/// Whether predicates are exact for points with this coordinate: 0, or a magnitude from 1e-60 to
/// 1e70.
bool is_usable_coordinate(double v);

/// Holes without area are left out. Without rings where the outer ring has no area, or where a
/// coordinate is not usable. n log n.
Outline outline_of(const CArray<VERT2D>& points, const CArray<RING>& rings,
                   const CArray<int>& rings_of_region);

/// The outline of a region of a `CCPloy2DRg` or a `PLYDT`.
template <class Set>
Outline outline_of(const Set& set, const typename Set::PyToRg& region) {
    return outline_of(set.pt_list, set.ring_list, region.rings);
}

/// Whether a ring of an outline turns from the x towards the y axis: 1, else -1. It must not cross
/// itself. Exact.
int turn_of_ring(const Outline& outline, const std::vector<int>& ring);

} // namespace korvel::kit
