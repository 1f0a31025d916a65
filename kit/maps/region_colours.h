#pragma once

#include <vector>

#include "korvel/module/korvel.h"

namespace korvel::kit {

/// Gives every region a fill colour of its own, such that regions that share a side have clearly
/// different colours. The sides must have been derived (`CCPloy2DRg::creat_top_rel`).
void colour_regions(CCPloy2DRg& set);

/// A hue for every region, in degrees above 0 and up to 360, such that regions that share a side
/// have clearly different hues. The sides must have been derived.
std::vector<double> hues_of_regions(const CCPloy2DRg& set);

} // namespace korvel::kit
