#include "kit/solids/triangle_sides.h"

#include <cmath>
#include <numbers>
#include <numeric>

#include "kit/base/vectors.h"

namespace korvel::kit {
namespace {

std::vector<int> sorted_by_angle(std::span<const TriangleSide> edge,
                                 const std::vector<bool>& ascends,
                                 const std::vector<Point3>& points);
std::vector<double> angles_around(std::span<const TriangleSide> edge,
                                  const std::vector<Point3>& points);

} // namespace

// Counter-clockwise, seen against the direction of the edge, the inside is behind a triangle that
// descends and before one that ascends: they are like brackets around it.
std::vector<std::pair<int, int>> pairs_around_edge(std::span<const TriangleSide> edge,
                                                   const std::vector<bool>& ascends,
                                                   const std::vector<Point3>& points) {
    const std::vector<int> order = sorted_by_angle(edge, ascends, points);
    std::vector<std::pair<int, int>> pairs;
    std::vector<char> is_paired(edge.size(), 0);
    std::vector<int> opened;
    for (int round = 0; round < 2; ++round) {
        for (const int side : order) {
            if (is_paired[side] != 0) {
                continue;
            }
            if (!ascends[side] && round == 0) {
                opened.push_back(side);
            } else if (ascends[side] && !opened.empty()) {
                pairs.emplace_back(opened.back(), side);
                is_paired[side] = is_paired[opened.back()] = 1;
                opened.pop_back();
            }
        }
    }
    int last = -1; // of those that are left over
    for (const int side : order) {
        if (is_paired[side] == 0) {
            if (last >= 0) {
                pairs.emplace_back(last, side);
            }
            last = last >= 0 ? -1 : side;
        }
    }
    return pairs;
}

namespace {

// Of those at the same angle, the ones that ascend come first: the inside of the one body ends
// where that of the other begins.
std::vector<int> sorted_by_angle(std::span<const TriangleSide> edge,
                                 const std::vector<bool>& ascends,
                                 const std::vector<Point3>& points) {
    constexpr double same_within = 1e-9;
    const std::vector<double> angles = angles_around(edge, points);
    const auto is_less = [&](int a, int b) { return angles[a] < angles[b]; };
    std::vector<int> order(edge.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), is_less);
    const auto is_gap = [&](int a, int b) { return angles[b] - angles[a] > same_within; };
    // Angles just below a full turn are equal to 0.
    const auto wrapped = std::find_if(order.begin(), order.end(), [&](int side) {
        return angles[side] > 2 * std::numbers::pi - same_within;
    });
    std::rotate(order.begin(), wrapped, order.end());
    for (auto first = order.begin(); first != order.end();) {
        const auto gap =
            std::adjacent_find(first, order.end(), [&](int a, int b) { return is_gap(a, b); });
        const auto end = gap == order.end() ? gap : gap + 1;
        std::stable_partition(first, end, [&](int side) { return ascends[side]; });
        first = end;
    }
    return order;
}

// From the first one on, from 0 to a full turn. By the corner opposite, so that triangles which
// coincide have the same angle to the last digit.
std::vector<double> angles_around(std::span<const TriangleSide> edge,
                                  const std::vector<Point3>& points) {
    const Point3& low = points[edge[0].low];
    const Point3 along = apart(low, points[edge[0].high]);
    const double length = std::sqrt(dot(along, along));
    const Point3 across = cross(along, apart(low, points[edge[0].third]));
    const Point3 ahead = cross(across, along); // of `length` times as much
    std::vector<double> angles;
    angles.reserve(edge.size());
    for (const TriangleSide& side : edge) {
        const Point3 into = apart(low, points[side.third]);
        const double angle = std::atan2(dot(across, into) * length, dot(ahead, into));
        angles.push_back(angle < 0 ? angle + 2 * std::numbers::pi : angle);
    }
    return angles;
}

} // namespace
} // namespace korvel::kit
