// The region builder with several networks, inconsistent input, a crossing limit and sample files.

#include <limits>
#include <numeric>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "korvel/polyregion/ccploy2drg.h"
#include "korvel/polyregion/plydt.h"
#include "korvel/region/crossing_limit.h"
#include "tests/region/analysed.h"
#include "tests/support/recording_dc.h"
#include "tests/support/sample_curves.h"

using namespace korvel::test;

namespace {

TEST(Region, ReplacesTheResultsOfTheFormerNetwork) {
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
    EXPECT_EQ(analysis_of(second).regions, (Lists{{0}, {1}}));
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

TEST(Region, ReducesInconsistentCountsToThePointsThatThereAre) {
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
    region.GetRegion(pts, counts, counts); // without a network
    EXPECT_EQ(region.is_calculated + region.rings.GetSize(), 1);

    // A single step, run after the network was replaced, leaves rings with curve ids that no
    // longer exist.
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

/// Resets the crossing limit at the end of a test.
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

TEST(CrossingLimit, LeavesEmptyResultsAndIsReportedAfterTheCall) {
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

TEST(CrossingLimit, OfAThreadOverridesThatOfTheProcess) {
    const CrossingLimitGuard guard;
    CREGION::set_crossing_limit(17);
    const korvel::CrossingLimitOverride ample(18);
    EXPECT_FALSE(Analysed(mesh).region.has_exceeded_crossing_limit());
    {
        const korvel::CrossingLimitOverride none(0);
        EXPECT_TRUE(Analysed(mesh).region.has_exceeded_crossing_limit());
        EXPECT_FALSE(Analysed("0,0 5,0").region.has_exceeded_crossing_limit());
        EXPECT_TRUE(none.was_exceeded());
    }
    std::thread([] { EXPECT_TRUE(Analysed(mesh).region.has_exceeded_crossing_limit()); }).join();
    EXPECT_FALSE(ample.was_exceeded());
}

TEST(CrossingLimit, IsResetWithTheResults) {
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

TEST(Region, IgnoresIndicesOutOfRange) {
    constexpr int largest = std::numeric_limits<int>::max();
    Analysed a("0,0 9,0 9,9 0,9 0,0; 20,0 29,0 29,9 20,9 20,0; 2,2 4,2 4,4 2,4 2,2");
    ASSERT_EQ(a.regions(), (Lists{{0}, {1}, {2}}));
    a.region.regions[0].rings.RemoveAll();
    a.region.regions[1].rings[0] = largest;
    a.region.regions[2].rings.Add(-1);
    a.region.AddSelectRegion({25, 5});
    EXPECT_EQ(a.selected(), (Ints{0, 0, 0}));
    a.region.AddSelectRegion({3, 3});
    EXPECT_EQ(a.selected(), (Ints{0, 0, 1}));
    PLYDT out;
    a.region.GetSelectRegion(out);
    ASSERT_EQ(out.region_list.GetSize(), 1);
    EXPECT_EQ(ints(out.region_list[0].rings), Ints{0});

    a.region.ring_pts[2].pts[1] = largest; // now it contains no point
    a.region.SetSelectRegion({3, 3});
    EXPECT_EQ(a.selected(), (Ints{0, 0, 0}));
    const Ints former = ints(a.region.ring_pts[2].pts);
    CCPloy2DRg all;
    a.region.GetAllRegion(all);
    EXPECT_EQ(ints(all.ring_list[2].pts), former);
    a.region.GetSelectRegion(out);
    EXPECT_EQ(out.ring_list[out.ring_list.GetUpperBound()].pts.GetSize(), 3);
    RecordingDC dc;
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
        const CurveArrays sample = sample_curves(c.name);
        const Analysed a(curves_in(sample.pts, sample.counts));
        EXPECT_GT(a.region.regions.GetSize(), 200) << c.name;
        EXPECT_EQ(a.region.regions.GetSize() + c.faces_lost, bounded_faces(a.region)) << c.name;
    }
}

} // namespace
