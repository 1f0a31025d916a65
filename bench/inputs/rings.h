#pragma once

#include "korvel/polyregion/plydt.h"

namespace korvel::bench {

/// Adds one region of `corners` points to an empty set: a ring of evenly spread directions whose
/// points lie off their circle by up to two of their spacings. With holes, a quarter of the points
/// lies on that ring and the others on a hundred such rings side by side within it.
void add_noisy_region(PLYDT& set, int corners, bool with_holes);

} // namespace korvel::bench
