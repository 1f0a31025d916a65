#include "apps/command/plane_argument.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <system_error>
#include <vector>

#include "apps/command/arguments.h"
#include "apps/command/messages.h"

namespace korvel::command {
namespace {

// The only factor of a plane that fixes a coordinate; 1 for others, which are not divided.
double only_factor(const kit::Plane& plane) {
    const auto& [a, b, c, d] = plane;
    if (b == 0 && c == 0) {
        return a;
    }
    if (a == 0 && (b == 0 || c == 0)) {
        return b + c;
    }
    return 1;
}

} // namespace

kit::Plane parse_plane(const std::string& option, const std::string& text) {
    const char* const expected =
        "a plane x=V, y=V, z=V or A,B,C,D in finite numbers, without spaces";
    if (text.find('=') != std::string::npos) {
        double value = 0;
        const char* const end = text.data() + text.size();
        const auto axis = std::string("xyz").find(text[0]);
        const auto [stop, error] =
            std::from_chars(text.data() + std::min<std::size_t>(2, text.size()), end, value);
        if (axis == std::string::npos || text[1] != '=' || error != std::errc() || stop != end ||
            !std::isfinite(value)) {
            refuse(option, text, expected);
        }
        return axis == 0   ? kit::Plane::at_x(value)
               : axis == 1 ? kit::Plane::at_y(value)
                           : kit::Plane::at_z(value);
    }
    std::vector<double> given;
    try {
        given = parse_reals(option, text, "A,B,C,D");
    } catch (const kit::Error&) {
        refuse(option, text, expected);
    }
    const double length = std::hypot(given[0], given[1], given[2]);
    if (!(length > 1e-100 && length < 1e100)) {
        refuse(option, text, "A,B,C,D with A, B and C not all 0");
    }
    return {given[0], given[1], given[2], given[3]};
}

std::string fixed_text(const kit::Plane& plane) {
    const double divisor = only_factor(plane);
    std::string sum;
    for (std::size_t k = 0; k < 3; ++k) {
        const double factor = plane.coefficients()[k] / divisor;
        if (factor != 0) {
            const bool is_first = sum.empty();
            sum += factor < 0 ? (is_first ? "-" : " - ") : (is_first ? "" : " + ");
            sum += std::abs(factor) != 1 ? number_text(std::abs(factor)) : "";
            sum += "xyz"[k];
        }
    }
    return sum;
}

std::string plane_text(const kit::Plane& plane) {
    return fixed_text(plane) + " = " + number_text(0 - plane.d / only_factor(plane));
}

std::string extent_text(const kit::Solids& solids, const kit::Plane& plane) {
    const double divisor = only_factor(plane);
    double least = std::numeric_limits<double>::infinity();
    double greatest = -least;
    for (int v = 0; v < solids.vertex_count(); ++v) {
        const auto [x, y, z] = solids.vertex(v);
        const double value = (plane.a * x + plane.b * y + plane.c * z) / divisor;
        least = std::min(least, value);
        greatest = std::max(greatest, value);
    }
    return fixed_text(plane) + " is " + number_text(least) + " to " + number_text(greatest) +
           " there";
}

} // namespace korvel::command
