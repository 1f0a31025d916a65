#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "kit/kit.h"

namespace korvel::kit {
namespace {

// Adds a polygon, or with `shape` something else, of one path for each list of points.
void add(Shape shape, const std::vector<std::vector<Point2>>& paths, std::vector<FieldValue> values,
         Features& out) {
    bool is_first = true;
    for (const std::vector<Point2>& path : paths) {
        out.points.insert(out.points.end(), path.begin(), path.end());
        out.paths.push_back({out.points.size(), is_first});
        is_first = false;
    }
    out.features.push_back({shape, out.paths.size(), std::move(values)});
}

std::vector<Point2> square(double x, double y, double size) {
    return {{x, y}, {x + size, y}, {x + size, y + size}, {x, y + size}, {x, y}};
}

Network decimals() {
    return Network::read(TextFile("plot", "2\n5\n500000.5 4649776.25\n500010.5 4649776.25\n"
                                          "500010.5 4649786.25 500000.5 4649786.25\n"
                                          "500000.5 4649776.25\n"
                                          "2 500005.5 4649770 # past both sides\n"
                                          "500005.5 4649790\n"));
}

TEST(FeatureMaps, DecimalsAreReportedAsTheyCameIn) {
    const Network network = decimals();
    EXPECT_EQ(network.placement().grid.step_text(), "0.01");
    EXPECT_EQ(network.largest_shift(), 0);
    EXPECT_EQ(network.bounds().bottom, 4649790);
    const Map map = find_regions(network).take_map();
    ASSERT_EQ(map.size(), 2);
    EXPECT_DOUBLE_EQ(map[0].area(), 50);
    EXPECT_DOUBLE_EQ(map[0].perimeter(), 30);
    EXPECT_EQ(map.bounds().left, 500000.5);
    EXPECT_EQ(map.region_at({500009, 4649780}), RegionLocator(map).region_at({500009, 4649780}));
    EXPECT_FALSE(map.region_at({500011, 4649780}));
    EXPECT_TRUE(map.is_on_grid());
    // The dangling ends leave as decimals.
    const Network left = find_regions(network).leftover();
    EXPECT_EQ(left.placement().grid.to_user(left.curve(0)[0]), (Point2{500005.5, 4649770}));
    EXPECT_EQ(triangulate(map).of_region(0)[0][0][0], map[0].bounds().left);
}

TEST(FeatureMaps, TolerancesAreInTheUsersUnits) {
    Network network;
    network.set_placement({*Grid::parse("0.01"), {}});
    // A triangle whose ends are 0.4 apart.
    network.add_curve(std::vector<GridPoint>{{0, 0}, {1000, 0}, {1000, 1000}, {0, 40}});
    EXPECT_EQ(find_regions(network).map().size(), 0);
    EXPECT_EQ(find_regions(network, {.tolerance = 1}).map().size(), 1);
    Network squares;
    squares.set_placement({*Grid::parse("0.01"), {}});
    squares.add_curve(std::vector<GridPoint>{{0, 0}, {1000, 0}, {1000, 1000}, {0, 1000}, {0, 0}});
    squares.add_curve(std::vector<GridPoint>{{900, 0}, {900, 1000}});
    EXPECT_EQ(find_regions(squares, {.min_area = 9}).map().size(), 2);
    EXPECT_EQ(find_regions(squares, {.min_area = 11}).map().size(), 1);
}

TEST(FeatureMaps, RegionsTakeTheAttributesOfTheirPolygons) {
    Features features;
    features.fields = {{"code", Field::Type::integer}, {"NAME", Field::Type::text}};
    // Around a gap in the middle; the last one overlaps the first.
    add(Shape::polygons, {square(0, 0, 1)}, {std::int64_t{7}, "west"}, features);
    add(Shape::polygons, {square(2, 0, 1)}, {std::int64_t{8}, "east"}, features);
    add(Shape::lines, {{{1, 0}, {2, 0}}, {{1, 1}, {2, 1}}}, {}, features);
    add(Shape::polygons, {square(0.5, 0.25, 0.25)}, {std::int64_t{9}, "islet"}, features);
    const Network network = network_of(features);
    EXPECT_EQ(network.placement().grid.step_text(), "0.01");
    const Map found = find_regions(network).take_map();
    ASSERT_EQ(found.size(), 4);
    SourceReport report;
    const Map map = with_sources(found, features, false, report);
    ASSERT_EQ(map.size(), 3);
    EXPECT_EQ(report.gaps, 1);
    const int west = *map.region_at({0.1, 0.1});
    const int both = *map.region_at({0.6, 0.3});
    EXPECT_EQ(report.overlaps, std::vector<int>{both});
    EXPECT_EQ(map[west].name(), "west");
    EXPECT_EQ(map[both].name(), "west");
    EXPECT_EQ(std::get<std::int64_t>(map[*map.region_at({2.5, 0.5})].value(0)), 8);
    SourceReport all;
    EXPECT_EQ(with_sources(found, features, true, all).size(), 4);
}

TEST(FeatureMaps, HolesAndSeveralPartsBelongToTheirFeature) {
    Features features;
    features.fields = {{"name", Field::Type::text}};
    add(Shape::polygons, {square(0, 0, 9), square(3, 3, 3)}, {"ring"}, features);
    features.points.insert(features.points.end(), {{20, 0}, {22, 0}, {22, 2}, {20, 0}});
    features.paths.push_back({features.points.size(), true}); // a second part
    features.features.back().path_end = features.paths.size();
    SourceReport report;
    const Map map =
        with_sources(find_regions(network_of(features)).take_map(), features, false, report);
    ASSERT_EQ(map.size(), 2);
    EXPECT_EQ(report.gaps, 1); // the hole
    EXPECT_EQ(map[0].name() + map[1].name(), "ringring");
    EXPECT_EQ(map.area(), 81 - 9 + 2);
}

TEST(FeatureMaps, LabelsNameTheRegionsAroundThem) {
    Map map = find_regions(decimals()).take_map();
    map.set_fields({{"soil", Field::Type::text}});
    map.set_values(0, {"clay"});
    Features labels;
    labels.fields = {{"id", Field::Type::integer}, {"soil", Field::Type::text}};
    const int east = *map.region_at({500009, 4649780});
    add(Shape::points, {{{500009, 4649780}, {500008, 4649780}}}, {std::int64_t{5}, "sand"}, labels);
    add(Shape::points, {{{0, 0}}}, {std::int64_t{6}, "none"}, labels);
    const LabelReport report = take_labels(map, labels);
    EXPECT_EQ(report.used, 1);
    EXPECT_EQ(report.outside, 1);
    EXPECT_EQ(report.repeated, 1);
    EXPECT_EQ(map.fields().size(), 2u);
    EXPECT_EQ(map[east].name(), "5");
    EXPECT_EQ(text_of_value(map[east].value(0)), "sand");
    EXPECT_EQ(text_of_value(map[1 - east].value(0)), east == 0 ? "" : "clay");
}

// In and out again: no coordinate moves by more than half a step.
TEST(FeatureMaps, FeaturesReturnWithinHalfAStep) {
    std::mt19937 random(17);
    std::uniform_real_distribution<double> shift(-0.3, 0.3);
    constexpr int size = 12;
    std::vector<Point2> corners;
    for (int y = 0; y <= size; ++y) {
        for (int x = 0; x <= size; ++x) {
            const double dx = shift(random);
            corners.push_back({10 + x + dx, 50 + y + shift(random)});
        }
    }
    Features features;
    features.reference = "EPSG:4326";
    features.fields = {{"cell", Field::Type::integer}, {"area", Field::Type::text}};
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            const int at = y * (size + 1) + x;
            add(Shape::polygons,
                {{corners[at], corners[at + 1], corners[at + size + 2], corners[at + size + 1],
                  corners[at]}},
                {std::int64_t{y * size + x}, "large"}, features);
        }
    }
    const Network network = network_of(features);
    const double half = network.placement().grid.step() / 2;
    EXPECT_LE(network.largest_shift(), half * (1 + 1e-9));
    SourceReport report;
    const Map map = with_sources(find_regions(network).take_map(), features, false, report);
    EXPECT_TRUE(report.gaps == 0 && report.overlaps.empty());
    const Features written = features_of(map);
    EXPECT_EQ(written.reference, "EPSG:4326");
    ASSERT_EQ(written.features.size(), features.features.size());
    EXPECT_EQ(written.fields.size(),
              7u); // the map's own, without the area of the file, and the cell
    for (std::size_t i = 0; i < written.features.size(); ++i) {
        const auto cell = static_cast<std::size_t>(std::get<std::int64_t>(written.value(i, 6)));
        const std::span<const Point2> before = features.path(features.first_path(cell));
        for (const Point2& point : written.path(written.first_path(i))) {
            double nearest = 1;
            for (const Point2& other : before) {
                nearest = std::min(nearest, std::max(std::abs(point[0] - other[0]),
                                                     std::abs(point[1] - other[1])));
            }
            EXPECT_LE(nearest, half * (1 + 1e-9)) << "cell " << cell;
        }
    }
}

