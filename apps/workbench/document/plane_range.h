#pragma once

#include <optional>
#include <string>

#include "kit/kit.h"

namespace korvel::workbench {

/// The axis that a plane fixes: 0 for x = value, 1 for y, 2 for z; none for any other.
std::optional<int> fixed_axis(const kit::Plane& plane);

/// The plane that fixes an axis at a value.
kit::Plane plane_at(int axis, double value);

/// How far a plane is from 0, 0, 0 along its normal: the value of a plane that fixes an axis.
double place_of(const kit::Plane& plane);

/// The plane at another place along its normal.
kit::Plane moved_to(const kit::Plane& plane, double place);

/// The places at which planes of a direction meet a box.
struct PlaneRange {
    double least = 0;
    double greatest = 0;

    double middle() const { return (least + greatest) / 2; }
    double length() const { return greatest - least; }
};
PlaneRange range_of(const kit::Plane& plane, const kit::Box& box);

/// The point of a plane that is nearest to the middle of a box.
kit::Point3 middle_of(const kit::Plane& plane, const kit::Box& box);

/// "z = 1500", or "3 x + 4 y − 80000 = 0".
std::string plane_text(const kit::Plane& plane);

} // namespace korvel::workbench
