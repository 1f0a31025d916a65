#pragma once

#include <string>

namespace korvel::kit {

/// A number as reports and messages show it, in up to 15 digits: exact for areas of polygons on the
/// integer lattice as long as that is enough.
std::string number_text(double value);

} // namespace korvel::kit
