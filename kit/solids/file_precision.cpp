#include "kit/solids/file_precision.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "kit/base/number_text.h"

namespace korvel::kit {

double as_in_file(double coordinate) {
    constexpr double first_inexact = 1 << 24;
    if (coordinate == std::trunc(coordinate) && std::abs(coordinate) < first_inexact) {
        return coordinate;
    }
    char digits[400];
    std::snprintf(digits, sizeof digits, "%f", coordinate);
    return std::strtof(digits, nullptr);
}

Point3 as_in_file(const Point3& point, const Grid& grid) {
    const bool is_plain = grid.is_identity();
    Point3 read = is_plain ? point : grid.to_grid(point);
    std::transform(read.begin(), read.end(), read.begin(),
                   [](double coordinate) { return as_in_file(coordinate); });
    return is_plain ? read : grid.to_user(read);
}

std::optional<Collapse> collapse_in_file(const Solids& solids) {
    std::vector<Point3> read;
    read.reserve(static_cast<std::size_t>(solids.vertex_count()));
    for (int v = 0; v < solids.vertex_count(); ++v) {
        read.push_back(as_in_file(solids.vertex(v), solids.placement().grid));
    }
    for (const Face face : solids.faces()) {
        const std::span<const int> corners = face.vertices();
        for (std::size_t k = 0; k < corners.size(); ++k) {
            const int next = corners[(k + 1) % corners.size()];
            if (read[corners[k]] == read[next]) {
                return Collapse{face.index(), face.bodies().empty() ? -1 : face.bodies()[0],
                                solids.vertex(corners[k]), solids.vertex(next)};
            }
        }
    }
    return {};
}

std::string text(const Collapse& collapse) {
    const auto place = [](const Point3& point) {
        return number_text(point[0]) + "," + number_text(point[1]) + "," + number_text(point[2]);
    };
    return "face " + std::to_string(collapse.face) +
           (collapse.body < 0 ? "" : " of body " + std::to_string(collapse.body)) +
           " would lose its area: in the six decimals and the single precision of a model file its "
           "corners " +
           place(collapse.corner) + " and " + place(collapse.same_in_file) + " are one";
}

} // namespace korvel::kit
