#include "kit/pictures/model_picture.h"

#include <GL/gl.h>

#include <cmath>

#include "kit/solids/exact.h"

namespace korvel::kit {
namespace {

struct GlColour {
    double red;
    double green;
    double blue;
};

constexpr GlColour black = {0, 0, 0};
constexpr GlColour white = {1, 1, 1};
constexpr GlColour yellow = {1, 0.9, 0};
constexpr GlColour red = {0.9, 0, 0};
constexpr GlColour blue = {0, 0.2, 1};

void fill_face(const TMOD3D& model, int face, const GlColour& colour);
void draw_edge(const TMOD3D& model, const LINE3D& edge, const GlColour& colour);
void draw_dot(double u, double v, double w, double radius, const GlColour& colour);

} // namespace

// The library lifts the edges off the faces, but not the box. Lying on faces it would come out
// torn, so it gets a range of depths in front of theirs.
void draw_model(const TMOD3D& shown, bool with_edges, bool with_box) {
    constexpr double lift = 0.01;
    TMOD3D& model = operand(shown);
    glDepthRange(lift, 1);
    model.gl_draw_mbody();
    if (with_edges) {
        model.gl_draw_body_outlook();
    }
    if (with_box) {
        glDepthRange(0, 1 - lift);
        model.gl_draw_cuboid_line();
        glDepthRange(lift, 1);
    }
}

void draw_pick(const TMOD3D& model, const Pick& pick, const ViewFrame& frame) {
    // The marks leave a part of the face visible.
    const double pixels = 3 * frame.line_width();
    const double rim = frame.line_width();
    glDepthFunc(GL_LEQUAL); // the face lies exactly where it was drawn before
    fill_face(model, pick.face, yellow);
    glDisable(GL_DEPTH_TEST);
    glLineWidth(static_cast<float>(pixels));
    draw_edge(model, model.lines[pick.edge], red);
    const double* const vertex = model.verts[pick.vertex].view_xyz;
    draw_dot(vertex[0], vertex[1], vertex[2], (2 * pixels + rim) * frame.unit, black);
    draw_dot(vertex[0], vertex[1], vertex[2], 2 * pixels * frame.unit, blue);
    draw_dot(pick.u, pick.v, pick.depth, (pixels + rim) * frame.unit, black);
    draw_dot(pick.u, pick.v, pick.depth, pixels * frame.unit, white);
}

namespace {

void fill_face(const TMOD3D& model, int face, const GlColour& colour) {
    glBegin(GL_POLYGON);
    glColor3d(colour.red, colour.green, colour.blue);
    operand(model).polys[face].gl_draw_poly(&operand(model).verts);
    glEnd();
}

void draw_edge(const TMOD3D& model, const LINE3D& edge, const GlColour& colour) {
    glBegin(GL_LINES);
    glColor3d(colour.red, colour.green, colour.blue);
    glVertex3dv(model.verts[edge.start_vert].view_xyz);
    glVertex3dv(model.verts[edge.end_vert].view_xyz);
    glEnd();
}

void draw_dot(double u, double v, double w, double radius, const GlColour& colour) {
    constexpr int corners = 32;
    constexpr double full_turn = 6.283185307179586;
    glBegin(GL_POLYGON);
    glColor3d(colour.red, colour.green, colour.blue);
    for (int i = 0; i < corners; ++i) {
        const double angle = full_turn * i / corners;
        glVertex3d(u + radius * std::cos(angle), v + radius * std::sin(angle), w);
    }
    glEnd();
}

} // namespace
} // namespace korvel::kit
