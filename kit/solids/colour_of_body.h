#pragma once

#include "kit/base/colour.h"
#include "kit/solids/body.h"

namespace korvel::kit {

/// The colour of a body whose `rgb` is this one, also after a model file has stored it: the default
/// one if that is.
BodyColour colour_of_body(const Colour& colour);

} // namespace korvel::kit
