#pragma once

#include "korvel/body/tmod3d.h"

namespace korvel {

constexpr int was_oriented = 64; ///< a mark of faces, which stays

/// Turns the faces of a body so that neighbours run their shared side in opposite directions, and
/// all of them when the volume comes out negative. Stores the volume as the faces run in the end,
/// and leaves their planes to the caller.
void orient_body(TMOD3D& model, int body);

/// Orients every body and computes its volume. A face that two bodies share is turned for the later
/// one.
void orient_bodies(TMOD3D& model);

/// Everything that is derived but the edges themselves and the bodies' extents.
void derive_all(TMOD3D& model);

/// One sixth of the sum of the faces' triple products; 0 without faces.
double body_volume(TMOD3D& model, const BODY3D& body);

} // namespace korvel
