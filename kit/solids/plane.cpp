#include "kit/solids/plane.h"

#include <algorithm>
#include <cmath>

namespace korvel::kit {

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
    const Point3 normal = {plane.a, plane.b, plane.c};
    const auto* const largest = std::max_element(
        normal.begin(), normal.end(), [](double a, double b) { return std::abs(a) < std::abs(b); });
    away = static_cast<int>(largest - normal.begin());
    u = away == 0 ? 1 : 0;
    v = away == 2 ? 1 : 2;
}

} // namespace korvel::kit
