#pragma once

#include <string>

#include "kit/base/grid.h"

namespace korvel::kit {

/// Where the coordinates of a map or a model are in the world.
struct Placement {
    Grid grid;

    /// The reference system of the user's coordinates: "EPSG:4326", or a definition in WKT; empty
    /// if it is not known.
    std::string reference = {};

    bool operator==(const Placement& other) const = default;

    /// Whether there is nothing to store: steps are the user's coordinates, in no known system.
    bool is_plain() const { return grid.is_identity() && reference.empty(); }
};

} // namespace korvel::kit
