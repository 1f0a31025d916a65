#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

#include "kit/base/areas.h"
#include "kit/base/box_tree.h"
#include "kit/base/points.h"

namespace korvel::kit {

/// A straight line between two points of the grid. All that is computed with it is exact.
struct GridSegment {
    GridPoint from;
    GridPoint to;
};

inline BoxTree::Box box_of(const GridSegment& segment) {
    const auto [left, right] = std::minmax(segment.from.x, segment.to.x);
    const auto [bottom, top] = std::minmax(segment.from.y, segment.to.y);
    return {left, bottom, right, top};
}

/// With a margin of a unit, as far as coordinates reach.
inline BoxTree::Box widened(BoxTree::Box box) {
    constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    box.left -= box.left > least ? 1 : 0;
    box.bottom -= box.bottom > least ? 1 : 0;
    box.right += box.right < most ? 1 : 0;
    box.top += box.top < most ? 1 : 0;
    return box;
}

/// Twice the area of the triangle abc: positive when c is to the left of the line from a to b.
/// Coordinates have 32 bits, so that it needs 66 bits with its sign.
inline WideInteger side(const GridPoint& a, const GridPoint& b, const GridPoint& c) {
    return static_cast<WideInteger>(std::int64_t{b.x} - a.x) * (std::int64_t{c.y} - a.y) -
           static_cast<WideInteger>(std::int64_t{b.y} - a.y) * (std::int64_t{c.x} - a.x);
}

/// The `side` of a point that is half a unit in x and in y away from the line, at most.
inline std::int64_t reach_of(const GridSegment& segment) {
    const auto size = [](std::int64_t v) { return v < 0 ? -v : v; };
    return (size(std::int64_t{segment.to.x} - segment.from.x) +
            size(std::int64_t{segment.to.y} - segment.from.y) + 1) /
           2;
}

/// Whether both segments have their ends strictly on either side of the other.
bool cross(const GridSegment& s, const GridSegment& t);

/// The point of the grid nearest to where two segments cross; halves are rounded up.
GridPoint rounded_crossing(const GridSegment& s, const GridSegment& t);

/// Whether a part of the segment is in the square [x − 1/2, x + 1/2) × [y − 1/2, y + 1/2).
bool passes(const GridSegment& segment, const GridPoint& point);

/// Orders points along a segment that passes them.
WideInteger place_along(const GridSegment& segment, const GridPoint& point);

} // namespace korvel::kit
