#pragma once

#include <optional>

#include "kit/maps/network.h"

namespace korvel::kit {

/// A network whose curve ends have been joined.
struct JoinedEnds {
    Network network;
    int moved = 0; ///< ends
};

/// Moves each end of a curve onto the first end before it that is less than half the tolerance
/// away and was not moved itself; a tolerance of 0 joins within 3, as `CREGION` does. Nothing if no
/// end moves, as with a tolerance up to 2, within which the grid has no other point. Linear.
std::optional<JoinedEnds> join_ends(const Network& network, double tolerance);

} // namespace korvel::kit
