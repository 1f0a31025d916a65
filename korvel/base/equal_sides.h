#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

#include "korvel/base/key_index.h"

namespace korvel {

/// Two points that follow one another on a boundary.
struct Side {
    int a;
    int b;
};

/// The same for records that have no second point.
inline Side point_side(int point) {
    return {point, point};
}

/// For each side the index of the first one between the same two points, whichever way it runs; a
/// side that has none before it gives its own index. Takes time linear in the sides: they are laid
/// out by their lower point, and a mark for each upper point tells the sides of one lower point
/// apart. Where the points spread too far for marks, a hash table serves.
inline std::vector<int> first_equal_sides(const std::vector<Side>& sides) {
    const auto count = sides.size();
    std::vector<int> first(count);
    int lowest = std::numeric_limits<int>::max();
    int highest = std::numeric_limits<int>::min();
    for (const Side& side : sides) {
        lowest = std::min({lowest, side.a, side.b});
        highest = std::max({highest, side.a, side.b});
    }
    if (count == 0) {
        return first;
    }
    const auto spread = static_cast<std::uint64_t>(static_cast<std::int64_t>(highest) - lowest) + 1;
    if (spread > 64 + 4 * static_cast<std::uint64_t>(count)) {
        KeyIndex table(static_cast<int>(count));
        for (std::size_t i = 0; i < count; ++i) {
            first[i] = table.find_or_add(side_key(sides[i].a, sides[i].b), static_cast<int>(i));
        }
        return first;
    }

    struct Upper {
        int point;
        int side;
    };
    const auto slot = [&](int point) { return static_cast<std::size_t>(point - lowest); };
    std::vector<int> ends(spread + 1, 0); // of the sides at each lower point, once they are placed
    for (const Side& side : sides) {
        ++ends[slot(std::min(side.a, side.b)) + 1];
    }
    for (std::size_t i = 1; i < ends.size(); ++i) {
        ends[i] += ends[i - 1];
    }
    std::vector<Upper> placed(count);
    for (std::size_t i = 0; i < count; ++i) {
        int& end = ends[slot(std::min(sides[i].a, sides[i].b))];
        placed[end++] = {std::max(sides[i].a, sides[i].b), static_cast<int>(i)};
    }
    // A mark below the start of a lower point's sides is one that an earlier point has left.
    std::vector<int> marks(spread, -1);
    int at = 0;
    for (std::size_t lower = 0; lower < spread; ++lower) {
        for (const int start = at; at < ends[lower]; ++at) {
            const Upper& upper = placed[at];
            int& mark = marks[slot(upper.point)];
            if (mark < start) {
                mark = at;
            }
            first[upper.side] = placed[mark].side;
        }
    }
    return first;
}

} // namespace korvel
