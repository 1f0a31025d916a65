// Every operation of the exported classes, called as a host calls it: with plain arrays, arrays of
// records and open streams, through the one header. One cheap fact each shows that a call did what
// it is for; what exactly comes out is the business of the other tests.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "korvel/module/korvel.h"
#include "tests/module/host.h"
#include "tests/support/scratch.h"

namespace korvel::test {
namespace {

using IntArray = CArray<int>;
using Verts = CArray<VERT3D, VERT3D&>;
using Lines = CArray<LINE3D, LINE3D&>;
using Polys = CArray<POLY3D, POLY3D&>;

/// A cube of edge length 2 around the origin.
TMOD3D cube() {
    double centre[] = {0, 0, 0};
    double size[] = {2, 2, 2};
    TMOD3D model;
    model.inti_mode(centre, size, 1, 0);
    return model;
}

/// The unit square in the plane z = 1, as vertices in both coordinates, and as a face.
void unit_square(Verts& verts, POLY3D& face) {
    verts.SetSize(4);
    for (int i = 0; i < 4; ++i) {
        double* const p = verts[i].model_xyz;
        p[0] = i == 1 || i == 2;
        p[1] = i >= 2;
        p[2] = 1;
        std::copy_n(p, 3, verts[i].view_xyz);
        face.add_a_vert(i);
    }
}

TEST(Interface, TurnsAndSavesVertices) {
    double back[16];
    double forth[16];
    double direction[3];
    rate_xyz_matrix(30, 40, back, forth, direction);
    double p[] = {1, 2, 3};
    double q[3];
    rotate_point(forth, p, q);

    VERT3D vertex;
    std::copy_n(p, 3, vertex.model_xyz);
    vertex.backvert();
    vertex.rotate(forth);
    EXPECT_EQ(vertex.view_xyz[2], q[2]);
    double origin[] = {5, 6, 7};
    vertex.trans_uvw_org(origin);
    EXPECT_EQ(vertex.view_xyz[0], q[0] - 5);
    vertex.backtempvert();
    vertex.view_xyz[0] = 99;
    vertex.copytemvert();
    vertex.ant_rotate(back, origin);
    EXPECT_NEAR(vertex.model_xyz[1], 2, 1e-14);
    vertex.model_xyz[1] = 99;
    vertex.restorvert();
    EXPECT_EQ(vertex.model_xyz[1], 2);
}

TEST(Interface, BuildsAndQueriesFacesAndEdges) {
    Verts verts;
    Lines lines;
    POLY3D face;
    unit_square(verts, face);
    face.find_side(lines);
    ASSERT_EQ(lines.GetSize(), 4);
    face.vert_to_line(lines);
    EXPECT_TRUE(as<bool>(face.detect_line_in(3)));
    face.set_poly_eql(verts);
    EXPECT_EQ(face.plane[2], 1);
    face.get_rotated_poly_eql(verts);
    double unread[3] = {};
    face.detect_rotated_poly_vis(unread);
    EXPECT_EQ(face.state_flags & 16, 16);

    double inside[] = {0.25, 0.125, 1};
    EXPECT_TRUE(as<bool>(face.det_point_in_con_poly(inside, &verts)));
    EXPECT_TRUE(as<bool>(face.det_3dpoint_in_con_poly(inside, verts)));
    EXPECT_EQ(as<double>(face.poly_volume(verts)), 1);
    EXPECT_EQ(as<int>(face.get_uvw_near_point(verts, inside)), 0);
    for (LINE3D& edge : lines) {
        edge.set_line_eqt(verts);
        edge.set_line_2d_eqt(verts);
    }
    EXPECT_NE(lines[1].line_2d_eqt[0], 0);
    double foot[3];
    EXPECT_EQ(as<int>(face.get_uvw_near_side(verts, lines, inside, foot)), 0);
    EXPECT_EQ(foot[0], 0.25);

    int pair[] = {1, 0};
    EXPECT_EQ(as<int>(face.det_poly_include_line(pair)), -1);
    EXPECT_EQ(as<int>(face.point_range_in_poly(2)), 2);
    EXPECT_FALSE(as<bool>(face.is_composed_vert(4)));
    face.invert_poly_range();
    EXPECT_EQ(face.verts[0], 3);
    POLY3D triangle;
    for (const int edge : {0, 1, 2}) {
        triangle.add_a_line(edge);
        triangle.add_a_vert(edge);
    }
    triangle.line_to_vert(lines);
    EXPECT_EQ(triangle.verts[2], 1) << "start, third corner, end of its first edge";

    VERT3D below;
    verts.Add(below);
    below.model_xyz[0] = 0.5;
    below.model_xyz[1] = 0.5;
    below.model_xyz[2] = 3;
    verts.Add(below);
    LINE3D edge;
    edge.set_line_point(4, 5);
    edge.set_line_eqt(verts);
    EXPECT_EQ(edge.main_axis, 2);
    EXPECT_EQ(as<int>(edge.det_vert_at(4)), 5);
    face.invert_poly_range();
    EXPECT_TRUE(as<bool>(edge.detect_line_cross_poly(face, verts)));
}

TEST(Interface, ConvertsColours) {
    CMYColor colour;
    float h = 0;
    float l = 0;
    float s = 0;
    colour.RGBiToHLS(255, 0, 0, h, l, s);
    EXPECT_EQ((std::array{h, l, s}), (std::array{360.F, 0.5F, 1.F}));
    unsigned char bytes[3];
    colour.HLSToRGBi(120, 0.5F, 1, bytes[0], bytes[1], bytes[2]);
    EXPECT_EQ(bytes[1], 255);
    float channels[3];
    colour.HLSToRGBf(240, 0.5F, 1, channels[0], channels[1], channels[2]);
    EXPECT_EQ(channels[2], 1);
    colour.red = colour.green = colour.blue = 0.25F;
    colour.RGBToHLS();
    EXPECT_EQ(colour.lightness, 0.25F);
    colour.lightness = 0.75F;
    colour.HLSToRGB();
    EXPECT_EQ(colour.green, 0.75F);
    EXPECT_EQ(as<float>(colour.ToRGBf(0, 1, 120)), 1);
}

class InterfaceSections : public ScratchAsCurrent {};

TEST_F(InterfaceSections, AreFilledAndDumped) {
    Verts verts;
    Polys polys;
    polys.SetSize(1);
    unit_square(verts, polys[0]);
    polys[0].area = 7;
    POLY3D_CPLX group;
    group.polys.Add(0);
    group.cpgn_area(polys);
    EXPECT_EQ(group.area, 7);
    group.rgb_color();
    EXPECT_NE(group.rgb, 0);
    Device device;
    group.draw_a_fill_poly(0, 1, polys, verts, 100, 50, 0, 0, 1, 1, 10, &device);
    EXPECT_EQ(device.fill, static_cast<COLORREF>(group.rgb));
    EXPECT_EQ(device.corners[2].x, 110);
    EXPECT_EQ(device.fill_mode, ALTERNATE);

    TMOD2D frame;
    frame.intlmode();
    frame.set_poly_at_grow();
    EXPECT_TRUE(std::filesystem::exists("ttty"));
    frame.draw_filled_model(0, 1, 0, 0, 0, 0, 1, 1, 1, &device);
    EXPECT_EQ(device.corners.size(), 4U + 8U);

    TMOD2D read;
    read.readdate(stream_of("3  0 2  0 0  10 0  0 10  1  3 0 1 2  1  1 0").get());
    EXPECT_EQ(read.verts[2].model_xyz[2], 10);
    const Stream out = stream_of();
    read.writedate(out.get());
    EXPECT_GT(std::ftell(out.get()), 0);
}

TEST(Interface, HoldsTriples) {
    TriUtvalinst holder;
    holder.triples_2.SetSize(1);
    holder.triples_2[0].v[2] = 7;
    TriUtvalinst copy(holder);
    EXPECT_EQ(copy.triples_2[0].v[2], 7);
}

TEST(Interface, StartsModelsAndDerivesWhatTheyNeed) {
    TMOD3D ball;
    ball.inti_p20();
    EXPECT_EQ(ball.polys.GetSize(), 20);
    TMOD3D model;
    model.inti_cube();
    model.comput_mode_aux_parm();
    model.found_top_rel();
    EXPECT_NEAR(as<double>(model.get_pt_bady_v(0)), 8, 1e-12);
    EXPECT_EQ(model.bodies[0].verts.GetSize(), 14);

    model.model_wrap_cuboid();
    EXPECT_EQ(model.wrap_radius, std::sqrt(3));
    model.vis_angle_1 = 30;
    model.inti_vis_plan();
    model.rotate_model();
    EXPECT_GT(model.view_bounds[1], 1);
    model.vis_angle_1 = 0;
    model.vis_angle_2 = 0;
    model.change_vis_parm();
    EXPECT_EQ(model.view_bounds[1], 1);
    model.rotated_corners[7][0] = 99;
    model.roate_wrap_cuboid();
    EXPECT_EQ(std::fabs(model.rotated_corners[7][0]), 1);
    model.polys[0].state_flags |= 16;
    model.polys[4].state_flags |= 16;
    model.get_vis_poly();
    EXPECT_NE(model.polys[0].state_flags & 16, model.polys[4].state_flags & 16) << "top and bottom";

    model.verts[0].view_xyz[0] += 1;
    model.ant_rotate_model();
    EXPECT_NEAR(std::hypot(model.verts[0].model_xyz[0] - 1, model.verts[0].model_xyz[1] - 1), 1,
                1e-12);
    double new_origin[] = {0, 0, 5};
    model.trans_model_orig(new_origin);
    EXPECT_EQ(model.orig[2], 5);
    EXPECT_EQ(model.wrap_cuboid[5], -4);
    model.verts[0].model_xyz[2] = -3;
    model.get_body_span(0);
    EXPECT_EQ(model.bodies[0].model_max[2], -3);
    model.RemoveAll();
    EXPECT_EQ(model.orig[2], 5) << "only the arrays go";
    EXPECT_EQ(model.mode_ok, 0);
}

TEST(Interface, WritesAndReadsModels) {
    const Stream file = stream_of();
    cube().write_mode(file.get());
    std::rewind(file.get());
    TMOD3D read;
    read.read_mode(file.get());
    EXPECT_EQ(read.mode_ok, 1);
    EXPECT_EQ(read.polys.GetSize(), 24);
}

TEST(Interface, PicksInsertsAndMoves) {
    TMOD3D model = cube();
    double miss[] = {9, 9, 0};
    EXPECT_EQ(as<int>(model.get_point_xyz(miss)), 1);
    double click[] = {0.25, 0.125, 0};
    ASSERT_EQ(as<int>(model.get_point_xyz(click)), 0);
    EXPECT_GT(click[2], 0);
    EXPECT_TRUE(model.polys[model.edit_state[3]].is_composed_vert(model.edit_state[4]));
    EXPECT_TRUE(as<bool>(model.insert_point_on_poly()));
    double next_click[] = {0.5, -0.25, 0};
    ASSERT_EQ(model.get_point_xyz(next_click), 0);
    EXPECT_TRUE(as<bool>(model.insert_point_on_side()));
    EXPECT_EQ(model.verts.GetSize(), 16);
    double centre[] = {0.1, 0.2, 0.3};
    double ray[] = {1, 0.25, 0.125};
    EXPECT_EQ(as<int>(model.detect_a_point_in_body(centre, ray)), 0);

    model.edit_state[0] = 1;
    model.edit_state[4] = 7;
    model.set_rel_triangle_vert();
    EXPECT_EQ(model.relat_list_2[0], 7);
    EXPECT_EQ(model.edit_state[7], model.relat_list_1.GetSize());
    model.mut_weight();
    EXPECT_EQ(model.mut_weights[0], 1);
    model.back_rel_vert();
    double up[] = {0, 0, 0.5};
    double from[] = {0, 0, 0};
    const double depth = model.verts[7].view_xyz[2];
    model.change_mut_points(6, up, from);
    EXPECT_EQ(model.verts[7].view_xyz[2], depth + 0.5);
    EXPECT_NE(model.verts[7].model_xyz[2], -1);
    EXPECT_TRUE(as<bool>(model.legal_body_rel_side()));
    model.verts[7].restorvert();
    EXPECT_EQ(model.verts[7].model_xyz[2], -1);
    model.lines[model.relat_list_3[0]].length = 0;
    model.rel_aux_parm();
    EXPECT_GT(model.lines[model.relat_list_3[0]].length, 0);

    model.set_body_as_relat(0);
    EXPECT_EQ(model.mut_weights.GetSize(), model.polys.GetSize());
    model.set_all_body_as_relat();
    EXPECT_EQ(model.relat_list_3.GetSize(), model.lines.GetSize());
    model.back_all_vert();
    EXPECT_EQ(model.verts[0].backup_xyz[0], 1);
    model.get_body_change_dirt(0, miss);
    EXPECT_EQ(model.bodies[0].change_dirt, 1);
}

TEST(Interface, CutsModels) {
    TMOD3D model = cube();
    TMOD2D section;
    model.get_x_section(0.25, section);
    EXPECT_EQ(section.verts[0].model_xyz[1], 0.25);
    model.get_y_section(0.25, section);
    EXPECT_EQ(section.verts[0].model_xyz[0], 0.25);
    double plane[] = {0, 0, 1, -0.25};
    model.get_section(plane, section);
    ASSERT_EQ(section.groups.GetSize(), 1);
    EXPECT_EQ(section.groups[0].hue, model.bodies[0].hue);

    // The marks that the walk needs: edges across the plane z = 0.25, all faces.
    int first = -1;
    for (int i = model.lines.GetUpperBound(); i >= 0; --i) {
        LINE3D& edge = model.lines[i];
        const bool starts_above = model.verts[edge.start_vert].model_xyz[2] > 0.25;
        const bool ends_above = model.verts[edge.end_vert].model_xyz[2] > 0.25;
        edge.state_flags = starts_above == ends_above ? 0 : 16;
        first = starts_above == ends_above ? first : i;
    }
    for (POLY3D& face : model.polys) {
        face.state_flags |= 32;
    }
    IntArray loop;
    EXPECT_TRUE(as<bool>(model.trace_section_poly(0, model.lines[first].faces[0], first, loop)));
    EXPECT_EQ(loop[loop.GetUpperBound()], first);
    EXPECT_EQ(loop.GetSize(), section.polys[0].verts.GetSize());
}

TEST(Interface, MergesAndCleansModels) {
    TMOD3D model = cube();
    TMOD3D other = cube();
    model.add_model(other);
    EXPECT_EQ(model.bodies.GetSize(), 2);
    model.deletet(0);
    EXPECT_EQ(model.polys.GetSize(), 24);
    model.bodies[0].polys.RemoveAt(0);
    model.clear_no_use_ele();
    EXPECT_EQ(model.polys.GetSize(), 23);
}

// They need no context to be found; each has a test of its own that draws.
TEST(Interface, OffersDrawingWithOpenGL) {
    void (TMOD3D::*volatile model_drawing)() = nullptr;
    for (void (TMOD3D::*const drawing)() :
         {&TMOD3D::gl_draw_mbody, &TMOD3D::gl_draw_orig_mbody, &TMOD3D::gl_draw_all_poly,
          &TMOD3D::gl_draw_cuboid_line, &TMOD3D::gl_draw_cuboid_plan, &TMOD3D::gl_draw_sel_vert,
          &TMOD3D::gl_draw_body_outlook}) {
        model_drawing = drawing;
        EXPECT_TRUE(model_drawing != nullptr);
    }
    void (POLY3D::*volatile face_drawing)(Verts*) = &POLY3D::gl_draw_poly;
    EXPECT_TRUE(face_drawing != nullptr);
    face_drawing = &POLY3D::gl_draw_orig_poly;
    EXPECT_TRUE(face_drawing != nullptr);
}

} // namespace
} // namespace korvel::test
