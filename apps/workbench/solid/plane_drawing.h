#pragma once

#include <vector>

#include "kit/kit.h"

namespace korvel::workbench {

/// The corners of the part of a plane that is shown with solids: where it meets a box a little
/// larger than theirs, one after another around it, in model coordinates. Empty where it misses the
/// box.
std::vector<kit::Point3> plane_outline(const kit::Plane& plane, const kit::Box& box);

/// The two ends of the handle by which the plane is dragged: in the middle of the outline, and a
/// part of the box's size off it, along the normal.
struct PlaneHandle {
    kit::Point3 foot = {};
    kit::Point3 tip = {};
};
PlaneHandle plane_handle(const kit::Plane& plane, const kit::Box& box);

/// Draws the plane over the solids with OpenGL, translucent with an outline and a handle, in view
/// coordinates, after `kit::draw_view`.
void draw_plane(const kit::Solids& solids, const kit::Plane& plane);

} // namespace korvel::workbench
