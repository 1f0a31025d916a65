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

/// For each region those that share a side with it, ascending. The sides must have been derived.
///
/// Two or three regions run along a side unless regions lie on top of each other. The first four
/// count, which keeps the cost linear even then.
std::vector<std::vector<int>> neighbours_of_regions(const CCPloy2DRg& set);

} // namespace korvel::kit
