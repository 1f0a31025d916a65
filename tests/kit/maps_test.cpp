#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "kit/base/areas.h"
#include "kit/base/error.h"
#include "kit/base/rectangle.h"
#include "kit/maps/coverage.h"
#include "kit/maps/curve_index.h"
#include "kit/maps/find_regions.h"
#include "kit/maps/region_sets.h"
#include "kit/maps/triangulation.h"
#include "tests/support/dense_map.h"

namespace korvel::test {
namespace {

struct Row {
    const char* what;
    std::vector<std::pair<double, double>> points; // one ring through all of them
    std::vector<std::tuple<int, int, int>> triangles;
    double missing; // area of the region less that of the triangles
    bool is_tiling;
};

std::vector<Row> coverage_table() {
    const std::vector<std::pair<double, double>> square = {{0, 0}, {4, 0}, {4, 4}, {0, 4}};
    // Twice the size of what 53 bits can distinguish in products of coordinates.
    constexpr double most = 2147483647;
    const std::vector<std::pair<double, double>> cut_corner = {{-most, -most}, {1 - most, -most},
                                                               {most, -most},  {most, most},
                                                               {-most, most},  {-most, 1 - most}};
    return {
        {"halves", square, {{0, 1, 2}, {0, 2, 3}}, 0, true},
        {"one half", square, {{0, 1, 2}}, 8, false},
        {"nothing", square, {}, 16, false},
        {"one half twice: overlap and gap alike", square, {{0, 1, 2}, {1, 2, 0}}, 0, false},
        {"both ways across", square, {{0, 1, 2}, {0, 1, 3}}, 0, false},
        {"a half turned over", square, {{0, 1, 2}, {0, 3, 2}}, 0, false},
        {"with a flat triangle", square, {{0, 1, 2}, {0, 2, 3}, {0, 2, 0}}, 0, true},
        {"a long side along two short ones",
         {{0, 0}, {4, 0}, {4, 4}, {2, 2}},
         {{0, 1, 2}},
         0,
         true},
        {"far apart", cut_corner, {{5, 0, 1}, {5, 1, 2}, {5, 2, 3}, {5, 3, 4}}, 0, true},
        {"far apart but for half a unit", cut_corner, {{5, 1, 2}, {5, 2, 3}, {5, 3, 4}}, 0, false},
        {"off the lattice",
         {{0, 0}, {0.3, 0}, {0.3, 0.7}, {0, 0.7}},
         {{0, 1, 2}, {0, 2, 3}},
         0,
         true},
        // The area may differ by 1e-9 of the region's, and a point may be off a side by 1e-9 of its
        // length.
        {"a bend within the tolerance",
         {{0.5, 0.5}, {4.5, 0.5}, {4.5, 4.5}, {2.5, 2.5 + 1e-9}},
         {{0, 1, 2}},
         2e-9,
         true},
        {"a bend beyond the tolerance of areas",
         {{0.5, 0.5}, {4.5, 0.5}, {4.5, 4.5}, {2.5, 2.5 + 2e-8}},
         {{0, 1, 2}},
         4e-8,
         false},
        {"two bends beyond the tolerance of distances",
         {{0.5, 0.5}, {4.5, 0.5}, {4.5, 4.5}, {3.5, 3.5 + 2e-8}, {1.5, 1.5 - 2e-8}},
         {{0, 1, 2}},
         0,
         false},
    };
}

TEST(Coverage, DistinguishesTilingsFromOtherTriangles) {
    for (const Row& row : coverage_table()) {
        PLYDT set;
        set.pt_list.SetSize(static_cast<int>(row.points.size()));
        set.ring_list.SetSize(1);
        set.region_list.SetSize(1);
        set.region_list[0].rings.Add(0);
        for (int i = 0; i < set.pt_list.GetSize(); ++i) {
            std::tie(set.pt_list[i].x, set.pt_list[i].y) = row.points[i];
            set.ring_list[0].pts.Add(i);
        }
        for (const auto& corners : row.triangles) {
            PLYDT::TRG triangle;
            std::tie(triangle.va, triangle.vb, triangle.vc) = corners;
            set.trg_list.Add(triangle);
        }
        const kit::Coverage coverage =
            kit::measure_coverage(set, set.region_list[0], 0, set.trg_list.GetSize(),
                                  kit::are_lattice_points(set.pt_list));
        EXPECT_EQ(coverage.is_tiling, row.is_tiling) << row.what;
        EXPECT_NEAR(coverage.region_area - coverage.triangle_area, row.missing, 1e-12) << row.what;
    }
}

TEST(Coverage, HolesDoNotCount) {
    // A square with a square hole; four triangles at the sides would leave the corners.
    PLYDT set;
    set.pt_list.SetSize(8);
    const double corners[][2] = {{0, 0}, {6, 0}, {6, 6}, {0, 6}, {2, 2}, {4, 2}, {4, 4}, {2, 4}};
    set.ring_list.SetSize(2);
    for (int i = 0; i < 8; ++i) {
        set.pt_list[i].x = corners[i][0];
        set.pt_list[i].y = corners[i][1];
        set.ring_list[i / 4].pts.Add(i);
    }
    set.region_list.SetSize(1);
    set.region_list[0].rings.Add(0);
    set.region_list[0].rings.Add(1);
    for (int k = 0; k < 4; ++k) {
        PLYDT::TRG outer;
        std::tie(outer.va, outer.vb, outer.vc) = std::tuple(k, (k + 1) % 4, 4 + k);
        PLYDT::TRG inner;
        std::tie(inner.va, inner.vb, inner.vc) = std::tuple((k + 1) % 4, 4 + (k + 1) % 4, 4 + k);
        set.trg_list.Add(outer);
        set.trg_list.Add(inner);
    }
    const auto covered = [&] {
        return kit::measure_coverage(set, set.region_list[0], 0, set.trg_list.GetSize(), true);
    };
    EXPECT_EQ(covered().region_area, 32);
    EXPECT_TRUE(covered().is_tiling);
    set.trg_list.SetSize(7);
    EXPECT_FALSE(covered().is_tiling);
}

TEST(RegionSets, KeepOnlyWhatTheRegionsUse) {
    PLYDT set;
    set.pt_list.SetSize(9);
    set.ring_list.SetSize(3);
    set.region_list.SetSize(3);
    for (int i = 0; i < 9; ++i) {
        set.pt_list[i].x = i;
        set.ring_list[i / 3].pts.Add(8 - i);
    }
    for (int i = 0; i < 3; ++i) {
        set.region_list[i].rings.Add(2 - i);
    }
    kit::keep_regions(set, {2, 0});
    ASSERT_EQ(set.region_list.GetSize(), 2);
    ASSERT_EQ(set.ring_list.GetSize(), 2);
    ASSERT_EQ(set.pt_list.GetSize(), 6);
    // The region that was number 0 still walks through the points 2, 1 and 0.
    const RING& ring = set.ring_list[set.region_list[0].rings[0]];
    EXPECT_EQ(set.pt_list[ring.pts[0]].x, 2);
    EXPECT_EQ(set.pt_list[ring.pts[2]].x, 0);
    const kit::Rectangle box = kit::box_of_regions(set);
    EXPECT_EQ(box.left, 0);
    EXPECT_EQ(box.right, 8);
}

kit::Network network(const std::vector<std::vector<kit::GridPoint>>& curves) {
    kit::Network made;
    for (const std::vector<kit::GridPoint>& curve : curves) {
        made.add_curve(curve);
    }
    return made;
}

// Two halves of a square with an island in the left one, and what is on no border.
const std::vector<std::vector<kit::GridPoint>> halves = {{{0, 0}, {9, 0}, {9, 9}, {0, 9}, {0, 0}},
                                                         {{5, -4}, {5, 12}},
                                                         {{2, 2}, {4, 2}, {4, 4}, {2, 4}, {2, 2}},
                                                         {{5, 12}, {5, 12}, {5, -4}},
                                                         {{7, 7}, {7, 7}}};

TEST(FindRegions, NamesTheFileWhenMemoryIsNotEnough) {
    // Ten strokes across ten others, at 700 bytes for each crossing.
    constexpr std::uint64_t enough = 10 * 10 * 700;
    kit::Network grid;
    for (int i = 1; i <= 10; ++i) {
        grid.add_curve(std::vector<kit::GridPoint>{{0, 100 * i}, {1100, 100 * i}});
        grid.add_curve(std::vector<kit::GridPoint>{{100 * i, 0}, {100 * i, 1100}});
    }
    for (const bool as_traced : {false, true}) {
        kit::FindOptions options{.as_traced = as_traced, .memory = enough};
        EXPECT_EQ(kit::find_regions(grid, options).map().size(), 81);
        try {
            --options.memory;
            kit::find_regions(grid, options);
            ADD_FAILURE() << "the limit is not reported";
        } catch (const kit::Error& error) {
            EXPECT_STREQ(error.what(),
                         "network: the curves have more than 99 crossings, for which there is not "
                         "enough memory: split the file, or remove curves that cross many others");
            EXPECT_EQ(error.kind(), kit::Error::Kind::input);
        }
    }
    kit::Network overlapping; // each line passes the ends of all that are shorter
    for (int i = 0; i < 200; ++i) {
        overlapping.add_curve(std::vector<kit::GridPoint>{{i, 0}, {1000 - i, 0}});
    }
    EXPECT_TRUE(kit::find_regions(overlapping).map().empty());
    EXPECT_THROW(kit::find_regions(overlapping, {.memory = 700'000}), kit::Error);
    EXPECT_GT(kit::available_memory(), 1U << 20);
}

std::vector<std::string> texts_of_dropped(const kit::FoundRegions& found) {
    std::vector<std::string> texts;
    for (const kit::Dropped& dropped : found.dropped()) {
        texts.push_back(kit::text(dropped));
    }
    return texts;
}

TEST(FindRegions, ListsWhatIsOnNoBorder) {
    const kit::FoundRegions found = kit::find_regions(network(halves));
    EXPECT_EQ(texts_of_dropped(found),
              (std::vector<std::string>{
                  "curve 1 ends loosely from 5,-4 to 5,0", "curve 1 ends loosely from 5,9 to 5,12",
                  "curve 3 repeats an earlier line from 5,12 to 5,-4", "curve 4 has no length"}));
    const kit::NetworkReport& report = found.report();
    EXPECT_EQ(report.segments, 16);
    EXPECT_EQ(report.borders, 11) << "7 of the large square, one between its halves, 4 - 1";
    EXPECT_EQ(report.dangling, 2);
    EXPECT_EQ(report.duplicates, 3);
    EXPECT_EQ(report.bridges, 0);
    const kit::Network leftover = found.leftover();
    EXPECT_EQ(leftover.curve_count(), 3);
    EXPECT_EQ(leftover.point_count(), 2 + 2 + 4);

    EXPECT_EQ(texts_of_dropped(kit::find_regions(network(halves), {.as_traced = true})),
              (std::vector<std::string>{
                  "curve 1 ends loosely from 5,-4 to 5,0", "curve 1 ends loosely from 5,9 to 5,12",
                  "curve 3 repeats an earlier line from 5,-4 to 5,12", "curve 4 has no length"}));
}

TEST(FindRegions, KeepsRingsThatTouchThemselves) {
    const std::vector<std::vector<kit::GridPoint>> square = {
        {{0, 0}, {12, 0}, {12, 12}, {0, 12}, {0, 0}}, {{0, 0}, {9, 2}, {2, 9}, {0, 0}}};
    const kit::FoundRegions sound = kit::find_regions(network(square));
    ASSERT_EQ(sound.map().size(), 2);
    EXPECT_EQ(sound.map()[0].hole_count(), 1) << "it touches the outer ring in a corner";
    EXPECT_EQ(sound.map().area(), 144);

    const kit::FoundRegions traced = kit::find_regions(network({{{0, 0}, {8, 0}, {8, 8}, {0, 0}},
                                                                {{0, 0}, {-8, 1}, {-8, -8}, {0, 0}},
                                                                {{0, 0}, {6, 2}, {6, 4}, {0, 0}}}),
                                                       {.as_traced = true});
    EXPECT_EQ(texts_of_dropped(traced), std::vector<std::string>{"a ring touches itself at 0,0"});
}

TEST(FindRegions, JoinsEndsWithinTheTolerance) {
    const kit::Network open = network({{{0, 0}, {50, 0}, {50, 50}}, {{52, 51}, {0, 50}, {-2, 0}}});
    EXPECT_TRUE(kit::find_regions(open).map().empty());
    for (const double tolerance : {0.0, 6.0}) { // 0 joins within 3
        const kit::FoundRegions found = kit::find_regions(open, {.tolerance = tolerance});
        EXPECT_EQ(found.report().joined_ends, 2);
        ASSERT_EQ(found.map().size(), 1);
        EXPECT_EQ(found.map()[0].area(), 2500);
    }
    EXPECT_TRUE(kit::find_regions(open, {.tolerance = 4}).map().empty()) << "one end is too far";
}

TEST(FindRegions, MergesSmallRegionsIntoNeighbours) {
    // A border drawn twice with different points, an island of its own and a square in two parts.
    const kit::Network drawn_twice = network({{{0, 0}, {99, 0}, {99, 99}, {0, 99}, {0, 0}},
                                              {{50, 0}, {51, 40}, {50, 99}},
                                              {{50, 0}, {50, 50}, {50, 99}},
                                              {{200, 0}, {202, 0}, {200, 2}, {200, 0}}});
    const kit::FoundRegions all = kit::find_regions(drawn_twice);
    EXPECT_EQ(all.map().size(), 4);
    EXPECT_EQ(all.map().slivers(), (std::vector<int>{2, 3}));
    const kit::FoundRegions merged = kit::find_regions(drawn_twice, {.min_area = 60});
    EXPECT_EQ(merged.report().merged, 1) << "the island has no neighbour";
    ASSERT_EQ(merged.map().size(), 3);
    EXPECT_EQ(merged.map().area(), all.map().area());
    EXPECT_EQ(kit::find_regions(drawn_twice, {.min_area = 1e9}).map().size(), 2);
}

TEST(FindRegions, FindsTheRingsOfTheLibraryOnceSplit) {
    for (const char* map : {"us-states", "us-counties", "world-110m", "world-50m"}) {
        const auto file = std::string(KORVEL_DATA_DIR "/") + map + ".curves";
        const kit::FoundRegions found = kit::find_regions(kit::Network::read(file));
        const kit::NetworkReport& report = found.report();
        EXPECT_EQ(report.segments,
                  report.borders + report.bridges + report.dangling + report.duplicates);
        const kit::NetworkReport again = kit::find_regions(found.noded()).report();
        EXPECT_EQ(again.crossings + again.joined_ends + again.duplicates + again.dangling, 0);
        EXPECT_EQ(again.segments, report.borders);
        std::multiset<double> areas;
        for (const kit::Region region : found.map()) {
            areas.insert(region.ring_area(0));
        }
        for (const CREGION::RToPt& ring : found.builder().ring_pts) {
            const auto same = areas.find(ring.ring_area);
            ASSERT_NE(same, areas.end()) << map;
            areas.erase(same);
        }
        EXPECT_LE(areas.size(), 2U) << map << ": all but rings that touch themselves";
    }
}

TEST(FindRegions, FindsAllFacesOfADenseMap) {
    const CurveArrays curves = dense_map(160'000);
    const kit::FoundRegions found = kit::find_regions(kit::Network(curves.pts, curves.counts));
    const kit::NetworkReport& report = found.report();
    EXPECT_GT(report.duplicates, 1000);
    EXPECT_GT(report.dangling, 300);
    EXPECT_EQ(report.segments,
              report.borders + report.bridges + report.dangling + report.duplicates);
    const kit::FoundRegions again = kit::find_regions(found.noded());
    EXPECT_EQ(again.report().crossings, 0) << "but segments may come near other points";
    const kit::FoundRegions merged =
        kit::find_regions(kit::Network(curves.pts, curves.counts), {.min_area = 2000});
    EXPECT_EQ(merged.map().size(), found.map().size() - merged.report().merged);
    EXPECT_NEAR(merged.map().area(), found.map().area(), 1);
}

TEST(FindRegions, KnowsTheCurvesOfEachRing) {
    const kit::FoundRegions found = kit::find_regions(network(halves));
    std::set<std::vector<int>> curves;
    for (const std::vector<int>& of_ring : found.curves_of_rings()) {
        curves.insert(of_ring);
    }
    EXPECT_EQ(curves, (std::set<std::vector<int>>{{0, 1}, {2}}));
    EXPECT_EQ(kit::find_regions(network(halves), {.as_traced = true}).curves_of_rings().size(), 3U);

    // A nearer curve wins over one that is listed before it.
    const kit::CurveIndex index(network({{{0, 10}, {99, 10}}, {{0, 0}, {50, 0}, {99, 1}}}));
    EXPECT_EQ(index.nearest_curve({10, 4}, {20, 4}), 1);
    EXPECT_EQ(index.nearest_curve({10, 4}, {20, 6}), 0) << "the farther end decides";
}

TEST(Map, AnswersForItsRegions) {
    const kit::FoundRegions found = kit::find_regions(network(halves));
    const kit::Map& map = found.map();
    ASSERT_EQ(map.size(), 3);
    EXPECT_EQ(map.area(), 81) << "the island is a hole and a region";
    EXPECT_EQ(kit::find_regions(network(halves), {.as_traced = true}).map().area(), 45 + 36 + 4)
        << "the island was traced later, so it is no hole";
    EXPECT_EQ(map[*map.region_at({7, 3})].area(), 36);
    EXPECT_FALSE(map.region_at({20, 3}).has_value());

    kit::Map kept = map.kept(std::vector<int>{*map.region_at({7, 3}), *map.region_at({7, 3})});
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(kept[0].number(), *map.region_at({7, 3}));
    EXPECT_EQ(kept.point_count(), 4);
    EXPECT_THROW(map.kept(std::vector<int>{3}), kit::Error);

    kept.set_name(0, "east");
    const kit::Map copy = kept;
    kept.set_name(0, "west");
    EXPECT_EQ(copy[0].name(), "east") << "a copy is a value";

    const kit::Map seeded = found.around({1, 1});
    ASSERT_EQ(seeded.size(), 1);
    EXPECT_EQ(seeded[0].hole_count(), 1);
    EXPECT_EQ(seeded.area(), 41);

    CCPloy2DRg broken;
    broken.region_list.SetSize(1);
    broken.region_list[0].rings.Add(2);
    EXPECT_THROW(kit::Map{broken}, kit::Error);
}

TEST(Map, TriangulatesRegionByRegionAndCanBeCancelled) {
    const kit::FoundRegions found = kit::find_regions(network(halves));
    const kit::Triangulation covered = kit::triangulate(found.map());
    for (const kit::Region region : found.map()) {
        EXPECT_TRUE(covered.coverage(region.index()).is_tiling) << region.index();
        EXPECT_EQ(covered.of_region(region.index()).size(),
                  region.point_count() + 2 * region.hole_count() - 2);
    }
    std::stop_source stop;
    kit::Context context{.stop = stop.get_token()};
    context.on_progress = [&](const kit::Progress& progress) {
        EXPECT_EQ(progress.stage, "triangulating regions");
        stop.request_stop();
    };
    try {
        kit::triangulate(found.map(), {}, context);
        ADD_FAILURE() << "not stopped";
    } catch (const kit::Error& error) {
        EXPECT_EQ(error.kind(), kit::Error::Kind::cancelled);
    }
}

} // namespace
} // namespace korvel::test
