#pragma once

#include <vector>

#include "kit/base/points.h"
#include "kit/base/rectangle.h"
#include "kit/solids/section.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// A section in the coordinates of its plane, as the drawing of the exact class takes it: x and y
/// of the vertices are u and v along the section's axes. Group i contains the polygons of body i of
/// `Section::bodies`, so that its holes stay open.
struct FlatSection {
    TMOD2D model;

    /// The corners of the polygons of a group.
    std::vector<std::vector<Point2>> rings(int group) const;
};

/// Takes what is inside of a frame: polygons are cut off along its sides. Linear.
FlatSection flatten(const Section& section, const Rectangle& frame);

} // namespace korvel::kit
