#pragma once

#include "korvel/body/tmod3d.h"

namespace korvel {

/// Turns the faces of a body so that neighbours run their shared side in opposite directions, and
/// all of them when the volume comes out negative; that volume stays stored until it is computed
/// again.
void orient_body(TMOD3D& model, int body);

/// One sixth of the sum of the faces' triple products; 0 without faces.
double body_volume(TMOD3D& model, const BODY3D& body);

} // namespace korvel
