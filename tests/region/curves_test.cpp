// Worked examples of the steps from curves to rings.

#include <string>

#include <gtest/gtest.h>

#include "tests/region/analysed.h"

using namespace korvel::test;

namespace {

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
        EXPECT_EQ(analysis_of(a.region).nodes, curves_from(c.nodes)[0]) << c.name;
    }
}

TEST(Graph, DropsLooseCurves) {
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
        {"a walk longer than there are curves is stopped", dumbbell, {{1}, {-3}}, {{0}, {1}}},
        {"of the rings that touch themselves only the first is dropped",
         dumbbell + "0,50 -5,55 -5,45 0,50; 0,50 10,50; 10,50 15,55 15,45 10,50;",
         {{1, 2, -3, -2}, {1}, {-3}, {4, 5, -6, -5}, {4}, {-6}},
         {{0}, {1}, {2}, {3}, {4}}},
    };
    for (const auto& c : cases) {
        std::string curves = c.curves;
        curves.pop_back();
        const Analysed a(curves.c_str());
        EXPECT_EQ(analysis_of(a.region).rings, c.rings) << c.name;
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

} // namespace
