#pragma once

#include <functional>
#include <string_view>

#include "kit/base/context.h"

namespace korvel::kit {

/// Calls `work(i)` once for each i from 0 to `count` − 1, on this thread and others, `threads` in
/// all; 0 takes one for each core. Calls come in an unspecified order, on one thread in ascending
/// order. Progress is reported from this thread under the name of the stage.
///
/// When calls throw, no others are begun, and the exception of the least i among them leaves this
/// call. Overrides that hold for one thread (`MessageBoxOverride`, …) do not hold for the others.
void for_each_in_parallel(int count, int threads, const std::function<void(int)>& work,
                          std::string_view stage = "working", const Context& context = {});

} // namespace korvel::kit
