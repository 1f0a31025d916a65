// Worked examples of the selection of regions and of their output.

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "korvel/polyregion/ccploy2drg.h"
#include "korvel/polyregion/plydt.h"
#include "tests/region/analysed.h"
#include "tests/support/recording_dc.h"

using namespace korvel::test;
using Calls = std::vector<std::string>;

namespace {

TEST(Selection, PicksTheFirstOuterRingUnderAClick) {
    Analysed a("10,10 20,10 20,20 10,20 10,10; 0,0 30,0 30,30 0,30 0,0; 40,40 50,40 50,50 40,40");
    a.region.AddSelectRegion({15, 15});
    EXPECT_EQ(a.selected(), (Ints{1, 0, 0}));
    a.region.AddSelectRegion({48, 45});
    a.region.AddSelectRegion({99, 99});
    EXPECT_EQ(a.selected(), (Ints{1, 0, 1}));
    a.region.SetSelectRegion({5, 5});
    EXPECT_EQ(a.selected(), (Ints{0, 1, 0}));

    RecordingDC dc;
    a.region.Draw_Regon(&dc);
    EXPECT_EQ(dc.calls,
              (Calls{"fill mode 1", "brush 85-170-127",
                     "polygons 0,0 30,0 30,30 0,30; 10,10 20,10 20,20 10,20;", "brush back"}));
    dc.calls.clear();
    a.region.AddSelectRegion({15, 15});
    a.region.AddSelectRegion({48, 45});
    a.region.Draw_Regon(&dc);
    ASSERT_EQ(dc.calls.size(), 10U);
    EXPECT_EQ(dc.calls[1], "brush 0-255-127");
    EXPECT_EQ(dc.calls[7], "brush 170-85-127");

    dc.calls.clear();
    a.region.Draw_Poly(300, a.region.regions[2], &dc);
    EXPECT_EQ(dc.calls[0], "brush 44-211-127"); // the low byte of the index

    a.region.SetSelectRegion({99, 99});
    EXPECT_EQ(a.selected(), (Ints{0, 0, 0}));
    dc.calls.clear();
    a.region.Draw_Regon(&dc);
    EXPECT_EQ(dc.calls, Calls{"fill mode 1"});

    Analysed outer_first("0,0 30,0 30,30 0,30 0,0; 10,10 20,10 20,20 10,20 10,10");
    outer_first.region.SetSelectRegion({15, 15});
    EXPECT_EQ(outer_first.selected(), (Ints{1, 0}));
    outer_first.region.regions[1].is_select = 1;
    dc.calls.clear();
    outer_first.region.Draw_Regon(&dc);
    EXPECT_EQ(dc.calls[4], "brush 127-128-127");
}

/// Compares the points, the rings and the regions of a set of either kind.
template <class RegionSet>
void expect_lists(const RegionSet& set, const char* points, const Lists& rings,
                  const Lists& regions) {
    std::vector<std::pair<double, double>> expected_points;
    for (const Pts& list : curves_from(points)) {
        for (const Pt pt : list) {
            expected_points.emplace_back(pt.x, pt.y);
        }
    }
    std::vector<std::pair<double, double>> found_points;
    for (const VERT2D& pt : set.pt_list) {
        found_points.emplace_back(pt.x, pt.y);
    }
    Lists found_rings;
    for (const RING& ring : set.ring_list) {
        found_rings.push_back(ints(ring.pts));
    }
    Lists found_regions;
    for (const auto& region : set.region_list) {
        found_regions.push_back(ints(region.rings));
    }
    EXPECT_EQ(found_points, expected_points);
    EXPECT_EQ(found_rings, rings);
    EXPECT_EQ(found_regions, regions);
}

TEST(Output, TurnsAllRingsTheSameWay) {
    Analysed a("1,1 1,2 2,2 1,1; 0,0 3,0 3,3 0,3 0,0; 4,4 9,4 9,9 4,4");
    const auto expect_all = [](const auto& set) {
        expect_lists(set, "1,1 1,2 2,2 0,0 3,0 3,3 0,3 4,4 9,4 9,9",
                     {{2, 1, 0}, {3, 4, 5, 6}, {7, 8, 9}}, {{0}, {1, 0}, {2}});
    };
    PLYDT triangles;
    CCPloy2DRg polygons;
    polygons.pt_list.SetSize(99);
    polygons.side_list.SetSize(3);
    a.region.SetSelectRegion({1, 0});
    a.region.GetSelectRegion(triangles);
    expect_lists(triangles, "1,1 1,2 2,2 0,0 3,0 3,3 0,3", {{2, 1, 0}, {3, 4, 5, 6}}, {{1, 0}});
    a.region.SetSelectRegion({8, 5});
    a.region.GetSelectRegion(triangles);
    expect_lists(triangles, "4,4 9,4 9,9", {{0, 1, 2}}, {{0}});
    a.region.GetAllRegion(polygons);
    expect_all(polygons);
    EXPECT_TRUE(polygons.side_list.IsEmpty());
    EXPECT_EQ(a.selected(), (Ints{1, 1, 1}));
    EXPECT_EQ(ints(a.region.ring_pts[0].pts), (Ints{2, 1, 0})); // the builder's own ring too
    a.region.GetAllRegion(triangles);
    expect_all(triangles);
    a.region.GetSelectRegion(triangles);
    expect_all(triangles);

    a.region.SetSelectRegion({4, 4}); // a corner is in no region
    a.region.GetSelectRegion(triangles);
    expect_lists(triangles, "", {}, {});
}

TEST(Output, TurnsRingsWithCornersInLineWithTheLastOne) {
    // Seen from the last corner the first ones lie in line behind and before it: the half turn
    // between them counts as positive, although the cross product is 0.
    const struct {
        const char* name;
        const char* curves;
        Ints ring;
    } cases[] = {
        {"in line on one side, clockwise", "4,0 2,0 0,0 0,4 6,4 6,0 4,0", {5, 4, 3, 2, 1, 0}},
        {"the same, counter-clockwise", "6,0 6,4 0,4 0,0 2,0 4,0 6,0", {0, 1, 2, 3, 4, 5}},
        {"in line with the last side, clockwise", "9,0 0,0 0,4 9,4 9,2 9,0", {4, 3, 2, 1, 0}},
        {"all in line, which is not turned", "0,0 4,0 9,0; 0,0 9,0", {0, 1, 2}},
        {"in line before it, clockwise", "0,0 0,2 0,4 4,4 4,0 0,0", {4, 3, 2, 1, 0}},
    };
    for (const auto& c : cases) {
        Analysed a(c.curves);
        PLYDT out;
        a.region.GetAllRegion(out);
        ASSERT_EQ(out.ring_list.GetSize(), 1) << c.name;
        EXPECT_EQ(ints(out.ring_list[0].pts), c.ring) << c.name;
    }
}

} // namespace
