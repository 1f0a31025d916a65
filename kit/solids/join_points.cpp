#include "kit/solids/join_points.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <unordered_map>
#include <utility>

#include "kit/base/vectors.h"

namespace korvel::kit {
namespace {

std::vector<int> joined_by_coordinates(std::span<const Point3> points);
std::vector<int> joined_by_distance(std::span<const Point3> points, double tolerance);

struct HashOfCell {
    std::size_t operator()(const Point3& cell) const {
        std::size_t hash = 0;
        for (const double part : cell) {
            hash = hash * 0x9E3779B97F4A7C15U + std::hash<double>()(part);
        }
        return hash;
    }
};

} // namespace

std::vector<int> joined_points(std::span<const Point3> points, double tolerance) {
    return tolerance > 0 ? joined_by_distance(points, tolerance) : joined_by_coordinates(points);
}

namespace {

std::vector<int> joined_by_coordinates(std::span<const Point3> points) {
    std::vector<std::pair<Point3, int>> places;
    places.reserve(points.size());
    for (const Point3& point : points) {
        places.emplace_back(point, static_cast<int>(places.size()));
    }
    std::sort(places.begin(), places.end());
    std::vector<int> joined(points.size());
    int first = -1;
    for (const auto& [place, point] : places) {
        if (first < 0 || place != points[first]) {
            first = point;
        }
        joined[point] = first;
    }
    return joined;
}

// By cubes of the size of the tolerance: a point within it is in one of 27. Far from the origin,
// where a cube is smaller than the distance of numbers, neighbouring cubes may be one.
std::vector<int> joined_by_distance(std::span<const Point3> points, double tolerance) {
    const auto cell_of = [=](const Point3& point, const std::array<int, 3>& step) {
        Point3 cell;
        for (std::size_t k = 0; k < 3; ++k) {
            cell[k] = std::floor(point[k] / tolerance) + step[k] + 0.0; // no −0
        }
        return cell;
    };
    std::unordered_map<Point3, int, HashOfCell> last_in; // of the points that stay
    std::vector<int> before_in_cell(points.size(), -1);
    std::vector<int> joined(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        const auto point = static_cast<int>(i);
        int found = point;
        for (int step = 0; step < 27; ++step) {
            const auto entry =
                last_in.find(cell_of(points[i], {step % 3 - 1, step / 3 % 3 - 1, step / 9 - 1}));
            int other = entry == last_in.end() ? -1 : entry->second;
            for (; other >= 0; other = before_in_cell[other]) {
                const Point3 between = apart(points[i], points[other]);
                if (dot(between, between) <= tolerance * tolerance) {
                    found = std::min(found, other);
                }
            }
        }
        joined[i] = found;
        if (found == point) {
            const auto [entry, is_new] = last_in.try_emplace(cell_of(points[i], {0, 0, 0}), point);
            before_in_cell[i] = is_new ? -1 : std::exchange(entry->second, point);
        }
    }
    return joined;
}

} // namespace
} // namespace korvel::kit
