#pragma once

#include "korvel/body/tmod3d.h"

namespace korvel {

/// Makes four triangles of each triangle of a body by the midpoints of its edges. A midpoint is one
/// new vertex for all faces on its edge; an edge (s, t) becomes (s, midpoint), which keeps its
/// number, and (midpoint, t); the face keeps its number for the part at its first vertex. The body
/// must own its edges alone. With `on_unit_sphere` new vertices are put on the unit sphere.
///
/// A body with a face that is no triangle with three edges, or that it lists twice, or too large to
/// grow, stays as it is.
void refine_body(TMOD3D& model, int body, bool on_unit_sphere);

} // namespace korvel
