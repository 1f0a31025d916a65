#pragma once

#include "kit/base/context.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// Replaces `trg_list` of a set, which has its sides (`creat_top_rel`), by the triangles of the
/// advancing front for one of its regions, if they cover it side by side: each side of a ring is
/// the side of one triangle on its inner side, each other side that of two. Else returns false,
/// with any triangles, and as soon as two triangles are on the same side of an edge: a front that
/// fails does so early, and goes on for long. `may_be_flat` allows triangles without area.
///
/// Rings must turn from the x towards the y axis; points at the same place count as different. The
/// context can stop the call; progress is not reported.
bool cover_by_front(PLYDT& set, int region, bool may_be_flat, const Context& context = {});

} // namespace korvel::kit
