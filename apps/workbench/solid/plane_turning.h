#pragma once

#include <optional>

#include "kit/kit.h"

namespace korvel::workbench {

/// A plane that is turned by the far end of its normal, which goes with the mouse. Where the normal
/// lies in the picture or nearly so, it is turned within the picture.
struct PlaneTurning {
    kit::Plane plane;         ///< before
    kit::Point3 point = {};   ///< of the plane, about which it turns
    double radius = 1;        ///< of the end of the normal about it
    kit::Point2 pressed = {}; ///< where the mouse began, in view coordinates
};

/// The plane after the mouse has come to a place in the view. In steps, its angles are multiples of
/// 15 degrees. The plane before where the mouse says nothing: on the point itself.
kit::Plane turned_plane(const kit::Solids& solids, const PlaneTurning& turning,
                        const kit::Point2& mouse, bool in_steps);

/// The two angles of a plane in degrees: its turn about z and its tilt from level.
struct PlaneAngles {
    double turn = 0;
    double tilt = 0;
};
PlaneAngles angles_of(const kit::Plane& plane);

/// The unit normal of a plane with these angles; parts that are 0 are exactly so.
kit::Point3 normal_of(const PlaneAngles& angles);

} // namespace korvel::workbench
