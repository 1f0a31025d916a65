#include "kit/solids/plane.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "kit/base/vectors.h"

namespace korvel::kit {
namespace {

Point3 unit(const Point3& vector, bool is_forward = true);

} // namespace

Plane Plane::through(const Point3& point, const Point3& normal) {
    const auto& [a, b, c] = normal;
    return {a, b, c, -(a * point[0] + b * point[1] + c * point[2])};
}

double Plane::distance(const Point3& point) const {
    return (a * point[0] + b * point[1] + c * point[2] + d) / normal_length();
}

Plane Plane::moved(double distance) const {
    return {a, b, c, d - distance * normal_length()};
}

double Plane::normal_length() const {
    return std::hypot(a, b, c);
}

PlaneAxes::PlaneAxes(const Plane& plane) {
    const Point3 normal = unit({plane.a, plane.b, plane.c});
    const auto& [a, b, c] = normal;
    if (std::abs(c) > std::max(std::abs(a), std::abs(b))) {
        u = unit({c, 0, -a}, c > 0);
        v = cross(normal, u);
        v = unit(v, v[1] > 0);
    } else {
        u = unit({b, -a, 0}, std::abs(b) < std::abs(a) ? a < 0 : b > 0);
        v = cross(normal, u);
        v = unit(v, v[2] > 0);
    }
}

std::string axis_name(const Point3& axis) {
    std::string name = "along ";
    for (std::size_t k = 0; k < 3; ++k) {
        if (axis[k] == 1) {
            return std::string(1, "xyz"[k]);
        }
        constexpr double thousand = 1000;
        char number[32];
        std::snprintf(number, sizeof number, "%s%.3g", k > 0 ? "," : "",
                      std::round(axis[k] * thousand) / thousand + 0.0); // no minus before a 0
        name += number;
    }
    return name;
}

namespace {

// Of length 1, turned round unless it is forward. No part becomes a negative 0.
Point3 unit(const Point3& vector, bool is_forward) {
    const double length = std::hypot(vector[0], vector[1], vector[2]) * (is_forward ? 1 : -1);
    return {vector[0] / length + 0.0, vector[1] / length + 0.0, vector[2] / length + 0.0};
}

} // namespace
} // namespace korvel::kit
