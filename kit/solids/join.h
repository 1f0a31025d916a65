#pragma once

#include "korvel/module/korvel.h"

namespace korvel::kit {

/// Moves the vertices, edges, faces and bodies of `part` behind those of `whole`, as they are.
/// Derived relations are not brought along: call `derive` once after the last part.
///
/// `TMOD3D::create3dmode` on one growing model derives everything anew each time, which takes time
/// with the square of the number of bodies. A model for each body, joined, comes out the same.
void append_bodies(TMOD3D& part, TMOD3D& whole);

/// Derives relations, equations, bounds, view and extents of a joined model, as `create3dmode`
/// does.
void derive(TMOD3D& model);

} // namespace korvel::kit
