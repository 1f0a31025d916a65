#pragma once

#include <array>
#include <string>

#include "kit/base/points.h"

namespace korvel::kit {

/// The plane a·x + b·y + c·z + d = 0; a, b and c are not all 0.
struct Plane {
    double a = 0;
    double b = 0;
    double c = 1;
    double d = 0;

    /// The planes x = value, y = value and z = value.
    static Plane at_x(double value) { return {1, 0, 0, -value}; }
    static Plane at_y(double value) { return {0, 1, 0, -value}; }
    static Plane at_z(double value) { return {0, 0, 1, -value}; }

    /// The plane through a point that is perpendicular to a direction of any length but 0.
    static Plane through(const Point3& point, const Point3& normal);

    /// How far a point is from the plane, positive on the side to which (a, b, c) points.
    double distance(const Point3& point) const;

    /// The plane moved by a distance to that side.
    Plane moved(double distance) const;

    /// The length of (a, b, c).
    double normal_length() const;

    std::array<double, 4> coefficients() const { return {a, b, c, d}; }

    friend bool operator==(const Plane&, const Plane&) = default;
};

/// The axes along which pictures show a plane: two unit vectors in it, perpendicular to each other.
///
/// A plane that fixes a coordinate keeps the axes of the model: y and z for x = c, x and z for
/// y = c, x and y for z = c. Of other planes those whose normal is nearest to z are seen from
/// above, u towards greater x without a part along y, v towards greater y. In all others u is
/// horizontal, towards greater x or y, whichever it changes more (x of equals), and v points
/// upward: along z where the plane is vertical.
struct PlaneAxes {
    Point3 u;
    Point3 v;

    explicit PlaneAxes(const Plane& plane);

    /// A point as it is seen: its distances along both axes from the point of the plane that is
    /// nearest to the model's origin. Where the plane fixes a coordinate these are the other two.
    Point2 seen(const Point3& point) const { return {along(u, point), along(v, point)}; }

private:
    static double along(const Point3& axis, const Point3& point) {
        return axis[0] * point[0] + axis[1] * point[1] + axis[2] * point[2];
    }
};

/// "x", "y" or "z" for an axis of the model, otherwise a direction: "along 0.6,0.8,0".
std::string axis_name(const Point3& axis);

} // namespace korvel::kit
