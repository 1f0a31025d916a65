#include "kit/maps/grid_segment.h"

#include <array>
#include <cstddef>

namespace korvel::kit {
namespace {

WideInteger wide(std::int64_t value) {
    return value;
}

// Of b - a and d - c.
WideInteger cross_product(const GridPoint& a, const GridPoint& b, const GridPoint& c,
                          const GridPoint& d) {
    return wide(std::int64_t{b.x} - a.x) * wide(std::int64_t{d.y} - c.y) -
           wide(std::int64_t{b.y} - a.y) * wide(std::int64_t{d.x} - c.x);
}

/// A bound of the part of a segment, as a fraction with a positive denominator.
struct Bound {
    std::int64_t numerator;
    std::int64_t denominator;
    bool is_open;
};

} // namespace

bool cross(const GridSegment& s, const GridSegment& t) {
    const auto are_apart = [](const GridSegment& line, const GridPoint& a, const GridPoint& b) {
        const WideInteger side_a = side(line.from, line.to, a);
        const WideInteger side_b = side(line.from, line.to, b);
        return (side_a < 0 && side_b > 0) || (side_a > 0 && side_b < 0);
    };
    return are_apart(s, t.from, t.to) && are_apart(t, s.from, s.to);
}

// s.from + (s.to - s.from) · share / whole. Division truncates, so that a quotient below 0 may be
// one above the floor.
GridPoint rounded_crossing(const GridSegment& s, const GridSegment& t) {
    WideInteger whole = cross_product(s.from, s.to, t.from, t.to);
    WideInteger share = cross_product(s.from, t.from, t.from, t.to);
    if (whole < 0) {
        whole = -whole;
        share = -share;
    }
    const auto rounded = [&](std::int64_t from, std::int64_t to) {
        const WideInteger numerator = 2 * wide(to - from) * share + whole;
        const WideInteger quotient = numerator / (2 * whole);
        const bool is_above = numerator % (2 * whole) < 0;
        return static_cast<int>(from + static_cast<std::int64_t>(quotient) - (is_above ? 1 : 0));
    };
    return {rounded(s.from.x, s.to.x), rounded(s.from.y, s.to.y)};
}

bool passes(const GridSegment& segment, const GridPoint& point) {
    std::array<Bound, 3> lower = {{{0, 1, false}}};
    std::array<Bound, 3> upper = {{{1, 1, false}}};
    std::size_t bounds = 1;
    // Twice the distances, from the start of the segment, to both sides of the square.
    const auto clip = [&](std::int64_t from, std::int64_t to, std::int64_t middle) {
        const std::int64_t along = 2 * (to - from);
        const std::int64_t lower_edge = 2 * (middle - from) - 1;
        const std::int64_t upper_edge = lower_edge + 2;
        if (along > 0) {
            lower[bounds] = {lower_edge, along, false};
            upper[bounds++] = {upper_edge, along, true};
        } else if (along < 0) {
            lower[bounds] = {-upper_edge, -along, true};
            upper[bounds++] = {-lower_edge, -along, false};
        }
        return along != 0 || (lower_edge <= 0 && 0 < upper_edge);
    };
    if (!clip(segment.from.x, segment.to.x, point.x) ||
        !clip(segment.from.y, segment.to.y, point.y)) {
        return false;
    }
    for (std::size_t i = 0; i < bounds; ++i) {
        for (std::size_t k = 0; k < bounds; ++k) {
            const WideInteger low = wide(lower[i].numerator) * wide(upper[k].denominator);
            const WideInteger high = wide(upper[k].numerator) * wide(lower[i].denominator);
            if (low > high || (low == high && (lower[i].is_open || upper[k].is_open))) {
                return false;
            }
        }
    }
    return true;
}

WideInteger place_along(const GridSegment& segment, const GridPoint& point) {
    return wide(std::int64_t{segment.to.x} - segment.from.x) *
               wide(std::int64_t{point.x} - segment.from.x) +
           wide(std::int64_t{segment.to.y} - segment.from.y) *
               wide(std::int64_t{point.y} - segment.from.y);
}

} // namespace korvel::kit
