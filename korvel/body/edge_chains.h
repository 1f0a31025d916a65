#pragma once

#include "korvel/body/tmod3d.h"

namespace korvel {

/// What `POLY3D::find_side` does, for every face from `first_face` on, in order, over one table of
/// edges instead of a scan for each: finds or appends the faces' edges and rebuilds their edge
/// lists.
void find_all_sides(TMOD3D& model, int first_face);

/// `POLY3D::line_to_vert` for every face from `first_face` on.
void chain_verts(TMOD3D& model, int first_face);

/// `POLY3D::vert_to_line` for every face from `first_face` on, over one table of edges.
void chain_lines(TMOD3D& model, int first_face);

} // namespace korvel
