#pragma once

namespace korvel::kit {

/// A point for the predicates below.
struct PlanePoint {
    double x = 0;
    double y = 0;
};

/// The sign of the area of the triangle abc: positive when it turns from the x towards the y axis,
/// 0 when the points are in line. Exact for finite coordinates as long as products of two neither
/// overflow nor vanish: from 1e-140 to 1e150, and 0.
int turn(PlanePoint a, PlanePoint b, PlanePoint c);

/// The side of d from the circle through a, b and c, which turn positively: positive inside, 0 on
/// the circle, negative outside. Exact for finite coordinates as long as products of four neither
/// overflow nor vanish: from 1e-70 to 1e70, and 0.
int side_of_circle(PlanePoint a, PlanePoint b, PlanePoint c, PlanePoint d);

} // namespace korvel::kit
