#pragma once

#include "kit/maps/noding.h"

namespace korvel::kit {

/// Moves segments between the same points, in either direction, to the duplicates, except for the
/// first of them. Near-linear.
void leave_out_equal_segments(NodedNetwork& noded);

} // namespace korvel::kit
