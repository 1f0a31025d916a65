#pragma once

#include <optional>
#include <string>
#include <vector>

#include "kit/kit.h"

namespace korvel::command {

/// Reads the levels of regions from a file. Each line has the number of a region, or a point x,y
/// inside it, and the lower and the upper level: "7 0 250"; what follows a # is a comment. Numbers
/// are those of the map from which this one was kept. Returns the levels by index in the map.
///
/// Throws an input error that names file, line and value of the first thing that does not fit.
/// Regions that are not in a map of selected regions are passed over.
std::vector<std::optional<kit::Levels>> read_heights(const std::string& file, const kit::Map& map,
                                                     bool is_selection);

} // namespace korvel::command
