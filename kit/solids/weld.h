#pragma once

#include "kit/base/context.h"
#include "kit/solids/solids.h"

namespace korvel::kit {

/// How `weld` works.
struct WeldOptions {
    double tolerance = 0; ///< vertices no farther apart are joined; 0: those of equal coordinates
    bool match_walls = true; ///< triangulate walls anew where this makes faces equal
};

/// What was welded.
struct WeldReport {
    int vertices_joined = 0; ///< that became another vertex
    int faces_shared = 0;    ///< faces that now are those of several bodies
    int walls_split = 0;     ///< walls cut at the levels of others
    int walls_turned = 0;    ///< walls with as many triangles as before, along other diagonals
};

/// Welds bodies where they touch: vertices, edges and faces that coincide become one, which all the
/// bodies list, and bodies that share a face list one another as neighbours. Walls that two bodies
/// have along an axis are triangulated alike over their common part first (see walls.h), unless
/// this would open a body that touches itself along the diagonal of a wall. Faces that no body and
/// vertices that no face uses disappear. Bodies keep their order, colours, parameters and names,
/// other faces their triangles; everything derived is derived anew. What is welded already stays as
/// it is.
///
/// The tolerance joins vertices, not walls: those of different heights are matched where their
/// vertices agree exactly in the two coordinates across the axis.
///
/// Of a shared face the model keeps one orientation, so `BODY3D::volume` of one of its bodies may
/// be negative (`Body::volume` is not). Where a body touches itself, an edge of it has four faces.
/// The faces of such a body are listed in an order in which the exact class orients it well.
///
/// Throws an `Error` for a tolerance that is negative or not finite, for coordinates that are not,
/// and when a body would be degenerate: a face without area, or two faces at the same vertices. The
/// model stays as it was then, and when the call is cancelled. Near-linear.
WeldReport weld(Solids& solids, const WeldOptions& options = {}, const Context& context = {});

} // namespace korvel::kit
