#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "kit/kit.h"

namespace korvel::kit {
namespace {

TEST(Grid, ReadsAndWritesStepsAsDecimalsOrFractions) {
    for (const auto& [text, step, written] :
         std::vector<std::tuple<std::string, double, std::string>>{{"0.001", 0.001, "0.001"},
                                                                   {"1e-3", 0.001, "0.001"},
                                                                   {"5", 5, "5"},
                                                                   {"2.5e2", 250, "250"},
                                                                   {"1/3600", 1.0 / 3600, "1/3600"},
                                                                   {"0.5/2", 0.25, "0.25"}}) {
        const std::optional<Grid> grid = Grid::parse(text);
        ASSERT_TRUE(grid) << text;
        EXPECT_DOUBLE_EQ(grid->step(), step) << text;
        EXPECT_EQ(grid->step_text(), written);
        EXPECT_EQ(Grid::parse(written), grid) << text;
    }
    for (const char* text : {"", "0", "-1", "x", "1/0", "1/", "nan", "inf", "1e999", "1 2", "1e"}) {
        EXPECT_FALSE(Grid::parse(text)) << text;
    }
}

// What a decimal reads as is what the grid gives, bit for bit, also far from 0.
TEST(Grid, GivesTheDoublesNearestToDecimals) {
    const Grid grid = *Grid::parse("0.001", {500000.1, 4649776.224, 0});
    for (int i = -3000; i < 3000; i += 7) {
        char text[32];
        std::snprintf(text, sizeof text, "%.3f", 4649776.224 + i * 0.001);
        const double decimal = std::stod(text);
        EXPECT_EQ(grid.to_user(Point2{0, static_cast<double>(i)})[1], decimal);
        EXPECT_EQ(grid.to_grid(Point2{500000.1, decimal}), (Point2{0, static_cast<double>(i)}));
    }
    EXPECT_EQ(Grid::parse(grid.step_text(), grid.origin()), grid);
    Grid down = grid;
    down.turn_y_down();
    EXPECT_EQ(down.to_user(Point2{0, 5})[1], 4649776.219);
    EXPECT_EQ(down.nearest({500000.1004, 4649776.2194}).y, 5);
}

TEST(Grid, IsTheWidestOnWhichAllPointsAre) {
    const auto step = [](const std::vector<Point2>& points) {
        return grid_for(points).step_text();
    };
    EXPECT_EQ(step({{0, 0}, {100, 50}}), "1");
    EXPECT_EQ(step({{12.5, 41.25}, {13, 42}}), "0.01");
    EXPECT_EQ(step({{500000.123, 4649776.2}, {500900.5, 4650000}}), "0.001");
    EXPECT_EQ(step({{10 + 7.0 / 3600, 50 + 59.0 / 60}, {11, 51}}), "1/3600");
    // Else the finest one of 2^24 steps.
    EXPECT_EQ(step({{0, 0}, {std::sqrt(2.0), 1}}), "1e-07");
    EXPECT_EQ(step({{-180, -90}, {180, 83.599609375}}), "0.0001");
    EXPECT_EQ(step({{0, 0}, {1e9, 1}}), "100");
    EXPECT_EQ(step({}), "1");
}

TEST(Grid, KeepsCoordinatesWithinSinglePrecision) {
    const std::vector<Point2> points = {{500000.123, 4649776.2}, {512000.5, 4650000}};
    const Grid grid = grid_for(points);
    EXPECT_EQ(grid.origin(), (Point3{510000, 4650000, 0}));
    EXPECT_TRUE(grid_for(std::vector<Point2>{{12.5, 41.25}, {13, 42}}).origin() == Point3());
    for (const Point2& point : points) {
        const GridPoint at = grid.nearest(point);
        EXPECT_LE(std::abs(at.x), 1 << 24);
        EXPECT_EQ(grid.to_user(at), point);
    }
    EXPECT_EQ(grid_for(points, {.step = Grid::parse("0.01"), .origin = Point2{500000, 0}}),
              *Grid::parse("0.01", {500000, 0, 0}));
}

TEST(Grid, RefusesWhatItCannotHold) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const std::vector<Point2>& points : std::vector<std::vector<Point2>>{
             {{infinity, 0}}, {{0, std::nan("")}}, {{-1e308, 0}, {1e308, 0}}}) {
        EXPECT_THROW(grid_for(points), Error);
    }
    const std::vector<Point2> wide = {{0, 0}, {1e6, 0}};
    EXPECT_THROW(grid_for(wide, {.step = Grid::parse("1e-4"), .origin = {}}), Error);
    EXPECT_THROW(Grid(0, 1), Error);
    EXPECT_EQ(grid_for(std::vector<Point2>{{1e308, -1e308}}).nearest({1e308, -1e308}).x, 0);
}

} // namespace
} // namespace korvel::kit
