#include "kit/solids/file_precision.h"

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

std::optional<Collapse> collapse_in_file(const Solids& solids) {
    std::vector<Point3> read;
    for (int v = 0; v < solids.vertex_count(); ++v) {
        Point3& point = read.emplace_back(solids.vertex(v));
        for (double& coordinate : point) {
            coordinate = as_in_file(coordinate);
        }
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
