#pragma once

#include <vector>

#include "kit/maps/find_regions.h"

// How `FoundRegions` lists what is on no border.

namespace korvel::kit {

/// Curves without two different points.
void add_curves_without_length(const Network& network, std::vector<Dropped>& out);

/// The lines of a noded network that are on no border, by curve and kind.
void add_leftover_lines(const NodedNetwork& noded, const std::vector<SegmentKind>& kinds,
                        std::vector<Dropped>& out);

/// What `CREGION` has left out of a network: curves that equal earlier ones, pieces that it has
/// pruned, and the first ring that touches itself.
void add_what_is_not_traced(const Network& network, const CREGION& builder,
                            std::vector<Dropped>& out);

} // namespace korvel::kit
