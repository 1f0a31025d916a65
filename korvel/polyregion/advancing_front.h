#pragma once

#include "korvel/polyregion/listed_triangles.h"
#include "korvel/polyregion/plydt.h"

namespace korvel {

/// Triangulates one region by the advancing front and appends the triangles: the same ones, in the
/// same order, with the same radii as the exhaustive form, found with spatial indices.
///
/// False, with nothing done, for a region that the indices cannot serve: one with coordinates that
/// are not finite, or with an edge of no length.
bool close_front(PLYDT& set, const PLYDT::PyToRg& region, ListedTriangles& listed);

} // namespace korvel
