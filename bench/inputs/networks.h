#pragma once

#include "bench/inputs/samples.h"
#include "tests/support/dense_map.h"

namespace korvel::bench {

using test::dense_map;

// Generated networks of about `points` points on a map of a million units each way. Each call
// generates the same network.

/// As many wavy lines across as along: cells of about one size, crossings inside segments.
CurveArrays line_grid(int points);

/// Segments of two points at random positions and angles, each crossed by about six others: many
/// small cells, and many loose ends.
CurveArrays random_segments(int points);

/// Closed loops of 50 points, nested ten deep, in groups side by side: no crossings, and most
/// regions have a hole.
CurveArrays nested_loops(int points);

/// Four closed, overlapping loops with as much noise as digitised curves: few regions with long
/// outlines.
CurveArrays noisy_loops(int points);

} // namespace korvel::bench
