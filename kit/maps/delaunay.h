#pragma once

#include "korvel/module/korvel.h"

namespace korvel::kit {

/// Appends the constrained Delaunay triangles of a region to `trg_list`, all turned alike, with
/// every ring point a corner and every ring side a side. The rings must not cross one another or
/// themselves; points of equal coordinates must be one point. Appends nothing where the rings
/// cannot be triangulated.
void add_delaunay_triangles(PLYDT& set, const PLYDT::PyToRg& region);

} // namespace korvel::kit
