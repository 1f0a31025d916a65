#pragma once

#include <vector>

#include "kit/kit.h"

namespace korvel::workbench {

/// The corners of the part of a plane that is shown with solids: where it meets a box a little
/// larger than theirs, one after another around it, in model coordinates. Empty where it misses the
/// box.
std::vector<kit::Point3> plane_outline(const kit::Plane& plane, const kit::Box& box);

/// What of a plane can be dragged: the plane moves along its normal by itself and its arrow, and
/// turns by the end of its normal.
enum class PlanePart { none, plane, end };

/// The handles of a plane: an arrow from a point of it along its normal, a part of the box's size
/// long, and beyond the arrow the end of the normal.
struct PlaneHandle {
    kit::Point3 foot = {};
    kit::Point3 tip = {};
    kit::Point3 end = {};
    double radius = 0; ///< of the end about the foot
};
PlaneHandle plane_handle(const kit::Plane& plane, const kit::Box& box, const kit::Point3& foot);

/// At the point in the middle of the outline.
PlaneHandle plane_handle(const kit::Plane& plane, const kit::Box& box);

/// Draws the plane over the solids with OpenGL, translucent with an outline, in view coordinates,
/// after `kit::draw_view`.
void draw_plane(const kit::Solids& solids, const kit::Plane& plane);

/// Draws the handles over everything, larger what is under the mouse; `unit` is the length of a
/// pixel. While the plane is turned, the circle within which the end of the normal moves is drawn
/// as well.
void draw_plane_handle(const kit::Solids& solids, const PlaneHandle& handle, double unit,
                       PlanePart under_mouse, bool is_turned);

} // namespace korvel::workbench
