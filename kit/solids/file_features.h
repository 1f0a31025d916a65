#pragma once

#include "kit/files/features.h"
#include "kit/solids/any_file.h"

namespace korvel::kit {

/// What one of korvel's own files contains as features: curves as lines, regions and triangles as
/// polygons in the user's coordinates, the groups of a section as polygons in the plane that they
/// are in, seen along `PlaneAxes`. Throws an `Error` for a body model, which is no map.
Features features_of(const AnyFile& file);

} // namespace korvel::kit
