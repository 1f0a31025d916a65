#include "apps/workbench/document/plane_range.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace korvel::workbench {

std::optional<int> fixed_axis(const kit::Plane& plane) {
    const std::array<double, 3> normal = {plane.a, plane.b, plane.c};
    for (int axis = 0; axis < 3; ++axis) {
        const auto others = std::ranges::count(normal, 0.0);
        if (normal[static_cast<std::size_t>(axis)] != 0 && others == 2) {
            return axis;
        }
    }
    return {};
}

kit::Plane plane_at(int axis, double value) {
    return axis == 0   ? kit::Plane::at_x(value)
           : axis == 1 ? kit::Plane::at_y(value)
                       : kit::Plane::at_z(value);
}

double place_of(const kit::Plane& plane) {
    const double sum = plane.a + plane.b + plane.c;
    const bool is_backward = fixed_axis(plane) && sum < 0;
    return 0.0 - (is_backward ? -plane.d : plane.d) / plane.normal_length();
}

kit::Plane moved_to(const kit::Plane& plane, double place) {
    if (const auto axis = fixed_axis(plane)) {
        return plane_at(*axis, place);
    }
    return {plane.a, plane.b, plane.c, -place * plane.normal_length()};
}

PlaneRange range_of(const kit::Plane& plane, const kit::Box& box) {
    if (box.is_empty()) {
        return {};
    }
    const kit::Plane through_zero = moved_to(plane, 0);
    PlaneRange range;
    const std::array<double, 3> normal = {through_zero.a, through_zero.b, through_zero.c};
    for (std::size_t k = 0; k < 3; ++k) {
        const double low = normal[k] * box.low[k] / through_zero.normal_length();
        const double high = normal[k] * box.high[k] / through_zero.normal_length();
        range.least += std::min(low, high);
        range.greatest += std::max(low, high);
    }
    return range;
}

kit::Point3 middle_of(const kit::Plane& plane, const kit::Box& box) {
    const kit::Point3 middle = {(box.low[0] + box.high[0]) / 2, (box.low[1] + box.high[1]) / 2,
                                (box.low[2] + box.high[2]) / 2};
    const double factor = plane.distance(middle) / plane.normal_length();
    return {middle[0] - factor * plane.a, middle[1] - factor * plane.b,
            middle[2] - factor * plane.c};
}

std::string plane_text(const kit::Plane& plane) {
    if (const auto axis = fixed_axis(plane)) {
        std::string text(1, "xyz"[*axis]);
        return text.append(" = ").append(kit::number_text(place_of(plane)));
    }
    std::string text;
    const std::array<const char*, 4> behind = {" x", " y", " z", ""};
    const std::array<double, 4> coefficients = plane.coefficients();
    for (std::size_t k = 0; k < coefficients.size(); ++k) {
        const double value = coefficients[k];
        if (value != 0) {
            text.append(text.empty() ? (value < 0 ? "−" : "") : (value < 0 ? " − " : " + "))
                .append(kit::number_text(std::abs(value)))
                .append(behind[k]);
        }
    }
    return text.append(" = 0");
}

} // namespace korvel::workbench
