#pragma once

#include <optional>
#include <set>
#include <vector>

#include "kit/kit.h"

namespace korvel::workbench {

class MapModel;
class SolidModel;

/// How regions of the map become bodies.
struct RaiseSettings {
    bool selected_only = false;
    bool adds = false; ///< to the solids, instead of replacing them
    kit::LevelAxis axis = kit::LevelAxis::z;

    /// Of the regions without levels of their own; empty leaves these out.
    std::optional<kit::Levels> levels = kit::Levels{0, 1};

    bool separate = false; ///< neighbours share no vertices, edges and walls
};

/// Raises regions of the map between their levels in the worker, as a step. Regions that are left
/// out are reported as warnings. Nothing while no regions are found.
void raise_map(const MapModel& map, SolidModel& solids, const RaiseSettings& settings);

/// What `raise_map` calls `kit::raise` with for a map of so many regions.
kit::RaiseOptions raise_options(const RaiseSettings& settings, int regions,
                                const std::vector<std::optional<kit::Levels>>& levels,
                                const std::set<int>& selected);

} // namespace korvel::workbench
