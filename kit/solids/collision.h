#pragma once

#include <optional>

#include "kit/base/context.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// A gathered edge and a face that it meets and that contains neither of its ends.
struct Collision {
    int edge = 0;
    int face = 0;
};

/// The first gathered edge that passes through a face or touches one, and the first such face.
/// Edges without length and faces without area collide with everything. Other edges are not tested.
/// Costs one `TMOD3D::legal_body_rel_side`, whose marks stay.
std::optional<Collision> first_collision(TMOD3D& model, const Context& context);

} // namespace korvel::kit
