// Solids that are stored and made again: nothing is lost.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <span>
#include <vector>

#include "kit/kit.h"

namespace korvel::test {
namespace {

/// The corners of a face around it, beginning with the one of the least number.
std::vector<int> from_least(std::span<const int> corners) {
    std::vector<int> around(corners.begin(), corners.end());
    std::rotate(around.begin(), std::min_element(around.begin(), around.end()), around.end());
    return around;
}

void expect_same(const kit::Solids& a, const kit::Solids& b) {
    ASSERT_EQ(a.size(), b.size());
    ASSERT_EQ(a.vertex_count(), b.vertex_count());
    ASSERT_EQ(a.face_count(), b.face_count());
    EXPECT_EQ(a.placement(), b.placement());
    for (int v = 0; v < a.vertex_count(); ++v) {
        ASSERT_EQ(a.vertex(v), b.vertex(v)) << v;
    }
    for (int body = 0; body < a.size(); ++body) {
        EXPECT_EQ(a[body].name(), b[body].name());
        EXPECT_EQ(a[body].colour(), b[body].colour());
        EXPECT_EQ(a[body].volume(), b[body].volume());
        ASSERT_EQ(a[body].faces().size(), b[body].faces().size());
        EXPECT_TRUE(std::ranges::equal(a[body].neighbours(), b[body].neighbours()));
        for (int k = 0; k < a[body].faces().size(); ++k) {
            ASSERT_EQ(from_least(a[body].faces()[k].vertices()),
                      from_least(b[body].faces()[k].vertices()))
                << "body " << body << ", face " << k;
        }
    }
}

kit::Solids three_bodies() {
    std::vector<kit::Solids> parts;
    for (const double x : {0.1, 1.1, 5.1}) {
        parts.push_back(kit::make_cuboid({x, 1.0 / 3, -7e-9}, {1, 1, 1}, 1));
    }
    kit::Solids solids = kit::merge(std::move(parts));
    solids.set_name(1, "North tower");
    solids.set_colour(2, {.hue = 123.456789, .saturation = 0.1, .lightness = 0.9, .alpha = 0.3});
    return solids;
}

TEST(StoredSolids, KeepEveryDigitNamesColoursAndSharedFaces) {
    kit::Solids apart = three_bodies();
    expect_same(apart, kit::restored(kit::stored(apart)));
    kit::Solids welded = apart;
    ASSERT_GT(kit::weld(welded, {.tolerance = 1e-12}).faces_shared, 0);
    EXPECT_FALSE(kit::stored(welded).bodies[1].faces.empty());
    expect_same(welded, kit::restored(kit::stored(welded)));
    const kit::Solids placed = kit::Solids::read(kit::TextFile("placed", R"(4
0 0 0
10 0 0
0 10 0
0 0 10
4
0 2 1
0 1 3
1 2 3
0 3 2
1
4
198 0.55 0.6
0 1 2 3
grid 1/3600 origin -90 45.5 0 down reference EPSG:4326
)"));
    ASSERT_TRUE(placed.placement().grid.is_y_down());
    expect_same(placed, kit::restored(kit::stored(placed)));
    expect_same(kit::Solids(), kit::restored(kit::stored(kit::Solids())));
}

TEST(StoredSolids, BodiesThatDoNotFitTheMeshAreRefused) {
    const std::vector<std::function<void(kit::StoredSolids&)>> changes = {
        [](kit::StoredSolids& stored) { stored.bodies[2].face_count += 1; },
        [](kit::StoredSolids& stored) { stored.bodies[0].face_count = 0; },
        [](kit::StoredSolids& stored) {
            stored.bodies[0].faces = {0, 1, 100000};
        },
        [](kit::StoredSolids& stored) {
            stored.bodies[0].faces = {0, 1, -1};
        },
        [](kit::StoredSolids& stored) {
            stored.bodies[0].faces = {0, 1, 1};
        },
        [](kit::StoredSolids& stored) { stored.mesh.corners[5] = 100000; },
        [](kit::StoredSolids& stored) { stored.mesh.points.emplace_back(); },
    };
    for (const auto& change : changes) {
        kit::StoredSolids stored = kit::stored(three_bodies());
        change(stored);
        EXPECT_THROW((void)kit::restored(stored), kit::Error);
    }
}

} // namespace
} // namespace korvel::test
