#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "kit/base/radix_sort.h"

// Sides of faces, whose members `low` and `high` are the points of an edge.

namespace korvel::kit {

/// Sorts sides by their edges; those at one edge keep their order. Linear for many.
template <class Side>
void sort_by_edge(std::vector<Side>& sides) {
    const auto edge = [](const Side& side) { // one comparison instead of two
        return static_cast<std::uint64_t>(side.low) << 32 | static_cast<std::uint64_t>(side.high);
    };
    constexpr std::size_t first_for_radix = 4096;
    if (sides.size() >= first_for_radix) {
        radix_sort(sides, edge);
    } else {
        std::stable_sort(sides.begin(), sides.end(),
                         [&](const Side& a, const Side& b) { return edge(a) < edge(b); });
    }
}

/// Calls `visit` with the sides at each edge, a range of `sides`, which are sorted by edge.
template <class Sides, class Visit>
void for_each_edge(Sides& sides, Visit visit) {
    for (auto side = sides.begin(); side != sides.end();) {
        const auto end = std::find_if(side, sides.end(), [&](const auto& other) {
            return other.low != side->low || other.high != side->high;
        });
        visit(std::span(side, end));
        side = end;
    }
}

} // namespace korvel::kit
