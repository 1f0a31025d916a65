#pragma once

#include <vector>

#include "korvel/module/korvel.h"

namespace korvel::kit {

/// A body with an orientation of its own. In the model a face that two bodies share runs
/// counter-clockwise seen from outside of one of them at most, which is why `BODY3D::volume` of the
/// other one may be negative.
struct OwnOrientation {
    /// For each entry of the body's face list 1 when the face runs counter-clockwise seen from
    /// outside, −1 when it runs the other way, and 0 for an entry that is no face.
    std::vector<int> turns;

    /// In cubic units of the model; without meaning for an open body.
    double volume = 0;
};

/// Orients the faces of a body over its edges, where there are more than two by their angles around
/// the edge, and pieces that no edge connects by nesting: the outermost ones outwards, those
/// directly inside (cavities) inwards, and so on. Nothing derived is needed but the bodies' faces
/// and the faces' vertices. n log n, and for each piece linear in the pieces whose boxes contain
/// it.
OwnOrientation own_orientation(const TMOD3D& model, int body);

} // namespace korvel::kit
