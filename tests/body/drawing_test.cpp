// Drawing, call by call and number by number.

#include <cmath>

#include <gtest/gtest.h>

#include "korvel/body/edit/edit_state.h"
#include "korvel/geometry/cmycolor.h"
#include "korvel/platform/opengl.h"
#include "tests/support/gl_recorder.h"
#include "tests/support/models.h"

using namespace korvel::test;

namespace {

GlCall call(const char* name, const double* numbers) {
    return {name, {numbers, numbers + 3}};
}

/// Red, green and blue of a face with a given third coefficient of its turned plane.
std::vector<double> face_colour(const BODY3D& body, double turn) {
    const double exact = turn * double(0.6F) + double(0.2F);
    float rgb[3];
    CMYColor().HLSToRGBf(float(body.hue), std::max(float(exact), 0.0F), float(body.saturation),
                         rgb[0], rgb[1], rgb[2]);
    return {rgb[0], rgb[1], rgb[2]};
}

/// Two bodies of different colours that share face 0, seen from where some faces turn away.
TMOD3D two_colours() {
    TMOD3D model = model_of(two_tetrahedra);
    model.bodies[0].hue = 0;
    model.bodies[0].alpha = 0.25;
    model.bodies[1].saturation = 0.75;
    model.vis_angle_1 = 40;
    model.vis_angle_2 = 65;
    model.change_vis_parm();
    return model;
}

/// What fills the faces of each body, by coordinates of the view and of the model.
struct Filled {
    GlCalls in_view;
    GlCalls in_model;
};

Filled filled_faces(const TMOD3D& model) {
    Filled filled;
    auto& [in_view, in_model] = filled;
    for (const BODY3D& body : model.bodies) {
        for (const int f : body.polys) {
            const POLY3D& face = model.polys[f];
            std::vector<double> colour = face_colour(body, face.rotated_plane[2]);
            in_model.push_back({"begin", {GL_POLYGON}});
            in_model.push_back({"colour 3f", colour});
            in_model.push_back(call("normal", face.rotated_plane));
            in_view.push_back({"begin", {GL_POLYGON}});
            colour.push_back(body.alpha);
            in_view.push_back({"colour 4f", colour});
            for (const int v : face.verts) {
                in_view.push_back(call("vertex of", model.verts[v].view_xyz));
                in_model.push_back(call("vertex of", model.verts[v].model_xyz));
            }
            in_view.push_back({"end", {}});
            in_model.push_back({"end", {}});
        }
    }
    return filled;
}

TEST(Drawing, FillsTheFacesOfEachBody) {
    TMOD3D model = two_colours();
    const auto [in_view, in_model] = filled_faces(model);
    ASSERT_EQ(in_view.size(), 8u * 6); // the shared face twice

    model.gl_draw_mbody();
    EXPECT_EQ(take_gl_calls(), in_view);
    model.gl_draw_orig_mbody();
    EXPECT_EQ(take_gl_calls(), in_model);

    model.gl_draw_all_poly(); // no primitive and no colour of its own
    GlCalls vertices;
    for (const POLY3D& face : model.polys) {
        for (const int v : face.verts) {
            vertices.push_back(call("vertex of", model.verts[v].model_xyz));
        }
    }
    EXPECT_EQ(take_gl_calls(), vertices);
}

TEST(Drawing, LightensWhatFacesTheViewer) {
    TMOD3D model = model_of(two_tetrahedra);
    model.bodies.SetSize(1);
    model.bodies[0].polys.SetSize(1);
    const auto colour_at = [&](double turn) {
        model.polys[model.bodies[0].polys[0]].rotated_plane[2] = turn;
        model.gl_draw_mbody();
        return take_gl_calls()[1].numbers;
    };
    const auto expect_rgb = [&](double turn, double r, double g, double b) {
        const std::vector<double> colour = colour_at(turn);
        EXPECT_NEAR(colour[0], r, 1e-6);
        EXPECT_NEAR(colour[1], g, 1e-6);
        EXPECT_NEAR(colour[2], b, 1e-6);
        EXPECT_EQ(colour[3], 1.0);
    };
    expect_rgb(1, 0.7 + 0.2 * 2 / 3, 0.9, 0.7); // lightness 0.8
    expect_rgb(0, 0.1 + 0.2 * 2 / 3, 0.3, 0.1); // 0.2
    expect_rgb(-1.0 / 3 - 1e-6, 0, 0, 0);
    expect_rgb(-1, 0, 0, 0);
    expect_rgb(2, 1.6 - 0.4 * 2 / 3, 1.2, 1.6); // above 1 nothing clamps

    // In single precision throughout, some of these would come out one step off.
    int differ = 0;
    for (int i = 0; i <= 1000; ++i) {
        const double turn = i / 1000.0;
        std::vector<double> expected = face_colour(model.bodies[0], turn);
        expected.push_back(1.0);
        EXPECT_EQ(colour_at(turn), expected) << turn;
        const float in_single = float(turn) * 0.6F + 0.2F;
        differ += in_single == float(turn * double(0.6F) + double(0.2F)) ? 0 : 1;
    }
    EXPECT_GT(differ, 10);

    model.bodies[0].lightness = 0.9;
    expect_rgb(1, 0.7 + 0.2 * 2 / 3, 0.9, 0.7); // not used
}

TEST(Drawing, LinesThatLieInFront) {
    TMOD3D model = two_colours();
    const double lift = (model.view_bounds[5] - model.view_bounds[4]) * 0.005;
    GlCalls expected{{"begin", {GL_LINES}}, {"colour 3d", {1, 1, 1}}};
    for (const LINE3D& line : model.lines) {
        for (const int v : {line.start_vert, line.end_vert}) {
            const double* const at = model.verts[v].view_xyz;
            expected.push_back({"vertex", {at[0], at[1], at[2] + lift}});
        }
    }
    expected.push_back({"end", {}});
    model.gl_draw_body_outlook();
    EXPECT_EQ(take_gl_calls(), expected);

    expected.clear();
    const auto add = [&](GLenum primitive, const Ints& corners) {
        expected.push_back({"begin", {double(primitive)}});
        expected.push_back({"colour 3d", {0, 0, 0}});
        for (const int corner : corners) {
            expected.push_back(call("vertex of", model.rotated_corners[corner]));
        }
        expected.push_back({"end", {}});
    };
    add(GL_LINE_LOOP, {0, 4, 5, 1});
    add(GL_LINE_LOOP, {2, 6, 7, 3});
    add(GL_LINES, {0, 2, 4, 6, 5, 7, 1, 3});
    model.gl_draw_cuboid_line();
    EXPECT_EQ(take_gl_calls(), expected);

    model.gl_draw_cuboid_plan();
    EXPECT_EQ(take_gl_calls(), GlCalls());
}

TEST(Drawing, PointsAsManyAsCounted) {
    TMOD3D model = starter(0, 0);
    model.set_all_body_as_relat();
    ASSERT_EQ(model.relat_list_2.GetSize(), 12);
    model.edit_state[korvel::edit_gathered_vertices] = 3;
    GlCalls expected{{"point size", {5}}, {"begin", {GL_POINTS}}, {"colour 3d", {1, 1, 0}}};
    for (int i = 0; i < 3; ++i) {
        expected.push_back(call("vertex of", model.verts[model.relat_list_2[i]].view_xyz));
    }
    expected.push_back({"end", {}});
    model.gl_draw_sel_vert();
    EXPECT_EQ(take_gl_calls(), expected);

    for (const int none : {0, -1}) {
        model.edit_state[korvel::edit_gathered_vertices] = none;
        model.gl_draw_sel_vert();
        EXPECT_EQ(take_gl_calls(), GlCalls());
    }
}

TEST(Drawing, SkipsWhatCannotBeDrawn) {
    TMOD3D empty;
    empty.gl_draw_mbody();
    empty.gl_draw_orig_mbody();
    empty.gl_draw_all_poly();
    empty.gl_draw_sel_vert();
    empty.gl_draw_body_outlook();
    EXPECT_EQ(take_gl_calls(), GlCalls());
    empty.gl_draw_cuboid_line(); // from whatever the corners hold
    EXPECT_EQ(take_gl_calls().size(), 3u * 3 + 16);

    TMOD3D model = starter(0, 0);
    model.set_all_body_as_relat();
    model.edit_state[korvel::edit_gathered_vertices] = model.relat_list_2.GetSize();
    const auto all_calls = [&] {
        model.gl_draw_mbody();
        model.gl_draw_orig_mbody();
        model.gl_draw_all_poly();
        model.gl_draw_sel_vert();
        model.gl_draw_body_outlook();
        return take_gl_calls().size();
    };
    const std::size_t sound = all_calls();
    model.polys[3].verts[1] = 12;
    model.bodies[0].polys[19] = -1;
    model.lines[0].end_vert = 99;
    model.relat_list_2[0] = -7;
    model.edit_state[korvel::edit_gathered_vertices] = 1000;
    // Three times a vertex, a face of 6 and of 7 calls, an edge, a point.
    EXPECT_EQ(sound - all_calls(), 3u + 6 + 7 + 2 + 1);
}

// [window]
/// Side of a pixel in view coordinates, when the whole model fits into a window.
double pixel_side(const TMOD3D& model, int width, int height) {
    const double* const b = model.view_bounds; // least and greatest u, v and w
    return std::max((b[1] - b[0]) / width, (b[3] - b[2]) / height);
}

/// Draws a model whose view is current into a window whose context is current.
void draw_in_window(TMOD3D& model, int width, int height) {
    const double unit = pixel_side(model, width, height);
    const double u = unit * width / 2; // the origin of the view is the middle of its bounds
    const double v = unit * height / 2;
    const double nearest = model.view_bounds[5];
    const double farthest = model.view_bounds[4];
    const double room = 0.02 * (nearest - farthest) + unit; // edges are drawn in front of faces

    glViewport(0, 0, width, height);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LESS);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(-u, u, -v, v, -(nearest + room), -(farthest - room));
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    model.gl_draw_mbody();
    model.gl_draw_body_outlook();
}

