#pragma once

#include <cmath>

#include "tests/support/dice.h"
#include "tests/support/sample_curves.h"

namespace korvel::test {

/// A network of about `points` points, the same each time: tiles of the borders of the world side
/// by side, some borders drawn again with every other point, and lines that overlap a stretch of a
/// border and run on.
inline CurveArrays dense_map(int points) {
    constexpr int tile_size = 100100;
    const CurveArrays world = sample_curves("world-50m");
    const int tiles = (points + world.pts.GetSize() / 2) / world.pts.GetSize();
    const int per_row = static_cast<int>(std::ceil(std::sqrt(tiles)));
    CurveArrays map;
    Dice dice;
    for (int tile = 0; tile < tiles; ++tile) {
        const auto place = [&](const tagPOINT& p) {
            return tagPOINT{p.x + tile % per_row * tile_size, p.y + tile / per_row * tile_size};
        };
        int first = 0;
        for (const int count : world.counts) {
            const auto add = [&](int step) {
                int added = 0;
                for (int k = 0; k < count; k += step, ++added) {
                    map.pts.Add(place(world.pts[first + k]));
                }
                map.counts.Add(added);
            };
            add(1);
            if (dice(0, 19) == 0) {
                add(2);
            }
            if (count > 1 && dice(0, 9) == 0) {
                const int k = dice(0, count - 2);
                const tagPOINT a = place(world.pts[first + k]);
                const tagPOINT b = place(world.pts[first + k + 1]);
                map.pts.Add(a);
                map.pts.Add({2 * b.x - a.x, 2 * b.y - a.y});
                map.counts.Add(2);
            }
            first += count;
        }
    }
    return map;
}

} // namespace korvel::test
