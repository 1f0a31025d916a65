// Starter models, the view and neighbourhoods.

#include <algorithm>
#include <array>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/model_state.h"

using namespace korvel::test;

namespace {

TMOD3D started(int kind, int rounds, std::array<double, 3> size = {2, 2, 2},
               std::array<double, 3> centre = {}) {
    TMOD3D model;
    model.inti_mode(centre.data(), size.data(), kind, rounds);
    return model;
}

TEST(StarterModel, Cuboids) {
    for (int rounds = -1; rounds < 4; ++rounds) {
        const TMOD3D model = started(1, rounds, {4, 2, 1}, {10, 0, -3});
        EXPECT_EQ(model.polys.GetSize(), 24 << 2 * std::max(rounds, 0));
        expect_closed(model, 2);
        EXPECT_NEAR(model.bodies[0].volume, 8, 1e-10);
        EXPECT_EQ(model.mode_ok, 1);
        EXPECT_EQ(point(model.verts[0].model_xyz), (Point{12, 1, -2.5}));
        EXPECT_EQ(point(model.cuboid_min), (Point{8, -1, -3.5}));
        EXPECT_EQ(point(model.cuboid_max), (Point{12, 1, -2.5}));
        EXPECT_EQ(point(model.bodies[0].model_max), (Point{12, 1, -2.5}));
        EXPECT_DOUBLE_EQ(model.bodies[0].view_span[0], 2 * model.view_bounds[1]);
    }
    const TMOD3D cube = started(1, 0);
    EXPECT_EQ(cube.bodies[0].volume, 8);
    EXPECT_EQ(cube.verts.GetSize(), 14);
    EXPECT_EQ(point(cube.verts[6].model_xyz), (Point{-1, -1, -1}));
    EXPECT_EQ(point(cube.verts[11].model_xyz), (Point{0, -1, 0}));
}

TEST(StarterModel, Balls) {
    constexpr double pi = 3.14159265358979323846;
    double before = 0;
    for (int rounds = 0; rounds < 5; ++rounds) {
        const TMOD3D model = started(0, rounds, {2, 9, 9}, {10, 0, 0});
        EXPECT_EQ(model.polys.GetSize(), 20 << 2 * rounds);
        expect_closed(model, 2);
        for (const VERT3D& v : model.verts) {
            EXPECT_NEAR(std::hypot(v.model_xyz[0] - 10, v.model_xyz[1], v.model_xyz[2]), 2, 1e-14);
        }
        const double share = model.bodies[0].volume / (4.0 / 3 * pi * 8);
        EXPECT_GT(share, before);
        before = share;
        if (rounds == 0) { // the regular icosahedron
            EXPECT_NEAR(share, std::sqrt(10 + 2 * std::sqrt(5.0)) / (2 * pi), 1e-14);
        }
    }
    EXPECT_GT(before, 0.995);
    EXPECT_LT(before, 1);
}

TEST(StarterModel, OrderOfRecords) {
    TMOD3D cube;
    cube.inti_cube();
    EXPECT_EQ(
        edge_ends(cube),
        (Pairs{{0, 1},  {1, 12}, {12, 0}, {1, 2},  {2, 12}, {2, 3},  {3, 12}, {3, 0}, {5, 4},
               {4, 13}, {13, 5}, {6, 5},  {13, 6}, {7, 6},  {13, 7}, {4, 7},  {0, 4}, {4, 9},
               {9, 0},  {5, 9},  {5, 1},  {1, 9},  {5, 10}, {10, 1}, {6, 10}, {6, 2}, {2, 10},
               {6, 11}, {11, 2}, {7, 11}, {7, 3},  {3, 11}, {7, 8},  {8, 3},  {4, 8}, {0, 8}}));
    TMOD3D ball;
    ball.inti_p20();
    std::vector<Ints> corners;
    for (const POLY3D& face : ball.polys) {
        corners.push_back(ints(face.verts));
    }
    EXPECT_EQ(corners,
              (std::vector<Ints>{{0, 8, 4},  {0, 10, 5}, {2, 9, 4},  {11, 5, 2}, {1, 8, 6},
                                 {10, 7, 1}, {9, 6, 3},  {3, 11, 7}, {10, 8, 0}, {8, 10, 1},
                                 {9, 11, 2}, {11, 9, 3}, {2, 0, 4},  {0, 2, 5},  {1, 3, 6},
                                 {3, 1, 7},  {6, 4, 8},  {4, 6, 9},  {5, 7, 10}, {7, 5, 11}}));
    EXPECT_EQ(ints(cube.polys[23].verts), (Ints{3, 8, 0}));
    EXPECT_EQ(ints(cube.polys[23].lines), (Ints{33, 35, 7}));
    EXPECT_EQ(ints(ball.polys[19].lines), (Ints{3, 17, 21}));
}

TEST(View, AnglesAndVisibility) {
    TMOD3D cube = started(1, 0);
    const auto seen = [&](double angle_1, double angle_2) {
        cube.vis_angle_1 = angle_1;
        cube.vis_angle_2 = angle_2;
        cube.change_vis_parm();
        std::vector<int> faces;
        for (int f = 0; f < cube.polys.GetSize(); ++f) {
            if ((cube.polys[f].state_flags & 16) != 0) {
                faces.push_back(f);
            }
        }
        return faces;
    };
    // The first angle turns about z, the second tilts about x. What is seen edge-on is not seen.
    EXPECT_EQ(seen(0, 0), (Ints{0, 1, 2, 3}));
    EXPECT_EQ(seen(0, 1), (Ints{0, 1, 2, 3, 8, 9, 10, 11}));
    EXPECT_EQ(seen(20, 179), (Ints{4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}));
    cube.lines.RemoveAll(); // not needed for that
    EXPECT_EQ(seen(0, 0), (Ints{0, 1, 2, 3}));
}

TEST(View, BoundsAndBack) {
    TMOD3D cube = started(1, 1, {4, 2, 1}, {10, 20, 30});
    cube.vis_angle_1 = 37;
    cube.vis_angle_2 = -62;
    cube.change_vis_parm();
    for (int axis = 0; axis < 3; ++axis) {
        double widest = 0;
        for (const auto& corner : cube.rotated_corners) {
            widest = std::max(widest, corner[axis]);
        }
        EXPECT_NEAR(cube.view_bounds[2 * axis], -widest, 1e-13);
        EXPECT_NEAR(cube.view_bounds[2 * axis + 1], widest, 1e-13);
    }
    TMOD3D back = cube;
    back.ant_rotate_model();
    for (int v = 0; v < cube.verts.GetSize(); ++v) {
        for (int k = 0; k < 3; ++k) {
            EXPECT_NEAR(back.verts[v].model_xyz[k], cube.verts[v].model_xyz[k], 1e-13);
        }
    }
    for (VERT3D& v : back.verts) {
        for (double& x : v.view_xyz) {
            x *= 2;
        }
    }
    back.ant_rotate_model(); // equations follow, bounds do not
    EXPECT_NEAR(back.lines[9].length, 2 * cube.lines[9].length, 1e-13);
    EXPECT_GT(std::fabs(back.polys[9].plane[3] - cube.polys[9].plane[3]), 0.4);
    EXPECT_EQ(back.wrap_radius, cube.wrap_radius);
}

TEST(View, WrapCuboidOfNothingAndOfAPoint) {
    TMOD3D model;
    const TMOD3D empty = model;
    model.model_wrap_cuboid();
    model.rotate_model();
    model.ant_rotate_model();
    model.get_body_span(0);
    EXPECT_PRED_FORMAT2(same_state, model, empty);
    set_verts(model.verts, {{7.5, 8, -9}});
    model.model_wrap_cuboid();
    model.change_vis_parm();
    EXPECT_EQ(model.wrap_radius, 0);
    EXPECT_EQ(point(model.verts[0].view_xyz), Point{});
    EXPECT_EQ(point(model.cuboid_corners[5]), (Point{7.5, 8, -9}));
    EXPECT_EQ(point(model.rotated_corners[5]), Point{});
}

TEST(View, MovedOrigin) {
    TMOD3D box = started(1, 0, {2, 4, 6}, {5, 0, 0});
    for (int corner = 0; corner < 8; ++corner) {
        EXPECT_EQ(
            point(box.cuboid_corners[corner]),
            (Point{corner & 4 ? 6.0 : 4.0, corner & 2 ? 2.0 : -2.0, corner & 1 ? 3.0 : -3.0}));
    }
    EXPECT_DOUBLE_EQ(box.wrap_radius, std::sqrt(14));
    double p[3] = {1, 0, 0};
    box.trans_model_orig(p);
    box.trans_model_orig(p); // moved twice but noted once
    EXPECT_EQ(point(box.verts[0].model_xyz), (Point{4, 2, 3}));
    EXPECT_EQ(point(box.orig), (Point{1, 0, 0}));
    EXPECT_EQ(point(box.orig_shift), (Point{1, 0, 0}));
    EXPECT_EQ(point(box.cuboid_min), (Point{2, -2, -3}));
    EXPECT_EQ(point(box.cuboid_max), (Point{4, 2, 3}));
    EXPECT_EQ(point(box.cuboid_corners[4]), (Point{4, -2, -3}));
    EXPECT_EQ(box.wrap_cuboid[0], 2);
    EXPECT_EQ(box.wrap_cuboid[1], 4);
    EXPECT_EQ(box.polys[20].plane[3], -4);
    EXPECT_EQ(point(box.bodies[0].model_min), (Point{2, -2, -3}));
    // Extents in the view come from before the move, here from coordinates that the host edited.
    BODY3D& body = box.bodies[0];
    box.verts[3].view_xyz[1] = 50;
    box.verts[4].view_xyz[1] = -60;
    box.trans_model_orig(p);
    EXPECT_EQ(body.view_min[1], -60);
    EXPECT_EQ(body.view_max[1], 50);
    EXPECT_EQ(body.view_mid[1], -5);
    EXPECT_EQ(body.view_span[1], 110);
    EXPECT_LT(box.verts[3].view_xyz[1], 10);
    box.get_body_span(0);
    EXPECT_LT(body.view_max[1], 10);
    body.verts.RemoveAll();
    body.view_max[1] = 70;
    box.get_body_span(0);
    EXPECT_EQ(body.view_max[1], 70);
}

TEST(Neighbourhood, Levels) {
    TMOD3D cube = started(1, 0);
    const auto gather = [&](int vertex, int depth) {
        cube.edit_state[0] = depth;
        cube.edit_state[4] = vertex;
        cube.set_rel_triangle_vert();
        EXPECT_EQ(cube.edit_state[7], cube.relat_list_1.GetSize());
        EXPECT_EQ(cube.edit_state[8], cube.relat_list_2.GetSize());
        EXPECT_EQ(cube.edit_state[9], cube.relat_list_3.GetSize());
        return std::pair(ints(cube.relat_list_2), ints(cube.relat_list_4));
    };
    cube.mut_weights.Add(1);
    EXPECT_EQ(gather(12, 1), std::pair(Ints{12, 1, 0, 2, 3}, Ints{0, 1, 1, 1, 1}));
    EXPECT_EQ(ints(cube.relat_list_1),
              (Ints{0, 1, 2, 3, 10, 11, 12, 15, 8, 22, 23, 14, 16, 19, 18, 20}));
    EXPECT_EQ(cube.mut_weights.GetSize(), 0);
    gather(12, 2147483647);
    EXPECT_EQ(ints(cube.relat_list_4), (Ints{0, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2, 2, 2, 3}));
    EXPECT_EQ(cube.relat_list_2[13], 13);
    EXPECT_EQ(cube.relat_list_3.GetSize(), 36);
    EXPECT_EQ(gather(12, -1), std::pair(Ints{12}, Ints{0}));
    EXPECT_EQ(gather(12, 0), std::pair(Ints{12}, Ints{0}));
    EXPECT_EQ(ints(cube.relat_list_1), (Ints{0, 1, 2, 3}));
    EXPECT_EQ(ints(cube.relat_list_3), (Ints{1, 2, 4, 6}));
}

TEST(Neighbourhood, LegalMoves) {
    TMOD3D cube = started(1, 0);
    EXPECT_TRUE(cube.legal_body_rel_side()); // nothing is gathered
    cube.edit_state[0] = 0;
    cube.edit_state[4] = 12;
    cube.set_rel_triangle_vert();
    cube.back_all_vert();
    for (const auto& [height, legal] :
         {std::pair(1.0, true), {-0.5, true}, {-3, false}, {7, true}}) {
        const double moved[3] = {0.1, 0.2, height};
        std::copy_n(moved, 3, cube.verts[12].model_xyz);
        std::copy_n(moved, 3, cube.verts[12].view_xyz);
        cube.rel_aux_parm();
        EXPECT_EQ(cube.legal_body_rel_side(), legal) << height;
        LINE3D line = cube.lines[1];
        POLY3D face = cube.polys[0];
        line.set_line_eqt(cube.verts);
        line.set_line_2d_eqt(cube.verts);
        face.set_poly_eql(cube.verts);
        face.get_rotated_poly_eql(cube.verts);
        EXPECT_PRED_FORMAT2(same_state, cube.lines[1], line);
        EXPECT_PRED_FORMAT2(same_state, cube.polys[0], face);
    }
    cube.verts[0].model_xyz[2] = 5;
    cube.back_rel_vert();
    cube.verts[0].restorvert();
    EXPECT_EQ(cube.verts[0].model_xyz[2], 1);
    EXPECT_EQ(cube.verts[12].backup_xyz[2], 7);
}

/// Each group has its body's colour, also when `out` holds another cut and the body's colour has
/// been changed since.
TEST(Section, GroupsHaveTheirBodysColour) {
    TMOD3D model = started(1, 0);
    TMOD3D added = started(1, 0, {2, 2, 2}, {5, 0, 0});
    model.add_model(added);
    const double hues[] = {0, 240};
    const double lightnesses[] = {0.25, 0.75};
    TMOD2D out;
    for (const double shift : {0.0, 60.0}) {
        for (int b = 0; b < 2; ++b) {
            model.bodies[b].hue = hues[b] + shift;
            model.bodies[b].saturation = 1 - 0.5 * b;
            model.bodies[b].lightness = lightnesses[b];
        }
        model.get_x_section(0.5, out);
        ASSERT_EQ(out.groups.GetSize(), 2);
        for (int b = 0; b < 2; ++b) {
            SCOPED_TRACE(b);
            const POLY3D_CPLX& group = out.groups[b];
            EXPECT_EQ(ints(group.polys), (Ints{b}));
            POLY3D_CPLX expected;
            expected.hue = hues[b] + shift;
            expected.saturation = 1 - 0.5 * b;
            expected.lightness = lightnesses[b];
            expected.rgb_color();
            EXPECT_EQ(group.hue, expected.hue);
            EXPECT_EQ(group.saturation, expected.saturation);
            EXPECT_EQ(group.lightness, expected.lightness);
            EXPECT_EQ(group.rgb, expected.rgb);
        }
        EXPECT_NE(out.groups[0].rgb, out.groups[1].rgb);
    }
}

/// Every call ignores numbers that are no records, anywhere in a model.
TEST(Model, NumbersOutsideTheArraysAreHarmless) {
    for (const int bad : {-1, 30, 2147483647, -2147483647 - 1}) {
        TMOD3D model = started(0, 0);
        model.lines[3].start_vert = model.lines[4].end_vert = bad;
        model.polys[5].verts[1] = model.polys[6].lines[1] = model.bodies[0].polys[7] = bad;
        model.bodies[0].verts[2] = model.bodies[0].lines[2] = model.verts[7].neighbours[0] = bad;
        model.verts[7].faces[0] = model.verts[7].lines[0] = bad;
        for (CArray<int>* list : {&model.relat_list_1, &model.relat_list_2, &model.relat_list_3}) {
            list->Add(bad);
        }
        model.back_rel_vert();
        model.rel_aux_parm();
        EXPECT_TRUE(model.legal_body_rel_side());
        model.get_body_span(bad);
        model.get_body_span(0);
        TMOD2D section;
        CArray<int> loop;
        model.get_y_section(0.3, section);
        EXPECT_FALSE(model.trace_section_poly(bad, bad, bad, loop));
        EXPECT_FALSE(model.trace_section_poly(0, bad, bad, loop));
        model.edit_state[0] = 3;
        model.edit_state[4] = 7;
        model.set_rel_triangle_vert();
        model.comput_mode_aux_parm();
        model.found_top_rel();
        EXPECT_EQ(std::count(model.bodies[0].verts.begin(), model.bodies[0].verts.end(), bad), 0);
        model.set_rel_triangle_vert();
        model.rel_aux_parm();
        model.legal_body_rel_side();
        model.edit_state[4] = bad;
        model.set_rel_triangle_vert();
        EXPECT_EQ(model.relat_list_2.GetSize() + model.relat_list_3.GetSize(), 0);
        model.change_vis_parm();
        model.inti_mode(model.orig, model.orig, 1, 2); // on a model that is not empty
        EXPECT_EQ(model.bodies.GetSize(), 1);
        model.inti_mode(model.orig, model.orig, 0, 2); // whose body then lists faces twice
        EXPECT_EQ(model.polys.GetSize(), 20);
    }
}

} // namespace