/// Picks what is under pixel x, y, counted from the upper left corner.
bool pick_in_window(TMOD3D& model, int width, int height, int x, int y) {
    const double unit = pixel_side(model, width, height);
    double click[3] = {(x + 0.5 - width * 0.5) * unit, (height * 0.5 - y - 0.5) * unit, 0};
    return model.get_point_xyz(click) == 0;
}
// [window]

TEST(Drawing, FillsAWindowWhoseClicksPickWhatIsSeen) {
    constexpr int width = 400;
    constexpr int height = 300;
    TMOD3D ball = starter(0, 2);
    draw_in_window(ball, width, height);
    const GlCalls calls = take_gl_calls();
    EXPECT_EQ(calls[0], (GlCall{"viewport", {0, 0, width, height}}));
    EXPECT_EQ(calls[6].name, "ortho");
    const std::vector<double>& seen = calls[6].numbers;
    for (int v = 0; v < ball.verts.GetSize(); ++v) {
        const double* const at = ball.verts[v].view_xyz;
        EXPECT_TRUE(at[0] >= seen[0] && at[0] <= seen[1] && at[1] >= seen[2] && at[1] <= seen[3] &&
                    -at[2] > seen[4] && -at[2] < seen[5])
            << "vertex " << v;
        const int x = static_cast<int>((at[0] - seen[0]) / (seen[1] - seen[0]) * width);
        const int y = static_cast<int>((seen[3] - at[1]) / (seen[3] - seen[2]) * height);
        if (at[2] > 0.5) {
            EXPECT_TRUE(pick_in_window(ball, width, height, x, y));
            EXPECT_EQ(ball.edit_state[korvel::edit_picked_vertex], v);
        }
    }
    EXPECT_FALSE(pick_in_window(ball, width, height, 0, 0));
}

} // namespace
