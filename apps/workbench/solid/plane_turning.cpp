#include "apps/workbench/solid/plane_turning.h"

#include <array>
#include <cmath>
#include <numbers>

namespace korvel::workbench {
namespace {

kit::Point3 unit_of(const kit::Plane& plane);
kit::Point3 seen_direction(const kit::Solids& solids, const kit::Point3& direction);
kit::Point3 model_direction(const kit::Solids& solids, const kit::Point3& seen);
std::optional<kit::Point3> turned_in_picture(const kit::Point3& normal, const kit::Point2& from,
                                             const kit::Point2& to);
kit::Point3 following(const kit::Point3& normal, const kit::Point2& by);
PlaneAngles rounded(const PlaneAngles& angles);

constexpr double degree = std::numbers::pi / 180;

} // namespace

kit::Plane turned_plane(const kit::Solids& solids, const PlaneTurning& turning,
                        const kit::Point2& mouse, bool in_steps) {
    constexpr double in_picture = 0.17; // the sine of 10 degrees
    if (mouse == turning.pressed || !(turning.radius > 0)) {
        return turning.plane;
    }
    const kit::Point3 centre = solids.to_view(turning.point);
    const kit::Point2 from = {(turning.pressed[0] - centre[0]) / turning.radius,
                              (turning.pressed[1] - centre[1]) / turning.radius};
    const kit::Point2 to = {(mouse[0] - centre[0]) / turning.radius,
                            (mouse[1] - centre[1]) / turning.radius};
    const kit::Point3 before = seen_direction(solids, unit_of(turning.plane));
    std::optional<kit::Point3> seen;
    if (std::abs(before[2]) < in_picture) {
        seen = turned_in_picture(before, from, to);
    } else {
        seen = following(before, {to[0] - from[0], to[1] - from[1]});
    }
    if (!seen) {
        return turning.plane;
    }
    kit::Point3 normal = model_direction(solids, *seen);
    if (in_steps) {
        normal = normal_of(rounded(angles_of({normal[0], normal[1], normal[2], 0})));
    }
    return kit::Plane::through(turning.point, normal);
}

PlaneAngles angles_of(const kit::Plane& plane) {
    const double level = std::hypot(plane.a, plane.b);
    return {level > 0 ? std::atan2(plane.b, plane.a) / degree : 0,
            std::atan2(level, plane.c) / degree};
}

kit::Point3 normal_of(const PlaneAngles& angles) {
    const auto clean = [](double part) {
        constexpr double parts = 1e15; // the cosine of a right angle is 0, not 6e-17
        return std::round(part * parts) / parts + 0.0;
    };
    const double level = std::sin(angles.tilt * degree);
    return {clean(level * std::cos(angles.turn * degree)),
            clean(level * std::sin(angles.turn * degree)), clean(std::cos(angles.tilt * degree))};
}

namespace {

kit::Point3 unit_of(const kit::Plane& plane) {
    const double length = plane.normal_length();
    return {plane.a / length, plane.b / length, plane.c / length};
}

kit::Point3 seen_direction(const kit::Solids& solids, const kit::Point3& direction) {
    const std::array<double, 16> matrix = kit::view_matrix(solids.model());
    kit::Point3 seen = {};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        for (std::size_t k = 0; k < 3; ++k) {
            seen[k] += matrix[4 * axis + k] * direction[axis];
        }
    }
    return seen;
}

// The other way round: the matrix only turns.
kit::Point3 model_direction(const kit::Solids& solids, const kit::Point3& seen) {
    const std::array<double, 16> matrix = kit::view_matrix(solids.model());
    kit::Point3 direction = {};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        for (std::size_t k = 0; k < 3; ++k) {
            direction[axis] += matrix[4 * axis + k] * seen[k];
        }
    }
    return direction;
}

// By the angle that the mouse goes around the point; none from or to the point itself.
std::optional<kit::Point3> turned_in_picture(const kit::Point3& normal, const kit::Point2& from,
                                             const kit::Point2& to) {
    constexpr double least = 0.02; // of the radius
    if (std::hypot(from[0], from[1]) < least || std::hypot(to[0], to[1]) < least) {
        return {};
    }
    const double angle =
        std::atan2(from[0] * to[1] - from[1] * to[0], from[0] * to[0] + from[1] * to[1]);
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    return kit::Point3{cosine * normal[0] - sine * normal[1], sine * normal[0] + cosine * normal[1],
                       normal[2]};
}

// On the half of the unit ball on which it was; beyond the ball's outline it stays on that.
kit::Point3 following(const kit::Point3& normal, const kit::Point2& by) {
    const double u = normal[0] + by[0];
    const double v = normal[1] + by[1];
    const double seen = std::hypot(u, v);
    if (seen >= 1) {
        return {u / seen, v / seen, 0};
    }
    return {u, v, std::copysign(std::sqrt((1 - seen) * (1 + seen)), normal[2])};
}

PlaneAngles rounded(const PlaneAngles& angles) {
    constexpr double step = 15;
    return {step * std::round(angles.turn / step), step * std::round(angles.tilt / step)};
}

} // namespace
} // namespace korvel::workbench
