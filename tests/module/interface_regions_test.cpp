// Every operation of the region builder and of both kinds of region set, called as a host calls it,
// through the one header; and the road from curves to a solid.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "korvel/module/korvel.h"
#include "tests/module/host.h"
#include "tests/support/scratch.h"

namespace korvel::test {
namespace {

using IntArray = CArray<int>;

/// Two curves: a square, and inside it a smaller one that is digitised first.
struct Network {
    CArray<tagPOINT> points;
    IntArray counts;

    Network() {
        for (const tagPOINT point : {POINT{40, 40},
                                     {60, 40},
                                     {60, 60},
                                     {40, 60},
                                     {40, 40},
                                     {0, 0},
                                     {100, 0},
                                     {100, 100},
                                     {0, 100},
                                     {0, 0}}) {
            points.Add(point);
        }
        counts.Add(5);
        counts.Add(5);
    }
};

TEST(Interface, BuildsRegions) {
    Network network;
    CREGION builder;
    builder.SetTolerance(2);
    double tolerance = 0;
    builder.GetTolerance(tolerance);
    EXPECT_EQ(tolerance, 2);
    builder.SetPtsInfo(network.points, network.counts);
    EXPECT_EQ(builder.is_calculated, 1);
    CCPloy2DRg set;
    builder.GetAllRegion(set);
    ASSERT_EQ(set.region_list.GetSize(), 2);
    EXPECT_EQ(set.region_list[1].rings.GetSize(), 2);
    PLYDT lifted;
    builder.GetAllRegion(lifted);
    EXPECT_EQ(lifted.region_list.GetSize(), 2);

    Device device;
    builder.SetSelectRegion({10, 10});
    builder.Draw_Regon(&device);
    EXPECT_EQ(device.areas, 1);
    EXPECT_EQ(device.corners.size(), 8U);
    builder.AddSelectRegion({50, 50});
    PLYDT selected;
    builder.GetSelectRegion(selected);
    EXPECT_EQ(selected.region_list.GetSize(), 2);
    builder.Draw_Poly(255, builder.regions[0], &device);
    EXPECT_EQ(device.fill, RGB(255, 0, 127));

    builder.RemoveAll();
    EXPECT_EQ(builder.is_calculated, 0);
    EXPECT_EQ(builder.tolerance, 2) << "only what was computed goes";
}

TEST(Interface, FindsTheRingsAroundASeed) {
    Network network;
    CREGION builder(network.points, network.counts, {10, 10}, 1);
    IntArray untouched;
    EXPECT_EQ(as<int>(builder.GetRegion(network.points, untouched, untouched)), 0);
    EXPECT_EQ(builder.in_rings.GetSize(), 1);
    EXPECT_EQ(builder.ex_rings.GetSize(), 1);
    builder.SetSeedPt({50, 50});
    tagPOINT seed = {};
    builder.GetSeedPt(seed);
    EXPECT_EQ(seed.x, 50);
    builder.CalcInExRing();
    IntArray points;
    IntArray counts;
    EXPECT_EQ(as<int>(builder.GetRegionPts(points, counts)), 1);
    EXPECT_EQ(points.GetSize(), 4);
    EXPECT_EQ(as<int>(builder.IsPtInRing({50, 50}, builder.rings[0])), 1);
}

TEST(Interface, OffersEveryStepOfTheRegionBuilder) {
    Network network;
    CREGION builder;
    builder.input_pts = &network.points;
    builder.input_counts = &network.counts;
    builder.SplitPureCurve();
    EXPECT_EQ(builder.curve_counts.GetSize(), 6) << "a closed curve meets itself at both ends";
    builder.CalcNodePts();
    EXPECT_EQ(builder.curve_counts.GetSize(), 2);
    EXPECT_EQ(builder.node_pts.GetSize(), 2);
    builder.CalcCurveToNode();
    EXPECT_EQ(builder.curve_to_node[1].end_node, 1);
    builder.CalcNodeToCurve();
    EXPECT_EQ(builder.node_to_curve[0].curve_num, 2);
    builder.MarkCurveOCFlag();
    EXPECT_EQ(builder.curve_to_node[0].oc_flag, 1);
    EXPECT_EQ(as<int>(builder.GetNextCurve(1, -1)), 1);
    builder.CalcRingToCurve();
    ASSERT_EQ(builder.rings.GetSize(), 2);
    builder.CalcRingArea();
    EXPECT_EQ(builder.rings[1].ring_area, 10000);

    builder.SetPtsInfo(network.points, network.counts);
    builder.regions.RemoveAll();
    builder.SearchAllRegion();
    EXPECT_EQ(builder.regions.GetSize(), 2);
    double r1 = 0;
    double r2 = 0;
    EXPECT_EQ(as<int>(builder.CalcSegmentIntersectRatio({0, 0}, {4, 0}, r1, {1, -1}, {1, 1}, r2)),
              1);
    EXPECT_EQ(r1, 0.25);
    EXPECT_EQ(r2, 0.5);
}

/// The regions of the network, with their sides.
void fill(CCPloy2DRg& set) {
    Network network;
    CREGION builder;
    builder.SetPtsInfo(network.points, network.counts);
    builder.GetAllRegion(set);
    set.creat_top_rel();
}

TEST(Interface, StoresDrawsAndQueriesRegionSets) {
    CCPloy2DRg set;
    fill(set);
    const Stream file = stream_of();
    set.writepolyrg(file.get());
    std::rewind(file.get());
    CCPloy2DRg read;
    read.readpolyrg(file.get());
    ASSERT_EQ(read.region_list.GetSize(), 2);

    double between[] = {10, 10};
    EXPECT_EQ(as<int>(read.search_pt_polyrg(between)), 1);
    EXPECT_EQ(as<int>(read.ptInPlyRegen(between, read.region_list[0])), 0);
    EXPECT_EQ(as<int>(read.PtInRing(between, read.ring_list[1])), 1);

    Device device;
    read.Draw_Poly_Line(0, 0, 0, 0, 1, 1, 1, &device);
    EXPECT_EQ(device.lines, read.side_list.GetSize());
    read.region_list[1].green = 200;
    read.Draw_Regon(0, 0, 0, 0, 1, 1, 1, &device);
    EXPECT_EQ(device.areas, 2);
    EXPECT_EQ(device.fill, RGB(0, 200, 0));
    read.Draw_Poly(7, 0, 0, 0, 1, 1, 2, read.region_list[0], &device);
    EXPECT_EQ(device.corners.back().x % 40, 7);
    read.translate_cood(0, 0, 5, 5, 1, 1, 10);
    EXPECT_EQ(read.pt_list[0].x, set.pt_list[0].x / 10 + 5);
}

TEST(Interface, RaisesTrianglesIntoASolid) {
    Network network;
    network.points.SetSize(5);
    network.counts.SetSize(1);
    CREGION builder;
    builder.SetPtsInfo(network.points, network.counts);
    PLYDT set;
    builder.GetAllRegion(set);
    set.creat_top_rel();
    EXPECT_EQ(set.ring_list[0].sides.GetSize(), 4);
    PLYDT::set_trace_files(false);
    set.region_tranglate();
    EXPECT_EQ(set.trg_list.GetSize(), 2);
    set.poly_tranglate(set.region_list[0]);
    EXPECT_EQ(set.trg_list.GetSize(), 4) << "one region's triangles are appended";
    set.trg_list.SetSize(2);
    Device device;
    set.Draw_Trgls(&device);
    EXPECT_EQ(device.areas, 2);
    set.CoordinatesTrans(1, 0, 0, 0, 0, 1, 1, -3, 7);
    ASSERT_EQ(set.prism_pts.GetSize(), 8);
    EXPECT_EQ(set.prism_pts[7].z, 7);

    std::string notice;
    auto before = set_message_box_handler([&](const char* text, unsigned type) {
        EXPECT_EQ(type, MB_OK);
        notice = text;
        return IDOK;
    });
    TMOD3D model;
    model.create3dmode(set);
    EXPECT_EQ(notice, "pol = 2 8\n");
    EXPECT_EQ(model.bodies[0].volume, 4000);
    EXPECT_EQ(as<int>(AfxMessageBox("seen")), IDOK);
    EXPECT_EQ(notice, "seen");
    set_message_box_handler(std::move(before));

    set.RemoveAll();
    EXPECT_EQ(set.prism_pts.GetSize(), 8) << "lifted points stay";
    PLYDT::set_trace_files(true);
}

class InterfaceTraces : public ScratchAsCurrent {};

TEST_F(InterfaceTraces, AreTwoFiles) {
    PLYDT set;
    set.pt_list.SetSize(3);
    set.pt_list[1].x = 10;
    set.pt_list[2].y = 10;
    set.ring_list.SetSize(1);
    set.region_list.SetSize(1);
    set.region_list[0].rings.Add(0);
    for (const int point : {0, 1, 2}) {
        set.ring_list[0].pts.Add(point);
    }
    set.region_tranglate();
    EXPECT_EQ(set.trg_list.GetSize(), 1);
    EXPECT_TRUE(std::filesystem::exists("trg.dat"));
    EXPECT_TRUE(std::filesystem::exists("wwwtrg.dat"));
}

} // namespace
} // namespace korvel::test
