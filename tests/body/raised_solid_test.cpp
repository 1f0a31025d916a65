// Solids raised from triangulated regions.

#include <gtest/gtest.h>

#include "korvel/polyregion/plydt.h"
#include "tests/support/model_state.h"

using namespace korvel::test;

namespace {

class RaisedSolid : public testing::Test {
protected:
    void SetUp() override {
        PLYDT::set_trace_files(false);
        before_ = korvel::set_message_box_handler([this](const char* text, unsigned) {
            notices += text;
            return IDOK;
        });
    }
    void TearDown() override {
        korvel::set_message_box_handler(before_);
        PLYDT::set_trace_files(true);
    }

    /// Triangulates a region of an outer ring and holes and lifts it from lo to hi.
    void lift(std::initializer_list<std::pair<int, int>> points,
              std::initializer_list<std::initializer_list<int>> rings, double lo, double hi) {
        for (const auto& [x, y] : points) {
            VERT2D point;
            point.x = x;
            point.y = y;
            d.pt_list.Add(point);
        }
        d.region_list.SetSize(1);
        for (const auto& corners : rings) {
            RING ring;
            set_ints(ring.pts, corners);
            d.region_list[0].rings.Add(d.ring_list.Add(ring));
        }
        d.region_tranglate();
        d.CoordinatesTrans(1, 0, 0, 0, 0, 1, 1, lo, hi);
    }

    TMOD3D model;
    PLYDT d;
    std::string notices;

private:
    decltype(korvel::set_message_box_handler(nullptr)) before_;
};

TEST_F(RaisedSolid, TwoTriangularPrisms) {
    model.create3dmode(d);
    EXPECT_PRED_FORMAT2(same_state, model, TMOD3D());
    EXPECT_EQ(notices, "");
    lift({{0, 0}, {4, 0}, {0, 3}}, {{0, 1, 2}}, -1, 1.5);
    model.create3dmode(d);
    expect_closed(model, 2);
    EXPECT_EQ(edge_ends(model), (Pairs{{0, 1},
                                       {1, 2},
                                       {2, 0},
                                       {3, 4},
                                       {4, 5},
                                       {5, 3},
                                       {0, 3},
                                       {3, 2},
                                       {5, 2},
                                       {1, 4},
                                       {4, 0},
                                       {5, 1}}));
    EXPECT_EQ(ints(model.polys[0].lines), (Ints{2, 1, 0}));    // after the corners were turned
    for (const auto& [from, to] : {std::pair(7, 6), {6, 7}}) { // beforehand, of the next prism
        LINE3D line;
        line.set_line_point(from, to);
        model.lines.Add(line);
    }
    model.create3dmode(d);
    EXPECT_EQ(model.lines[12].faces.GetSize(), 0); // the last of both is used
    EXPECT_EQ(model.lines[13].faces.GetSize(), 2);
    EXPECT_EQ(model.verts.GetSize(), 12);
    EXPECT_EQ(model.polys.GetSize(), 16);
    EXPECT_EQ(model.lines.GetSize(), 25);
    EXPECT_EQ(model.mode_ok, 1);
    EXPECT_EQ(ints(model.bodies[1].polys), (Ints{8, 9, 10, 11, 12, 13, 14, 15}));
    EXPECT_DOUBLE_EQ(model.bodies[0].volume, 15);
    EXPECT_DOUBLE_EQ(model.bodies[1].volume, 15);
    EXPECT_EQ(point(model.bodies[1].model_min), (Point{0, 0, -1}));
    EXPECT_EQ(model.wrap_cuboid[5], 1.5);
    EXPECT_EQ(notices, "pol = 1 6\npol = 1 6\n");
}

TEST_F(RaisedSolid, RegionWithHole) {
    lift({{0, 0}, {100, 7}, {93, 81}, {41, 110}, {-5, 70}, {30, 31}, {28, 61}, {62, 57}},
         {{0, 1, 2, 3, 4}, {5, 7, 6}}, 2, 5);
    double area = 0; // holes run the same way as their outer ring
    for (int r : {0, 1}) {
        const CArray<int>& pts = d.ring_list[r].pts;
        const VERT2D* last = &d.pt_list[pts[pts.GetUpperBound()]];
        for (const int i : pts) {
            const VERT2D* next = &d.pt_list[i];
            area += (last->x * next->y - next->x * last->y) * (r == 0 ? 0.5 : -0.5);
            last = next;
        }
    }
    model.create3dmode(d);
    EXPECT_EQ(model.polys.GetSize(), 16 + 2 * 8);
    expect_closed(model, 0);
    EXPECT_NEAR(model.bodies[0].volume, area * 3, 1e-8);
}

TEST_F(RaisedSolid, WallsThatDoNotFitThePoints) {
    lift({{0, 0}, {4, 0}, {0, 3}, {9, 9}}, {{0, 1, 2}}, 0, 1);
    model.create3dmode(d); // a point on no ring: two faces are left over
    EXPECT_EQ(model.polys.GetSize(), 10);
    EXPECT_EQ(model.bodies[0].polys.GetSize(), 10);
    EXPECT_EQ(model.polys[9].verts.GetSize(), 0);
    EXPECT_EQ(model.polys[9].lines.GetSize(), 0);
    EXPECT_DOUBLE_EQ(model.bodies[0].volume, 6);
    d.ring_list.SetSize(4);
    set_ints(d.ring_list[1].pts, {0, 1});
    set_ints(d.ring_list[2].pts, {0, 1, 3});
    set_ints(d.ring_list[3].pts, {0, 3, 2});
    d.prism_pts.SetSize(9); // the odd one has no twin
    model.create3dmode(d);  // points on three rings: nine walls are not in the body
    EXPECT_EQ(model.polys.GetSize(), 30);
    EXPECT_EQ(model.bodies[1].polys.GetSize(), 11);
    EXPECT_EQ(model.polys[29].verts.GetSize(), 3);
    EXPECT_EQ(model.polys[29].bodies.GetSize(), 0);
    EXPECT_TRUE(model.polys[11].is_composed_vert(8 + 4));
    constexpr int most = 2147483647;
    for (const int garbage : {-1, 8, most, -most - 1, most - 4}) {
        d.trg_list[0].vb = garbage;
        d.ring_list[2].pts[1] = garbage;
        model.create3dmode(d);
    }
    EXPECT_EQ(model.bodies.GetSize(), 7);
    TMOD2D section;
    model.get_x_section(0.5, section);
    model.change_vis_parm();
}

} // namespace
