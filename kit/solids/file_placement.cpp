#include "kit/solids/file_placement.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include "kit/solids/box.h"

namespace korvel::kit {
namespace {

constexpr double bits_of_file = 1 << 24;

bool file_keeps(std::span<const Point3> points, const Grid& grid, double extent);
std::optional<Grid> step_of_points(std::span<const Point3> points, double extent, int finest);
Grid decimal_step(int exponent, const Point3& origin = {});
Grid moved_to_middle(const Grid& step, const Box& box, double extent);

} // namespace

Placement placement_for_file(std::span<const Point3> points, const Placement& present) {
    Box box;
    for (const Point3& point : points) {
        box.take_in(point);
    }
    double extent = 0;
    for (std::size_t k = 0; k < 3 && !box.is_empty(); ++k) {
        extent = std::max(extent, box.high[k] - box.low[k]);
    }
    constexpr double narrowest = 1e-20; // steps and origins have a range in files
    constexpr double widest = 1e25;
    if (!present.grid.is_identity() || !(extent > narrowest && extent < widest) ||
        file_keeps(points, present.grid, extent)) {
        return present;
    }
    const int finest = static_cast<int>(std::ceil(std::log10(extent / bits_of_file)));
    const std::optional<Grid> step = step_of_points(points, extent, finest);
    if (step && file_keeps(points, *step, extent)) {
        return {*step, present.reference};
    }
    return {moved_to_middle(step.value_or(decimal_step(finest)), box, extent), present.reference};
}

Placement placement_for_file(const Solids& solids) {
    std::vector<Point3> points;
    points.reserve(static_cast<std::size_t>(solids.vertex_count()));
    for (int vertex = 0; vertex < solids.vertex_count(); ++vertex) {
        points.push_back(solids.vertex(vertex));
    }
    return placement_for_file(points, solids.placement());
}

namespace {

bool file_keeps(std::span<const Point3> points, const Grid& grid, double extent) {
    constexpr double decimals = 1e6;
    constexpr double too_large_for_decimals = 1e9;
    const double most = extent / bits_of_file;
    const bool is_plain = grid.is_identity();
    return std::all_of(points.begin(), points.end(), [&](const Point3& point) {
        const Point3 steps = is_plain ? point : grid.to_grid(point);
        return std::all_of(steps.begin(), steps.end(), [&](double at) {
            const double written = std::abs(at) < too_large_for_decimals
                                       ? std::nearbyint(at * decimals) / decimals
                                       : at;
            return std::abs(static_cast<float>(written) - at) * grid.step() <= most;
        });
    });
}

// The widest decimal step up to 1 on which all points are, down to the finest.
std::optional<Grid> step_of_points(std::span<const Point3> points, double extent, int finest) {
    constexpr double whole_within = 1e-6; // as for a grid
    double parts = 1;                     // of 1
    int exponent = 0;
    if (exponent < finest) {
        return {};
    }
    for (const Point3& point : points) {
        for (const double at : point) {
            while (std::abs(at * parts - std::nearbyint(at * parts)) >
                   std::min(whole_within, parts * extent / (4 * bits_of_file))) {
                parts *= 10;
                if (--exponent < finest) {
                    return {};
                }
            }
        }
    }
    return decimal_step(exponent);
}

Grid decimal_step(int exponent, const Point3& origin) {
    const double power = std::pow(10.0, std::abs(exponent));
    return exponent < 0 ? Grid(1, power, origin) : Grid(power, 1, origin);
}

Grid moved_to_middle(const Grid& step, const Box& box, double extent) {
    // A quarter of the extent, rounded down to a power of ten: the farthest point is less than the
    // extent away.
    const double unit =
        std::max(std::floor(std::log10(extent / 4)), std::round(std::log10(step.step())));
    const double parts = std::pow(10.0, std::abs(unit));
    Point3 origin;
    for (std::size_t k = 0; k < origin.size(); ++k) {
        const double middle = box.low[k] + (box.high[k] - box.low[k]) / 2;
        origin[k] = unit < 0 ? std::nearbyint(middle * parts) / parts
                             : std::nearbyint(middle / parts) * parts;
    }
    return step.from(origin);
}

} // namespace
} // namespace korvel::kit
