// Worked examples, above all those that a tidy mind would mend.

#include <limits>
#include <numeric>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "korvel/polyregion/ccploy2drg.h"
#include "korvel/polyregion/plydt.h"
#include "tests/region/plain_region.h"
#include "tests/support/recording_dc.h"
#include "tests/support/sample_curves.h"

using korvel::test::Curves;
using korvel::test::curves_from;
using korvel::test::curves_in;
using korvel::test::Ints;
using korvel::test::Lists;
using korvel::test::Network;
using Calls = std::vector<std::string>;

namespace {

/// A network and what the library makes of it.
struct Analysed {
    explicit Analysed(const Curves& curves, double tolerance = 1) : network(curves) {
        region.SetTolerance(tolerance);
        region.SetPtsInfo(network.pts, network.counts);
    }
    explicit Analysed(const char* curves, double tolerance = 1)
        : Analysed(curves_from(curves), tolerance) {}

    Lists regions() const { return korvel::test::analysis_of(region).regions; }
    Ints selected() const {
        Ints marks;
        for (const CREGION::PyToRg& one : region.regions) {
            marks.push_back(one.is_select);
        }
        return marks;
    }

    Network network;
    CREGION region;
};

Ints ints(const CArray<int>& list) {
    return Ints(list.begin(), list.end());
}

TEST(Curves, AreCleanedInTheCallersArrays) {
    // A loop begun elsewhere is another curve; of several empty curves one stays.
    const Analysed a("0,0 0,0 5,0 5,0 9,9; 3,3 3,3; 9,9 5,0 0,0; ; 7,7; 0,0 4,0 0,4 0,0;"
                     "4,0 0,4 0,0 4,0; ; 0,0 0,4 4,0 0,0");
    EXPECT_EQ(curves_in(a.network.pts, a.network.counts),
              curves_from("0,0 5,0 9,9; ; 0,0 4,0 0,4 0,0; 4,0 0,4 0,0 4,0"));
}

TEST(Curves, AreSplitWhereTheyMeet) {
    const struct {
        const char* name;
        const char* curves;
        const char* split;
    } cases[] = {
        {"a crossing at 2.5, 2.5", "0,0 5,5; 0,5 5,0", "0,0 2,2; 2,2 5,5; 0,5 2,2; 2,2 5,0"},
        {"one at -2.5, -2.5, toward zero as well", "0,0 -5,-5; 0,-5 -5,0",
         "0,0 -2,-2; -2,-2 -5,-5; 0,-5 -2,-2; -2,-2 -5,0"},
        {"an end on a segment, which leaves a one-point piece", "0,0 10,0; 5,0 5,5",
         "0,0 5,0; 5,0 10,0; 5,0 5,0; 5,0 5,5"},
        {"a crossing of the longest lines",
         "-2147483648,-2147483648 2147483647,2147483647;"
         "-2147483648,2147483647 2147483647,-2147483648",
         "-2147483648,-2147483648 0,0; 0,0 2147483647,2147483647;"
         "-2147483648,2147483647 0,0; 0,0 2147483647,-2147483648"},
        {"an overlap, which is no crossing", "0,0 10,0; 5,0 15,0", "0,0 10,0; 5,0 15,0"},
        {"a closed curve, whose ends meet each other", "0,0 9,0 0,9 0,0",
         "0,0 0,0; 0,0 9,0 0,9 0,0; 0,0 0,0"},
        {"a curve that crosses itself", "0,0 10,0 10,10 5,-5",
         "0,0 6,0; 6,0 10,0 10,10 6,0; 6,0 5,-5"},
        {"three curves through one point, split there once each", "-5,0 5,0; 0,-5 0,5; -5,-5 5,5",
         "-5,0 0,0; 0,0 5,0; 0,-5 0,0; 0,0 0,5; -5,-5 0,0; 0,0 5,5"},
    };
    for (const auto& c : cases) {
        Network network(curves_from(c.curves));
        CREGION region(network.pts, network.counts, {0, 0}, 1);
        region.SplitPureCurve();
        EXPECT_EQ(curves_in(region.curve_pts, region.curve_counts), curves_from(c.split)) << c.name;
    }

    CREGION region;
    double r1 = 7;
    double r2 = 7;
    EXPECT_EQ(region.CalcSegmentIntersectRatio({0, 0}, {4, 4}, r1, {1, 0}, {5, 4}, r2), 0);
    EXPECT_EQ(r1 + r2, 14);
    EXPECT_EQ(region.CalcSegmentIntersectRatio({0, 0}, {4, 0}, r1, {6, 1}, {6, 3}, r2), 1);
    EXPECT_EQ(r1, 1.5);
    EXPECT_EQ(r2, -0.5);
}

TEST(Ends, AreMovedOntoTheFirstNodeWithinHalfTheTolerance) {
    const struct {
        const char* name;
        double tolerance;
        const char* curves;
        const char* snapped;
        const char* nodes;
    } cases[] = {
        {"a tolerance of 0 has radius 3, itself not included", 0, "0,0 50,0; 2,2 50,40; -3,0 -50,9",
         "0,0 50,0; 0,0 50,40; -3,0 -50,9", "0,0 50,0 50,40 -3,0 -50,9"},
        {"a tolerance of 1 joins equal points only", 1, "0,0 50,0; 0,1 50,0", "0,0 50,0; 0,1 50,0",
         "0,0 50,0 0,1"},
        {"its sign does not count", -8, "0,0 50,0; 2,3 50,40", "0,0 50,0; 0,0 50,40",
         "0,0 50,0 50,40"},
        {"the first node in range wins, not the nearest, and a curve may vanish", 10,
         "0,0 0,50; 6,0 60,50; 4,0 30,-50; 90,90 91,91", "0,0 0,50; 6,0 60,50; 0,0 30,-50",
         "0,0 0,50 6,0 60,50 30,-50 90,90"},
    };
    for (const auto& c : cases) {
        const Analysed a(c.curves, c.tolerance);
        EXPECT_EQ(curves_in(a.region.curve_pts, a.region.curve_counts), curves_from(c.snapped))
            << c.name;
        EXPECT_EQ(korvel::test::analysis_of(a.region).nodes, curves_from(c.nodes)[0]) << c.name;
    }
}

TEST(Graph, LosesWhatDangles) {
    const Analysed tree("0,0 -5,5 -5,-5 0,0; 0,0 9,0; 9,0 12,3; 9,0 12,-3");
    Ints live;
    for (const CREGION::CURVE_NODE& curve : tree.region.curve_to_node) {
        live.push_back(curve.oc_flag);
    }
    EXPECT_EQ(live, (Ints{1, 0, 0, 0}));
    EXPECT_EQ(tree.region.node_to_curve[0].curve_num, 2);
    EXPECT_EQ(tree.regions(), Lists{{0}});

    const Analysed eight("0,0 -5,5 -5,-5 0,0; 0,0 5,5 5,-5 0,0");
    EXPECT_EQ(eight.region.node_to_curve[0].curve_num, 4);
    EXPECT_EQ(ints(eight.region.node_to_curve[0].curve_ids), (Ints{1, -1, 2, -2}));
    EXPECT_EQ(eight.regions(), (Lists{{0}, {1}}));
}

TEST(Rings, FollowTheOrderInWhichTheyAreTraced) {
    const std::string small = "4,4 6,4 6,6 4,6 4,4;";
    const std::string middle = "2,2 8,2 8,8 2,8 2,2;";
    const std::string large = "0,0 10,0 10,10 0,10 0,0;";
    const std::string dumbbell = "0,0 -5,5 -5,-5 0,0; 0,0 10,0; 10,0 15,5 15,-5 10,0;";
    const struct {
        const char* name;
        std::string curves;
        Lists rings;
        Lists regions;
    } cases[] = {
        {"one closed curve", large, {{1}}, {{0}}},
        {"an inner ring after the outer is no hole", large + small, {{1}, {2}}, {{0}, {1}}},
        {"before it, it is one", small + large, {{1}, {2}}, {{0}, {1, 0}}},
        {"inside out", small + middle + large, {{1}, {2}, {3}}, {{0}, {1, 0}, {2, 1}}},
        {"claimed once", small + large + middle, {{1}, {2}, {3}}, {{0}, {1, 0}, {2}}},
        {"rings that share a point are no holes of each other",
         "0,0 4,1 4,2 0,0;" + large,
         {{1, -2}, {1}, {-2}},
         {{0}, {1}}},
        {"the walk around two faces is dropped",
         "5,0 5,9; 5,0 0,0 0,9 5,9; 5,0 9,0 9,9 5,9;",
         {{1, -3}, {1, -2}, {-2, 3}},
         {{0}, {1}}},
        {"a walk longer than there are curves is given up", dumbbell, {{1}, {-3}}, {{0}, {1}}},
        {"of the rings that touch themselves only the first is dropped",
         dumbbell + "0,50 -5,55 -5,45 0,50; 0,50 10,50; 10,50 15,55 15,45 10,50;",
         {{1, 2, -3, -2}, {1}, {-3}, {4, 5, -6, -5}, {4}, {-6}},
         {{0}, {1}, {2}, {3}, {4}}},
    };
    for (const auto& c : cases) {
        std::string curves = c.curves;
        curves.pop_back();
        const Analysed a(curves.c_str());
        EXPECT_EQ(korvel::test::analysis_of(a.region).rings, c.rings) << c.name;
        EXPECT_EQ(a.regions(), c.regions) << c.name;
    }
}

TEST(Seed, FindsTheRingAroundItAndThoseDirectlyInside) {
    Network network(curves_from("0,0 90,0 90,90 0,90 0,0; 10,10 20,10 20,20 10,20 10,10;"
                                "12,12 14,12 14,14 12,14 12,12; 40,40 60,40 60,60 40,60 40,40;"
                                "200,0 205,0 205,5 200,0"));
    CREGION region(network.pts, network.counts, {70, 70}, 1);
    CArray<tagPOINT> pts;
    CArray<int> counts;
    CArray<int> holes;
    counts.Add(5);
    EXPECT_EQ(region.GetRegion(pts, counts, holes), 0);
    EXPECT_TRUE(pts.IsEmpty() && holes.IsEmpty() && ints(counts) == Ints{5});
    EXPECT_EQ(region.rings[0].ring_area, 8'100); // whatever the seed

    const struct {
        tagPOINT seed;
        Ints pts;
        Ints counts;
    } cases[] = {
        {{70, 70}, {0, 1, 2, 3, 12, 13, 14, 15, 4, 5, 6, 7}, {4, 4, 4}}, // larger holes first
        {{11, 11}, {4, 5, 6, 7, 8, 9, 10, 11}, {4, 4}},
        {{50, 50}, {12, 13, 14, 15}, {4}},
        {{150, 50}, {}, {}},
        {{90, 90}, {}, {}}, // a corner is outside
    };
    for (const auto& c : cases) {
        CArray<int> list;
        region.SetSeedPt(c.seed);
        EXPECT_EQ(region.GetRegionPts(list, counts), static_cast<int>(c.counts.size()));
        EXPECT_EQ(ints(list), c.pts) << c.seed.x;
        EXPECT_EQ(ints(counts), c.counts) << c.seed.x;
    }
}

TEST(Selection, PicksTheFirstOuterRingUnderAClick) {
    Analysed a("10,10 20,10 20,20 10,20 10,10; 0,0 30,0 30,30 0,30 0,0; 40,40 50,40 50,50 40,40");
    a.region.AddSelectRegion({15, 15});
    EXPECT_EQ(a.selected(), (Ints{1, 0, 0}));
    a.region.AddSelectRegion({48, 45});
    a.region.AddSelectRegion({99, 99});
    EXPECT_EQ(a.selected(), (Ints{1, 0, 1}));
    a.region.SetSelectRegion({5, 5});
    EXPECT_EQ(a.selected(), (Ints{0, 1, 0}));

    korvel::test::RecordingDC dc;
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

template <class RegionSet>
std::string text_of(const RegionSet& set) {
    std::ostringstream text;
    for (const VERT2D& pt : set.pt_list) {
        text << pt.x << "," << pt.y << " ";
    }
    const auto add = [&](const char* name, const CArray<int>& list) {
        text << name;
        for (const int index : list) {
            text << " " << index;
        }
    };
    for (const RING& ring : set.ring_list) {
        add("| ring", ring.pts);
    }
    for (const auto& region : set.region_list) {
        add("| region", region.rings);
    }
    return text.str();
}

TEST(Output, TurnsAllRingsTheSameWay) {
    Analysed a("1,1 1,2 2,2 1,1; 0,0 3,0 3,3 0,3 0,0; 4,4 9,4 9,9 4,4");
    const std::string all =
        "1,1 1,2 2,2 0,0 3,0 3,3 0,3 4,4 9,4 9,9 "
        "| ring 2 1 0| ring 3 4 5 6| ring 7 8 9| region 0| region 1 0| region 2";
    PLYDT triangles;
    CCPloy2DRg polygons;
    polygons.pt_list.SetSize(99);
    polygons.side_list.SetSize(3);
    a.region.SetSelectRegion({1, 0});
    a.region.GetSelectRegion(triangles);
    EXPECT_EQ(text_of(triangles),
              "1,1 1,2 2,2 0,0 3,0 3,3 0,3 | ring 2 1 0| ring 3 4 5 6| region 1 0");
    a.region.SetSelectRegion({8, 5});
    a.region.GetSelectRegion(triangles);
    EXPECT_EQ(text_of(triangles), "4,4 9,4 9,9 | ring 0 1 2| region 0");
    a.region.GetAllRegion(polygons);
    EXPECT_EQ(text_of(polygons), all);
    EXPECT_TRUE(polygons.side_list.IsEmpty());
    EXPECT_EQ(a.selected(), (Ints{1, 1, 1}));
    EXPECT_EQ(ints(a.region.ring_pts[0].pts), (Ints{2, 1, 0})); // the builder's own ring too
    a.region.GetAllRegion(triangles);
    EXPECT_EQ(text_of(triangles), all);
    a.region.GetSelectRegion(triangles);
    EXPECT_EQ(text_of(triangles), all);

    a.region.SetSelectRegion({4, 4}); // a corner is in no region
    a.region.GetSelectRegion(triangles);
    EXPECT_EQ(text_of(triangles), "");
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

TEST(Region, KeepsNothingOfTheNetworkBefore) {
    Analysed a("0,0 10,0 10,10 0,10 0,0; 2,2 4,2 4,4 2,2");
    a.region.SetSeedPt({3, 3});
    CREGION copy;
    copy.SetPtsInfo(a.network.pts, a.network.counts);
    copy.Copy(a.region);
    const CREGION second(copy);

    Network other(curves_from("0,0 7,0 7,7 0,0"));
    a.region.AddSelectRegion({1, 1});
    a.region.SetPtsInfo(other.pts, other.counts);
    EXPECT_EQ(a.regions(), Lists{{0}});
    EXPECT_EQ(a.selected(), Ints{0});
    EXPECT_EQ(korvel::test::analysis_of(second).regions, (Lists{{0}, {1}}));
    EXPECT_EQ(second.seed_pt.x, 3);
    EXPECT_EQ(second.input_pts, &a.network.pts);

    copy.SetTolerance(7);
    copy.RemoveAll(); // settings stay
    PLYDT out;
    out.pt_list.SetSize(2);
    copy.GetAllRegion(out);
    copy.GetSelectRegion(out);
    copy.AddSelectRegion({1, 1});
    EXPECT_EQ(out.pt_list.GetSize(), 2);
    EXPECT_EQ(copy.is_calculated + copy.regions.GetSize() + copy.node_to_curve.GetSize(), 0);
    EXPECT_EQ(copy.input_pts, &a.network.pts);
    EXPECT_EQ(copy.tolerance, 7);

    Network empty(Curves{});
    a.region.SetPtsInfo(empty.pts, empty.counts);
    EXPECT_EQ(a.region.rings.GetSize() + a.region.sides.GetSize() + a.region.regions.GetSize(), 0);
    EXPECT_EQ(a.region.is_calculated, 1);
    EXPECT_EQ(a.region.unique_pts.GetSize(), 3); // these alone stay
}

TEST(Region, TakesInconsistentCountsForWhatThePointsBear) {
    constexpr int most = std::numeric_limits<int>::max();
    for (const Ints& counts : {Ints{most}, Ints{-5, 5, 7, most}, Ints{5, 0, -most, 3, 3}}) {
        Network network(curves_from("0,0 9,0 9,9 0,9 0,0"));
        network.counts.RemoveAll();
        for (const int count : counts) {
            network.counts.Add(count);
        }
        CREGION region;
        region.SetPtsInfo(network.pts, network.counts);
        EXPECT_EQ(region.regions.GetSize(), 1) << counts.front();
    }
    CREGION region;
    CArray<tagPOINT> pts;
    CArray<int> counts;
    region.GetRegion(pts, counts, counts); // no network at all
    EXPECT_EQ(region.is_calculated + region.rings.GetSize(), 1);

    // A step that runs on its own, on a network that has changed meanwhile, leaves rings of curves
    // that are gone.
    Analysed a("0,0 1,0 1,1 0,0; 2,0 3,0 3,1 2,0; 4,0 5,0 5,1 4,0; 6,0 7,0 7,1 6,0");
    Network other(curves_from("0,0 90,0 0,90 0,0"));
    a.region.input_pts = &other.pts;
    a.region.input_counts = &other.counts;
    a.region.SplitPureCurve();
    a.region.SetSeedPt({20, 20});
    a.region.GetRegion(pts, counts, counts);
    EXPECT_LE(a.region.in_rings.GetSize(), 1);
}

// A mesh of 3 by 3 lines: 9 crossings, each on two segments.
const char* const mesh = "0,1 9,1; 0,4 9,4; 0,7 9,7; 1,0 1,9; 4,0 4,9; 7,0 7,9";

/// Sets the crossing limit back at the end of a test.
struct CrossingLimitGuard {
    CrossingLimitGuard() = default;
    CrossingLimitGuard(const CrossingLimitGuard&) = delete;
    CrossingLimitGuard& operator=(const CrossingLimitGuard&) = delete;
    ~CrossingLimitGuard() { CREGION::set_crossing_limit(CREGION::no_crossing_limit); }
};

TEST(CrossingLimit, IsOffUntilAHostSetsOne) {
    const CrossingLimitGuard guard;
    EXPECT_EQ(CREGION::set_crossing_limit(18), CREGION::no_crossing_limit);
    EXPECT_EQ(CREGION::set_crossing_limit(17), 18);
    EXPECT_FALSE(CREGION().has_exceeded_crossing_limit());
}

TEST(CrossingLimit, GivesEmptyResultsAndIsReportedAfterTheCall) {
    const CrossingLimitGuard guard;
    CREGION::set_crossing_limit(18);
    Analysed a(mesh);
    EXPECT_EQ(a.region.regions.GetSize(), 4);
    EXPECT_FALSE(a.region.has_exceeded_crossing_limit());

    CREGION::set_crossing_limit(17);
    a.region.SetPtsInfo(a.network.pts, a.network.counts);
    EXPECT_TRUE(a.region.has_exceeded_crossing_limit());
    EXPECT_TRUE(a.region.curve_pts.IsEmpty());
    EXPECT_TRUE(a.region.node_pts.IsEmpty());
    EXPECT_TRUE(a.region.rings.IsEmpty());
    EXPECT_TRUE(a.region.regions.IsEmpty());
    EXPECT_EQ(a.region.is_calculated, 1);

    CREGION::set_crossing_limit(-1);
    const Analysed closed("0,0 5,0 5,5 0,0"); // its ends meet
    EXPECT_EQ(closed.region.regions.GetSize(), 0);
    EXPECT_TRUE(closed.region.has_exceeded_crossing_limit());
    EXPECT_FALSE(Analysed("0,0 5,0").region.has_exceeded_crossing_limit());
}

TEST(CrossingLimit, IsForgottenWithTheResults) {
    const CrossingLimitGuard guard;
    CREGION::set_crossing_limit(17);
    Analysed a(mesh);
    CREGION copy(a.region);
    EXPECT_TRUE(copy.has_exceeded_crossing_limit());
    copy.RemoveAll();
    EXPECT_FALSE(copy.has_exceeded_crossing_limit());

    CREGION::set_crossing_limit(CREGION::no_crossing_limit);
    a.region.SetPtsInfo(a.network.pts, a.network.counts);
    EXPECT_FALSE(a.region.has_exceeded_crossing_limit());
    EXPECT_EQ(a.region.regions.GetSize(), 4);
}

TEST(Nesting, KeepsTheTagsOfRegionsThatRemain) {
    Analysed a("2,2 4,2 4,4 2,2; 0,0 9,0 9,9 0,9 0,0; 20,0 29,0 29,9 20,0");
    ASSERT_EQ(a.regions(), (Lists{{0}, {1, 0}, {2}}));
    for (int k = 0; k < 3; ++k) {
        a.region.regions[k].tag0 = 10 + k;
        a.region.regions[k].tag1 = 20 + k;
        a.region.regions[k].is_select = 1;
    }
    a.region.SearchAllRegion();
    EXPECT_EQ(a.regions(), (Lists{{0}, {1, 0}, {2}}));
    EXPECT_EQ(a.region.regions[0].tag0, 10);
    EXPECT_EQ(a.region.regions[2].tag1, 22);
    EXPECT_EQ(a.selected(), (Ints{0, 0, 0}));

    Network smaller(curves_from("0,0 7,0 7,7 0,0; 20,0 29,0 29,9 20,0"));
    a.region.SetPtsInfo(smaller.pts, smaller.counts);
    ASSERT_EQ(a.regions(), (Lists{{0}, {1}}));
    EXPECT_EQ(a.region.regions[1].tag0, 11);
    EXPECT_EQ(a.region.regions[1].tag1, 21);

    Network larger(curves_from("0,0 7,0 7,7 0,0; 20,0 29,0 29,9 20,0; 40,0 49,0 49,9 40,0"));
    a.region.SetPtsInfo(larger.pts, larger.counts);
    ASSERT_EQ(a.region.regions.GetSize(), 3);
    EXPECT_EQ(a.region.regions[2].tag0, 0) << "this record is new";
    EXPECT_EQ(a.region.regions[2].tag1, 0) << "this record is new";
}

TEST(Region, PassesOverIndicesThatNameNothing) {
    constexpr int far = std::numeric_limits<int>::max();
    Analysed a("0,0 9,0 9,9 0,9 0,0; 20,0 29,0 29,9 20,9 20,0; 2,2 4,2 4,4 2,4 2,2");
    ASSERT_EQ(a.regions(), (Lists{{0}, {1}, {2}}));
    a.region.regions[0].rings.RemoveAll();
    a.region.regions[1].rings[0] = far;
    a.region.regions[2].rings.Add(-1);
    a.region.AddSelectRegion({25, 5});
    EXPECT_EQ(a.selected(), (Ints{0, 0, 0}));
    a.region.AddSelectRegion({3, 3});
    EXPECT_EQ(a.selected(), (Ints{0, 0, 1}));
    PLYDT out;
    a.region.GetSelectRegion(out);
    ASSERT_EQ(out.region_list.GetSize(), 1);
    EXPECT_EQ(ints(out.region_list[0].rings), Ints{0});

    a.region.ring_pts[2].pts[1] = far; // now it lies nowhere
    a.region.SetSelectRegion({3, 3});
    EXPECT_EQ(a.selected(), (Ints{0, 0, 0}));
    const Ints as_it_was = ints(a.region.ring_pts[2].pts);
    CCPloy2DRg all;
    a.region.GetAllRegion(all);
    EXPECT_EQ(ints(all.ring_list[2].pts), as_it_was);
    a.region.GetSelectRegion(out);
    EXPECT_EQ(out.ring_list[out.ring_list.GetUpperBound()].pts.GetSize(), 3);
    korvel::test::RecordingDC dc;
    a.region.Draw_Regon(&dc);
    a.region.SearchAllRegion();
    EXPECT_EQ(a.regions(), (Lists{{0}, {1}, {2}}));
    EXPECT_EQ(a.region.GetNextCurve(std::numeric_limits<int>::min(), 1), 0);

    Analysed loose("0,0 5,5");
    loose.region.curve_to_node[0].oc_flag = 1;
    loose.region.node_to_curve[0].curve_num = 1;
    loose.region.node_to_curve[1].curve_num = std::numeric_limits<int>::min();
    loose.region.MarkCurveOCFlag();
    EXPECT_EQ(loose.region.curve_to_node[0].oc_flag, 0);
    EXPECT_EQ(loose.region.node_to_curve[1].curve_num, std::numeric_limits<int>::min());
}

/// The bounded faces of the pruned graph, by Euler's formula.
int bounded_faces(const CREGION& region) {
    Ints roots(static_cast<std::size_t>(region.node_pts.GetSize()));
    std::iota(roots.begin(), roots.end(), 0);
    const auto root_of = [&](int node) -> int& {
        int* root = &roots[static_cast<std::size_t>(node)];
        for (; *root != node; root = &roots[static_cast<std::size_t>(node)]) {
            node = *root;
        }
        return *root;
    };
    int faces = 0; // edges less vertices plus components
    for (const CREGION::CURVE_NODE& curve : region.curve_to_node) {
        int& root = root_of(curve.start_node);
        if (curve.oc_flag == 1 && root == root_of(curve.end_node)) {
            ++faces;
        } else if (curve.oc_flag == 1) {
            root = root_of(curve.end_node);
        }
    }
    return faces;
}

TEST(Region, FindsEveryFaceOfTheSampleNetworks) {
    const struct {
        std::string name;
        int faces_lost; ///< to the rule that the first ring that touches itself is dropped
    } cases[] = {{"us-states", 0}, {"us-counties", 1}, {"world-110m", 0}};
    for (const auto& c : cases) {
        const korvel::test::CurveArrays sample = korvel::test::sample_curves(c.name);
        const Analysed a(curves_in(sample.pts, sample.counts));
        EXPECT_GT(a.region.regions.GetSize(), 200) << c.name;
        EXPECT_EQ(a.region.regions.GetSize() + c.faces_lost, bounded_faces(a.region)) << c.name;
    }
}

} // namespace
