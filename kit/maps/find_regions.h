#pragma once

#include <cstdint>
#include <string>

#include "kit/base/available_memory.h"
#include "kit/files/curve_file.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// Finds the regions of a network with `CREGION::SetPtsInfo`, which keeps pointing into `curves`.
/// The memory that this takes grows with the crossings of the network, so the crossing limit of
/// `CREGION` is what `memory`, in bytes, is enough for; the former limit is restored. Throws
/// an input error, which names `file`, when the network has more crossings.
void find_regions(CurveNetwork& curves, const std::string& file, CREGION& builder,
                  std::uint64_t memory = available_memory());

} // namespace korvel::kit
