#pragma once

#include "korvel/polyregion/plydt.h"

namespace korvel::bench {

// One region of `corners` points, added to an empty set. The outer ring's points have evenly spread
// directions from its centre. Each call generates the same region.

/// Distances of up to two point spacings beyond the radius. With holes, a quarter of the points is
/// on the outer ring and the others on a hundred such rings side by side inside it.
void add_noisy_region(PLYDT& set, int corners, bool with_holes);

/// Every other point half way to the centre: long sides close together, and many equal radii; with
/// `is_uneven` the distances vary as in the noisy region.
void add_spiky_region(PLYDT& set, int corners, bool is_uneven);

} // namespace korvel::bench
