#pragma once

#include "korvel/body/derive/flat_model.h"
#include "korvel/body/tmod3d.h"

namespace korvel {

/// Derives everything but the edges themselves and the bodies' extents, in the order orientation,
/// wrap cuboid and view, equations and relations. Close to linear in the model.
void derive_all(TMOD3D& model);

/// The same without the orientation, from a flat model whose points are not in the view yet.
void derive_from(FlatModel flat, TMOD3D& model);

/// The same for a model that has bodies only: makes its vertices, edges and faces from the flat
/// model too. The faces have been oriented there.
void make_records_from(FlatModel flat, TMOD3D& model);

} // namespace korvel
