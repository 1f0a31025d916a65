// Regions as polygons of the Simple Features rules, as GEOS understands these.

#include <gtest/gtest.h>

#include <vector>

#include "kit/kit.h"
#include "tests/kit/geos_validity.h"

namespace korvel::kit {
namespace {

// A ring that touches itself becomes rings that are simple.
TEST(ValidPolygons, AreValidWhereRegionsTouchThemselves) {
    Network network;
    network.add_curve(std::vector<GridPoint>{{0, 0}, {9, 0}, {9, 9}, {0, 9}, {0, 0}});
    // Two triangles with a corner in common, and one that has a corner on the border.
    network.add_curve(std::vector<GridPoint>{{2, 2}, {4, 4}, {2, 4}, {2, 2}});
    network.add_curve(std::vector<GridPoint>{{4, 4}, {6, 6}, {4, 6}, {4, 4}});
    network.add_curve(std::vector<GridPoint>{{9, 5}, {7, 4}, {7, 6}, {9, 5}});
    const Map map = find_regions(network).take_map();
    ASSERT_EQ(map.size(), 4);
    const Features features = features_of(map);
    for (std::size_t i = 0; i < features.features.size(); ++i) {
        test::Rings rings;
        for (std::size_t path = features.first_path(i); path < features.features[i].path_end;
             ++path) {
            const std::span<const Point2> points = features.path(path);
            EXPECT_EQ(points.front(), points.back());
            std::vector<PlanePoint>& ring = rings.emplace_back();
            for (const auto& [x, y] : points.first(points.size() - 1)) {
                ring.push_back({x, y});
            }
        }
        EXPECT_EQ(rings.size(), i == 0 ? 4u : 1u);
        EXPECT_TRUE(test::is_valid(rings)) << "region " << i;
    }
}

} // namespace
} // namespace korvel::kit
