#pragma once

#include <vector>

#include "kit/base/rectangle.h"

namespace korvel::kit {

/// The extent that holds most of the points with these coordinates: at least 99 % of them. Each
/// axis takes the shortest interval that holds 99.5 % of its coordinates, with the others that are
/// at most a quarter of its length away, if that is less than three quarters of the whole. Else it
/// takes the whole, as does an axis of less than 1000 coordinates. Empty without points. Costs a
/// sort.
Rectangle main_extent(std::vector<double> xs, std::vector<double> ys);

} // namespace korvel::kit
