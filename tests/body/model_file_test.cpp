// The body model file, and copies of models.

#include <algorithm>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/model_state.h"

using namespace korvel::test;

namespace {

const std::string tetrahedron = "4 0 0 0 1 0 0 0 1 0 0 0 1 4 0 1 2 0 1 3 1 2 3 2 0 3 ";

TEST(ModelFile, WrittenBytes) {
    TMOD3D model;
    EXPECT_EQ(file_of(model), "0\n");
    set_verts(model.verts, {{0, 0, 0}, {-0.5, 0, 1e7}});
    model.orig[0] = 10;
    std::string text = "2\n10.000000 0.000000 0.000000 \n9.500000 0.000000 10000000.000000 \n";
    EXPECT_EQ(file_of(model), text + "0\n");
    for (const auto& corners : {std::initializer_list<int>{0, 1, 1, -7}, {5}, {}}) {
        POLY3D face = face_of(corners);
        model.polys.Add(face);
    }
    text += "3\n0 1 1 -7 \n5 \n\n";
    EXPECT_EQ(file_of(model), text + "0\n");
    const std::string twenty = "3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 3 \n";
    text += "4\n";
    for (const auto& [count, lines] : {std::pair<int, std::string>(0, "\n"),
                                       {2, "3 3 \n"},
                                       {20, twenty + "\n"},
                                       {41, twenty + twenty + "3 \n"}}) {
        BODY3D body;
        body.param_1 = 1.25;
        body.param_2 = -2;
        for (int i = 0; i < count; ++i) {
            body.polys.Add(3);
        }
        model.bodies.Add(body);
        text += std::to_string(count) + "\n1.250000 -2.000000 0.000000\n" + lines;
    }
    EXPECT_EQ(file_of(model), text);
}

TEST(ModelFile, ReadsEverythingAndNothingMore) {
    TMOD3D model;
    model.orig[0] = 10; // neither read nor subtracted
    EXPECT_EQ(
        read_file(model, tetrahedron + "3\n4 1 2.5 -3\n0 1\n2 3 0 7 7 0.1 2 0 0 0 3 1 9 more"),
        " 9 more");
    const CArray<BODY3D, BODY3D&>& bodies = model.bodies;
    EXPECT_EQ(model.mode_ok, 1);
    EXPECT_EQ(point(model.orig), (Point{10, 0, 0}));
    EXPECT_EQ(point(model.verts[1].model_xyz), (Point{1, 0, 0}));
    EXPECT_EQ(ints(model.verts[3].faces), (Ints{1, 2, 3}));
    EXPECT_EQ(model.lines.GetSize(), 6);
    EXPECT_DOUBLE_EQ(model.wrap_radius, std::sqrt(0.75));
    EXPECT_EQ(bodies[0].param_2, 2.5);
    EXPECT_EQ(bodies[0].param_3, -3);
    EXPECT_DOUBLE_EQ(bodies[0].volume, 1.0 / 6);
    EXPECT_EQ(bodies[1].volume, 0);
    EXPECT_EQ(bodies[1].param_3, static_cast<double>(0.1F)) << "single precision";
    EXPECT_EQ(ints(bodies[2].neighbour_bodies), (Ints{0}));
    EXPECT_NE(model.verts[3].view_xyz[2], 0);
}

TEST(ModelFile, DerivesNothingFromIncompleteModels) {
    struct Left {
        int verts;
        int polys;
        int bodies;
    };
    const std::pair<std::string, Left> cases[] = {
        {"", {0, 0, 0}},
        {"0 1 2 3", {0, 0, 0}},
        {"-4 1 2 3", {0, 0, 0}},
        {"2 1 2 x 4", {1, 0, 0}},
        {"2147483647 1 2 3 4 5 6", {2, 0, 0}},
        {"1 1 2 3 0 5", {0, 0, 0}},
        {"1 1 2 3 -1 5", {0, 0, 0}},
        {"1 1 2 3", {1, 0, 0}},
        {"1 1 2 3 1 0 0 0 0 5", {0, 0, 0}},
        {"1 1 2 3 2 0 0 0 0", {1, 2, 0}},
        {"1 1 2 3 2147483647 0 0 0", {1, 1, 0}},
        {"1 1 2 3 1 0 0 0 2 1 0 0", {1, 1, 1}},
        {"1 1 2 3 1 0 0 0 2 1 0 0 0 0", {1, 1, 1}},
        {"1 1 2 3 1 0 0 0 1 2147483647 0 0 0 0 0 0", {1, 1, 1}},
        {"1 1 2 3 1 0 0 1 1 1 0 0 0 0", {1, 1, 1}}, // no such vertex
        {"1 1 2 3 1 0 -1 0 1 1 0 0 0 0", {1, 1, 1}},
        {"1 1 2 3 1 0 0 0 1 2 0 0 0 0 1", {1, 1, 1}}, // no such face
        {"1 1 2 3 1 0 0 0 1 1 0 0 0 -2147483648", {1, 1, 1}},
    };
    for (const auto& [file, left] : cases) {
        TMOD3D model;
        model.mode_ok = 1;
        read_file(model, file);
        EXPECT_EQ(model.verts.GetSize(), left.verts) << file;
        EXPECT_EQ(model.polys.GetSize(), left.polys) << file;
        EXPECT_EQ(model.bodies.GetSize(), left.bodies) << file;
        EXPECT_EQ(model.mode_ok, 0) << file;
        EXPECT_EQ(model.lines.GetSize(), 0) << file;
        EXPECT_EQ(model.wrap_radius, 1000) << file;
    }
}

TEST(ModelFile, CountsBelowOneEmptyAFilledModel) {
    struct Case {
        std::string file;
        int verts;
        int polys;
    };
    for (const Case& c : {Case{"0 5", 4, 4},
                          {"1 7 7 7 0 5", 0, 4},
                          {"1 7 7 7 -1", 0, 4},
                          {"5 7 7 7 8 8 8 9 9 9 6 6 6 5 5 5 0", 0, 4},
                          {"1 7 7 7 1 0 0 0 0", 0, 0}}) {
        SCOPED_TRACE(c.file);
        TMOD3D model;
        read_file(model, tetrahedron + "1 4 0 0 0 0 1 2 3");
        read_file(model, c.file);
        EXPECT_EQ(model.verts.GetSize(), c.verts);
        EXPECT_EQ(model.polys.GetSize(), c.polys);
        EXPECT_EQ(model.lines.GetSize(), 6);
        EXPECT_EQ(model.bodies.GetSize(), 1);
        EXPECT_EQ(model.mode_ok, 0);
        if (c.verts > 0) {
            EXPECT_EQ(point(model.verts[1].model_xyz), (Point{1, 0, 0}));
        }
    }
}

TEST(ModelFile, NoStreamLeavesTheModelEmpty) {
    TMOD3D model;
    model.write_mode(nullptr);
    model.read_mode(nullptr);
    EXPECT_EQ(model.verts.GetSize(), 0);
    EXPECT_EQ(model.mode_ok, 0);
}

TEST(ModelFile, FourthCornerShiftsTheRest) {
    TMOD3D model;
    model.verts.SetSize(4);
    model.bodies.SetSize(1);
    model.bodies[0].param_1 = 0.5;
    for (POLY3D face : {face_of({0, 1, 2, 3}), face_of({0, 2, 1})}) {
        model.polys.Add(face);
    }
    TMOD3D back;
    EXPECT_EQ(read_file(back, file_of(model)), ".000000\n\n");
    EXPECT_TRUE(back.polys[1].is_composed_vert(3));
    EXPECT_FALSE(back.polys[1].is_composed_vert(1));
    EXPECT_EQ(back.bodies[0].param_2, 0.5);
}

/// The vertices of the faces, each from its smallest one on.
std::vector<Ints> face_cycles(const TMOD3D& model) {
    std::vector<Ints> cycles;
    for (const POLY3D& face : model.polys) {
        Ints& cycle = cycles.emplace_back(ints(face.verts));
        std::rotate(cycle.begin(), std::min_element(cycle.begin(), cycle.end()), cycle.end());
    }
    return cycles;
}

TEST(ModelFile, ComesBackAsWritten) {
    TMOD3D models[4];
    double centre[3] = {-3, 0.5, 100};
    double size[3] = {3, 7, 0.25};
    models[0].inti_mode(centre, size, 1, 0);
    models[1].inti_mode(centre, size, 1, 2);
    models[2].inti_mode(centre, size, 0, 2);
    read_file(models[3], tetrahedron + "3 4 0 0 0 0 1 2 3 2 1 2 3 3 2 0 0 0 0");
    for (TMOD3D& model : models) {
        TMOD3D back;
        EXPECT_EQ(read_file(back, file_of(model)).find_first_not_of(" \n"), std::string::npos);
        EXPECT_EQ(face_cycles(back), face_cycles(model));
        EXPECT_EQ(back.lines.GetSize(), model.lines.GetSize());
        ASSERT_EQ(back.bodies.GetSize(), model.bodies.GetSize());
        for (int b = 0; b < model.bodies.GetSize(); ++b) {
            EXPECT_EQ(ints(back.bodies[b].polys), ints(model.bodies[b].polys));
            EXPECT_NEAR(back.bodies[b].volume, model.bodies[b].volume, 5e-4);
        }
    }
}

TEST(Model, Start) {
    const TMOD3D model;
    EXPECT_EQ(model.wrap_radius, 1000);
    EXPECT_EQ(model.view_scale, 1);
    EXPECT_EQ(model.vis_angle_1, 5);
    EXPECT_EQ(model.vis_angle_2, 5);
    EXPECT_EQ(model.mode_ok, 0);
    EXPECT_EQ(Ints(model.edit_state, model.edit_state + 11),
              (Ints{0, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(point(model.orig), Point{});
    EXPECT_NEAR(model.view_dir[0], -0.0076, 5e-5);
    EXPECT_NEAR(model.view_dir[1], 0.0868, 5e-5);
    EXPECT_NEAR(model.view_dir[2], 0.9962, 5e-5);
    const BODY3D body_at_start;
    EXPECT_EQ(body_at_start.hue, 80);
    EXPECT_EQ(body_at_start.saturation, 0.5);
    EXPECT_EQ(body_at_start.lightness, 0.5);
    EXPECT_EQ(body_at_start.alpha, 1);
    EXPECT_EQ(body_at_start.volume, 0);
    EXPECT_EQ(body_at_start.body_flags, 0);
    EXPECT_EQ(body_at_start.change_dirt, 0);
}

/// A model in which no member has the value that it starts with.
TMOD3D filled_model() {
    TMOD3D model;
    read_file(model, tetrahedron + "2 4 1 2 3 0 1 2 3 4 4 5 6 0 1 2 3");
    int next = 10;
    const auto fill = [&](auto&... members) {
        const auto fill_one = [&](auto& member) {
            if constexpr (requires { std::begin(member); }) {
                for (auto& element : member) {
                    element = next++;
                }
            } else {
                member = next++;
            }
        };
        (fill_one(members), ...);
    };
    BODY3D& body = model.bodies[0];
    model.change_vis_parm();
    model.get_body_span(0);
    fill(body.body_flags, body.hue, body.saturation, body.lightness, body.alpha, body.view_mid,
         body.change_dirt);
    fill(model.orig_shift, model.model_frame, model.view_scale, model.pick_data, model.edit_state,
         model.orig, model.tail_data);
    VERT3D& vertex = model.verts[1];
    fill(vertex.backup_xyz, vertex.temp_view_xyz, vertex.spare_int_1, vertex.spare_int_2,
         vertex.spare_int_3, model.polys[1].area);
    set_ints(model.relat_list_1, {1});
    set_ints(model.relat_list_2, {2, 3});
    set_ints(model.relat_list_3, {4});
    set_ints(model.relat_list_4, {5});
    model.mut_weights.Add(0.25);
    model.sect_model_1.intlmode();
    model.sect_model_2.verts.SetSize(2);
    return model;
}

TEST(Model, CopiesShareNothing) {
    TMOD3D model = filled_model();
    TMOD3D constructed(model);
    TMOD3D assigned;
    read_file(assigned, tetrahedron + "2 1 0 0 0 1 1 0 0 0 2");
    assigned = model;
    assigned = std::as_const(assigned);
    EXPECT_PRED_FORMAT2(same_state, constructed, model);
    EXPECT_PRED_FORMAT2(same_state, assigned, model);
    const POLY3D face = model.polys[0];
    for (VERT3D& v : model.verts) {
        v.RemoveAll();
        EXPECT_EQ(v.faces.GetSize() + v.lines.GetSize() + v.neighbours.GetSize(), 0);
    }
    model.polys[0].invert_poly_range();
    for (const TMOD3D* copy : {&constructed, &assigned}) {
        EXPECT_EQ(copy->verts[0].faces.GetSize(), 3);
        EXPECT_PRED_FORMAT2(same_state, copy->polys[0], face);
    }
}

TEST(Model, RemoveAllLeavesViewBoundsAndOrigin) {
    TMOD3D model = filled_model();
    TMOD3D copy(model);
    model.RemoveAll();
    copy.Copy(model);
    EXPECT_PRED_FORMAT2(same_state, copy, model);
    EXPECT_EQ(model.verts.GetSize(), 0);
    EXPECT_EQ(model.lines.GetSize(), 0);
    EXPECT_EQ(model.polys.GetSize(), 0);
    EXPECT_EQ(model.bodies.GetSize(), 0);
    EXPECT_EQ(model.sect_model_1.verts.GetSize(), 0);
    EXPECT_EQ(model.mode_ok, 0);
    EXPECT_EQ(model.relat_list_2.GetSize(), 0);
    EXPECT_EQ(model.mut_weights.GetSize(), 0);
    EXPECT_EQ(point(model.orig), point(filled_model().orig));
    EXPECT_EQ(model.wrap_radius, filled_model().wrap_radius);
}

} // namespace