TEST(FeatureMaps, RaisedBodiesAreInTheUsersUnits) {
    const Map map = find_regions(decimals()).take_map();
    const Raised raised = raise(map, {.low = 0, .high = 2.5});
    ASSERT_EQ(raised.solids.size(), 2);
    EXPECT_NEAR(raised.solids.volume(), 250, 1e-6);
    EXPECT_EQ(raised.solids.bounds().low, (Point3{500000.5, 4649776.25, 0}));
    EXPECT_EQ(raised.solids.bounds().high, (Point3{500010.5, 4649786.25, 2.5}));
    const Raised moved =
        raise(map, {.low = 0, .high = 2.5, .unit = {1, -1}, .origin = {500000.5, 4649776.25}});
    EXPECT_NEAR(moved.solids.bounds().low[1], -10, 1e-9);
    EXPECT_NEAR(moved.solids.volume(), 250, 1e-6);
}

TEST(FeatureMaps, SectionsArePolygonsInTheirPlane) {
    Network network;
    network.set_placement({*Grid::parse("0.5"), {}});
    network.add_curve(std::vector<GridPoint>{{0, 0}, {18, 0}, {18, 18}, {0, 18}, {0, 0}});
    network.add_curve(std::vector<GridPoint>{{6, 6}, {12, 6}, {12, 12}, {6, 12}, {6, 6}});
    const Solids solids = raise(find_regions(network).map(), {.low = 0, .high = 4}).solids;
    const Features level = features_of(solids.cut(Plane::at_z(1)));
    ASSERT_EQ(level.features.size(), 2u);
    EXPECT_EQ(level.features[0].path_end, 2u); // with a hole
    EXPECT_FALSE(level.paths[1].starts_polygon);
    EXPECT_EQ(std::get<double>(level.value(0, 1)), 81 - 9);
    // Through both bodies: the one around has two polygons.
    const Features upright = features_of(solids.cut(Plane::at_x(4)));
    ASSERT_EQ(upright.features.size(), 2u);
    EXPECT_TRUE(upright.paths[0].starts_polygon && upright.paths[1].starts_polygon);
    EXPECT_EQ(std::get<double>(upright.value(0, 1)), 6 * 4);
    for (const Point2& point : upright.points) { // y and z
        EXPECT_TRUE(point[1] >= 0 && point[1] <= 4) << point[1];
    }
}

} // namespace
} // namespace korvel::kit
