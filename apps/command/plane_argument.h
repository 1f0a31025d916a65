#pragma once

#include <string>

#include "kit/kit.h"

namespace korvel::command {

/// A plane named for the coordinate that it fixes, `x=V`, `y=V` or `z=V`, or `A,B,C,D` for
/// A x + B y + C z + D = 0. Throws an input error that names the option when it does not fit.
kit::Plane parse_plane(const std::string& option, const std::string& text);

/// What a plane fixes: "y", or "x + 2y" for an oblique one.
std::string fixed_text(const kit::Plane& plane);

/// "y = 60000", "x + 2y = 3".
std::string plane_text(const kit::Plane& plane);

/// The least and the greatest value in a model of what a plane fixes: "y is 208 to 99999 there".
std::string extent_text(const kit::Solids& solids, const kit::Plane& plane);

} // namespace korvel::command
