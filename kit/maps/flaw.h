#pragma once

#include <optional>
#include <string>

#include "kit/base/points.h"
#include "kit/maps/map.h"

namespace korvel::kit {

/// Why a region cannot be covered with triangles or raised to a body.
struct Flaw {
    enum class Reason {
        no_area,      ///< the outer ring encloses nothing
        out_of_range, ///< a coordinate is not a number or has a magnitude above 1e70 or below 1e-60
        rings_cross,  ///< two rings cross, or a ring crosses itself
        rings_overlap, ///< two rings run along one another, or a ring along itself
        hole_outside,  ///< a hole is not inside the outer ring
        holes_overlap, ///< a hole is in another one
        cut_apart,     ///< rings touch so often that the area is not in one piece
    };
    Reason reason = Reason::no_area;
    Point2 place = {};  ///< a point where this shows
    int ring = 0;       ///< 0 is the outer ring; hole k is ring k
    int other_ring = 0; ///< of the rings that cross or overlap
};

/// The first flaw of a region, or nothing where it is valid: by the Simple Features rules, except
/// that a ring may touch itself in points, run there and back, and pass a point twice in
/// succession. n log n, except for rings with very many sides in each other's boxes.
std::optional<Flaw> flaw_of(const Map& map, int region);

/// "its outer ring and hole 2 cross at 5,7", "hole 2 is outside the outer ring at 9,9", "holes 1
/// and 3 overlap at 4,4", "it has no area", …
std::string text(const Flaw& flaw);

} // namespace korvel::kit
