#pragma once

#include "kit/maps/fill.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// Prepares one region of a set for `PLYDT::CoordinatesTrans` and `TMOD3D::create3dmode`: fills an
/// empty `cap` with the region's own points, with rings through each of them once, and with the
/// triangles. The body over such a cap is closed, and an edge of it has two faces.
///
/// The region's rings must turn alike (`orient_rings`) and not cross; they may touch one another
/// and themselves. Points of equal coordinates are joined and sides of no length removed first.
/// Lattice points, see `are_lattice_points`, are compared exactly.
Filled make_cap(const PLYDT& set, const PLYDT::PyToRg& region, Fill fill, PLYDT& cap);

} // namespace korvel::kit
