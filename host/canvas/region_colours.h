#pragma once

#include "korvel/module/korvel.h"

namespace korvel::host {

/// Gives every region a fill colour of its own, such that regions that share a side can be told
/// apart. The sides must have been derived (`CCPloy2DRg::creat_top_rel`).
void colour_regions(CCPloy2DRg& set);

} // namespace korvel::host
