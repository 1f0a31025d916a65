#pragma once

#include "kit/files/features.h"
#include "kit/maps/map.h"
#include "kit/maps/network.h"
#include "kit/maps/triangulation.h"

// Maps as features for files, in the user's coordinates.

namespace korvel::kit {

/// Each region as a polygon with holes that is valid by the Simple Features rules where the
/// region's rings bound one area: rings that touch themselves are divided. Attributes are `number`,
/// `area`, `perimeter`, `neighbours` (numbers in a text), `colour` ("#rrggbb", distinct beside
/// neighbours) and `name` where a region has one, then those of the map with other names. Areas and
/// perimeters are those of `measured`, the same map in another projection, if it is given.
/// Near-linear.
Features features_of(const Map& map, const Map* measured = nullptr);

/// Each curve as a line, with its number. Linear.
Features features_of(const Network& network);

/// The triangles of each region as a surface, with its number; see `Features::is_tin`. Linear.
Features features_of(const Triangulation& triangles);

} // namespace korvel::kit
