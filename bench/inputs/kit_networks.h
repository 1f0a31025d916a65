#pragma once

#include <span>
#include <vector>

#include "bench/inputs/samples.h"
#include "kit/kit.h"

// Inputs of the kit, for programs that are linked with it.

namespace korvel::bench {

inline kit::Network network_of(const CurveArrays& curves) {
    kit::Network network;
    std::size_t start = 0;
    const std::span<const kit::GridPoint> points(curves.pts.begin(), curves.pts.end());
    for (const int count : curves.counts) {
        network.add_curve(points.subspan(start, static_cast<std::size_t>(count)));
        start += static_cast<std::size_t>(count);
    }
    return network;
}

/// The countries of the world, tile beside tile: each has 80,617 points with overlapping borders.
inline kit::Network dense_network(int tiles) {
    constexpr int tile_width = 4'000'000; // more than that of the sample
    const kit::Network sample = network_of(sample_curves("world-50m"));
    kit::Network network;
    for (int tile = 0; tile < tiles; ++tile) {
        for (int curve = 0; curve < sample.curve_count(); ++curve) {
            std::vector<kit::GridPoint> moved;
            for (kit::GridPoint point : sample.curve(curve)) {
                point.x += tile * tile_width;
                moved.push_back(point);
            }
            network.add_curve(moved);
        }
    }
    return network;
}

} // namespace korvel::bench
