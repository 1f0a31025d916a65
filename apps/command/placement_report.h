#pragma once

#include <optional>
#include <string>

#include "apps/command/record.h"
#include "kit/kit.h"

namespace korvel::command {

/// "grid 0.001, origin 500000,4649776, WGS 84 / UTM zone 32N (EPSG:32632)"; an origin of 0 is left
/// out, and a definition in WKT is named.
std::string placement_text(const kit::Placement& placement);

/// {"step": "0.001", "origin": [500000, 4649776], "reference": "EPSG:25832"}
Record placement_record(const kit::Placement& placement);

/// Sets the fact "grid" unless the placement is plain.
void set_placement(const kit::Placement& placement);

/// Prints the placement of a map that was read, and how far points have moved to its grid, and sets
/// the fact, unless it is plain.
void report_placement(const kit::Placement& placement, std::optional<double> largest_shift = {});

} // namespace korvel::command
