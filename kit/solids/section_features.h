#pragma once

#include "kit/files/features.h"
#include "kit/solids/section.h"

namespace korvel::kit {

/// The bodies of a section as polygons with holes in the plane of the cut, seen along
/// `Section::axes`: a feature for each body, in the order of the section, with the attributes
/// `body`, `area` and `colour`. Linear but for holes, which are compared with the outlines of their
/// body.
Features features_of(const Section& section);

} // namespace korvel::kit
