#pragma once

#include "korvel/module/korvel.h"

namespace korvel::kit {

/// Orders the face list of a body that touches itself such that the exact class orients the body
/// well. Changes nothing where no edge has more than two faces of the body.
///
/// From face to face in the order of the list, the class turns at each edge the first other face
/// that is not oriented yet, whichever it is. Where an edge has four faces, this may be the one
/// opposite, which runs the same way. So faces at such edges come last, when the class has oriented
/// them over their other edges, and where it has not, a face waits until the next one in the list
/// is one that runs against it.
void order_faces_for_orientation(TMOD3D& model, int body);

} // namespace korvel::kit
