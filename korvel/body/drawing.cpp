// A model drawn in immediate mode into the host's current OpenGL context.

#include <algorithm>

#include "korvel/base/indices.h"
#include "korvel/body/edit/edit_state.h"
#include "korvel/body/tmod3d.h"
#include "korvel/geometry/cmycolor.h"
#include "korvel/platform/opengl.h"

using korvel::has_element;

namespace {

struct FaceColour {
    float r;
    float g;
    float b;
};

FaceColour face_colour(const BODY3D& body, const POLY3D& face);
void draw_corners(TMOD3D& model, GLenum primitive, std::initializer_list<int> corners);

/// Calls `draw(body, face)` for the faces of each body; a shared face once for each of its bodies.
template <class Draw>
void for_each_body_face(TMOD3D& model, Draw draw) {
    for (const BODY3D& body : model.bodies) {
        for (const int face : body.polys) {
            if (has_element(model.polys, face)) {
                draw(body, model.polys[face]);
            }
        }
    }
}

} // namespace

void TMOD3D::gl_draw_mbody() {
    for_each_body_face(*this, [&](const BODY3D& body, POLY3D& face) {
        const FaceColour colour = face_colour(body, face);
        glBegin(GL_POLYGON);
        glColor4f(colour.r, colour.g, colour.b, static_cast<float>(body.alpha));
        face.gl_draw_poly(&verts);
        glEnd();
    });
}

void TMOD3D::gl_draw_orig_mbody() {
    for_each_body_face(*this, [&](const BODY3D& body, POLY3D& face) {
        const FaceColour colour = face_colour(body, face);
        glBegin(GL_POLYGON);
        glColor3f(colour.r, colour.g, colour.b);
        glNormal3dv(face.rotated_plane); // in view coordinates, unlike the vertices
        face.gl_draw_orig_poly(&verts);
        glEnd();
    });
}

void TMOD3D::gl_draw_all_poly() {
    for (POLY3D& face : polys) {
        face.gl_draw_orig_poly(&verts);
    }
}

void TMOD3D::gl_draw_cuboid_line() {
    draw_corners(*this, GL_LINE_LOOP, {0, 4, 5, 1});
    draw_corners(*this, GL_LINE_LOOP, {2, 6, 7, 3});
    draw_corners(*this, GL_LINES, {0, 2, 4, 6, 5, 7, 1, 3});
}

void TMOD3D::gl_draw_cuboid_plan() {}

void TMOD3D::gl_draw_sel_vert() {
    // The number in `edit_state` limits what is drawn, also when the list is longer.
    const int count = edit_state[korvel::edit_gathered_vertices];
    if (count <= 0) {
        return;
    }
    glPointSize(5.0);
    glBegin(GL_POINTS);
    glColor3d(1.0, 1.0, 0.0);
    for (int i = 0; i < std::min(count, korvel::size_of(relat_list_2)); ++i) {
        if (has_element(verts, relat_list_2[i])) {
            glVertex3dv(verts[relat_list_2[i]].view_xyz);
        }
    }
    glEnd();
}

void TMOD3D::gl_draw_body_outlook() {
    if (lines.IsEmpty()) {
        return;
    }
    const double lift = (view_bounds[5] - view_bounds[4]) * 0.005; // in front of the filled faces
    glBegin(GL_LINES);
    glColor3d(1.0, 1.0, 1.0);
    for (const LINE3D& line : lines) {
        if (has_element(verts, line.start_vert) && has_element(verts, line.end_vert)) {
            for (const int end : {line.start_vert, line.end_vert}) {
                const double* const at = verts[end].view_xyz;
                glVertex3d(at[0], at[1], at[2] + lift);
            }
        }
    }
    glEnd();
}

namespace {

/// The body's hue and saturation, with a lightness that follows the angle between face and viewer.
/// The body's own lightness is not used.
FaceColour face_colour(const BODY3D& body, const POLY3D& face) {
    constexpr float per_turn = 0.6F;
    constexpr float edge_on = 0.2F;
    // In double from the two single constants, then rounded; there is no upper clamp.
    auto lightness = static_cast<float>(face.rotated_plane[2] * per_turn + edge_on);
    if (lightness < 0) {
        lightness = 0;
    }
    FaceColour colour{};
    CMYColor().HLSToRGBf(static_cast<float>(body.hue), lightness,
                         static_cast<float>(body.saturation), colour.r, colour.g, colour.b);
    return colour;
}

void draw_corners(TMOD3D& model, GLenum primitive, std::initializer_list<int> corners) {
    glBegin(primitive);
    glColor3d(0, 0, 0);
    for (const int corner : corners) {
        glVertex3dv(model.rotated_corners[corner]);
    }
    glEnd();
}

} // namespace
