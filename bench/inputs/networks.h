#pragma once

#include "bench/inputs/sample_network.h"

namespace korvel::bench {

// Made networks of about `points` points on a map of a million units each way, the same ones every
// time.

/// As many wavy lines down as across: cells of one size, and crossings in the lines' segments.
Network line_grid(int points);

/// Segments of two points in random places and directions, each crossed by about six others: many
/// small cells, and many ends that hang loose.
Network random_segments(int points);

/// Closed loops of 50 points, ten in one another, groups of them side by side: nothing crosses, and
/// most regions have a hole.
Network nested_loops(int points);

/// Four closed loops that overlap, noisy enough to look digitised: few regions with long outlines.
Network noisy_loops(int points);

} // namespace korvel::bench
