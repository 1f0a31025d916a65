#pragma once

#include <vector>

#include "korvel/body/derive/flat_model.h"
#include "korvel/body/tmod3d.h"

namespace korvel {

/// Turns the faces of a body so that neighbours run their shared side in opposite directions, and
/// all of them when the volume comes out negative. Stores the volume of the faces as they run in
/// the end, and leaves their planes to the caller.
void orient_body(TMOD3D& model, int body);

/// Orients every body and computes its volume. A face that two bodies share is turned for the later
/// one.
void orient_bodies(TMOD3D& model);

/// The same for triangles that have no records yet. `side_edges` contains the edge of each side,
/// face by face.
void orient_bodies(TMOD3D& model, FlatModel& flat, const std::vector<int>& side_edges);

/// One sixth of the sum of the faces' triple products; 0 without faces.
double body_volume(TMOD3D& model, const BODY3D& body);

} // namespace korvel
