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

/// The levels of each region from `low` up by its value of an attribute, which may be a number or
/// the text of one; none for a region without a value, or with the value 0. Throws an input error
/// for an attribute that the map does not have, and for a value that is negative or no number.
std::vector<std::optional<kit::Levels>> levels_by_field(const kit::Map& map,
                                                        const std::string& field, double low);

} // namespace korvel::command
