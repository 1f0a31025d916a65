#pragma once

#include <array>

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

/// The axes of the model (0 x, 1 y, 2 z) along which a plane is seen: those other than the axis of
/// the largest component of the plane's normal, the first of equals.
struct PlaneAxes {
    int u;
    int v;
    int away; ///< the third one

    explicit PlaneAxes(const Plane& plane);

    /// A point as it is seen.
    Point2 seen(const Point3& point) const {
        return {point[static_cast<std::size_t>(u)], point[static_cast<std::size_t>(v)]};
    }
};

} // namespace korvel::kit
