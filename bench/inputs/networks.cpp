#include "bench/inputs/networks.h"

#include <cmath>
#include <numbers>

#include "tests/support/dice.h"

namespace korvel::bench {
namespace {

constexpr double map_size = 1e6;
constexpr double full_turn = 2 * std::numbers::pi;

void add_point(CurveArrays& curves, double x, double y);
void add_loop(CurveArrays& curves, test::Dice& dice, double x, double y, double radius,
              double noise, int points);

} // namespace

CurveArrays line_grid(int points) {
    const int lines_each_way = static_cast<int>(std::sqrt(points / 4.0));
    const int points_per_line = 2 * lines_each_way;
    const double spacing = map_size / lines_each_way;
    CurveArrays curves;
    test::Dice dice;
    for (const bool across : {true, false}) {
        for (int line = 0; line < lines_each_way; ++line) {
            for (int k = 0; k < points_per_line; ++k) {
                const double along = map_size * k / (points_per_line - 1);
                const double off = (line + dice.between(0.3, 0.7)) * spacing;
                add_point(curves, across ? along : off, across ? off : along);
            }
            curves.counts.Add(points_per_line);
        }
    }
    return curves;
}

CurveArrays random_segments(int points) {
    const int segments = points / 2;
    const double length = 3 * map_size / std::sqrt(segments);
    CurveArrays curves;
    test::Dice dice;
    for (int k = 0; k < segments; ++k) {
        const double x = dice.up_to(map_size);
        const double y = dice.up_to(map_size);
        const double angle = dice.up_to(full_turn);
        add_point(curves, x, y);
        add_point(curves, x + length * std::cos(angle), y + length * std::sin(angle));
        curves.counts.Add(2);
    }
    return curves;
}

CurveArrays nested_loops(int points) {
    constexpr int depth = 10;
    constexpr int points_per_loop = 50;
    const int groups = points / (depth * points_per_loop);
    const int groups_per_row = static_cast<int>(std::ceil(std::sqrt(groups)));
    const double spacing = map_size / groups_per_row;
    const double step = spacing / (2 * (depth + 1)); // from one loop to the next
    CurveArrays curves;
    test::Dice dice;
    for (int group = 0; group < groups; ++group) {
        const double x = (group % groups_per_row + 0.5) * spacing;
        const double y = (static_cast<double>(group / groups_per_row) + 0.5) * spacing;
        for (int loop = 1; loop <= depth; ++loop) {
            add_loop(curves, dice, x, y, loop * step, step / 4, points_per_loop);
        }
    }
    return curves;
}

CurveArrays noisy_loops(int points) {
    constexpr double radius = 0.3 * map_size;
    const int points_per_loop = points / 4;
    const double noise = full_turn * radius / points_per_loop; // a spacing of the points
    CurveArrays curves;
    test::Dice dice;
    for (const double x : {0.35, 0.65}) {
        for (const double y : {0.35, 0.65}) {
            add_loop(curves, dice, x * map_size, y * map_size, radius, noise, points_per_loop);
        }
    }
    return curves;
}

namespace {

void add_point(CurveArrays& curves, double x, double y) {
    curves.pts.Add({static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y))});
}

/// A closed loop about (x, y); the distance of each of its `points` points from the centre differs
/// from `radius` by at most `noise`.
void add_loop(CurveArrays& curves, test::Dice& dice, double x, double y, double radius,
              double noise, int points) {
    const int first = curves.pts.GetSize();
    for (int k = 0; k < points; ++k) {
        const double angle = full_turn * k / points;
        const double distance = radius + dice.between(-noise, noise);
        add_point(curves, x + distance * std::cos(angle), y + distance * std::sin(angle));
    }
    const tagPOINT start = curves.pts[first];
    curves.pts.Add(start);
    curves.counts.Add(points + 1);
}

} // namespace
} // namespace korvel::bench
