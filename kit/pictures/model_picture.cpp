#include "kit/pictures/model_picture.h"

#include <GL/gl.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "kit/base/rectangle.h"
#include "kit/pictures/face_colour.h"
#include "kit/solids/exact.h"

namespace korvel::kit {
namespace {

struct GlColour {
    double red;
    double green;
    double blue;
};

constexpr GlColour black = {0, 0, 0};
constexpr GlColour dark = {0.12, 0.12, 0.14};
constexpr GlColour white = {1, 1, 1};
constexpr GlColour yellow = {1, 0.9, 0};
constexpr GlColour red = {0.9, 0, 0};
constexpr GlColour blue = {0, 0.2, 1};

/// Triangles on their way to OpenGL, many with one call: a call for each corner takes several times
/// as long as painting.
class TrianglePainter {
public:
    TrianglePainter();
    ~TrianglePainter();
    TrianglePainter(const TrianglePainter&) = delete;
    TrianglePainter& operator=(const TrianglePainter&) = delete;

    void add(const TMOD3D& model, const POLY3D& face, const std::array<float, 4>& colour);

private:
    void paint();

    static constexpr std::size_t most = 3U << 12U; // corners
    std::vector<std::array<float, 7>> corners_;    // place and colour of each
};

void draw_faces(const TMOD3D& model);
std::vector<double> outline_strengths(const TMOD3D& model, double pixel);
bool is_hatching(const TMOD3D& model, const LINE3D& edge, double pixel);
void fill_face(const TMOD3D& model, int face, const GlColour& colour);
void draw_edge(const TMOD3D& model, const LINE3D& edge, const GlColour& colour);
void add_edge(const TMOD3D& model, const LINE3D& edge, double lift);
void draw_dot(double u, double v, double w, double radius, const GlColour& colour);

} // namespace

// The library lifts the edges off the faces, but not the box. Lying on faces it would come out
// torn, so it gets a range of depths in front of theirs.
void draw_model(const TMOD3D& shown, bool with_edges, bool with_box) {
    constexpr double lift = 0.01;
    TMOD3D& model = operand(shown);
    glDepthRange(lift, 1);
    draw_faces(model);
    if (with_edges) {
        model.gl_draw_body_outlook();
    }
    if (with_box) {
        glDepthRange(0, 1 - lift);
        model.gl_draw_cuboid_line();
        glDepthRange(lift, 1);
    }
}

void draw_outlines(const TMOD3D& model, const ViewFrame& frame, bool with_edges, double angle) {
    draw_outlines(model, frame, with_edges, outline_edges(model, angle));
}

// In front of the faces by little more than these recede from one pixel to the next, lest what is
// behind an edge of a face comes through; where all edges are drawn, as far as the library lifts
// those, which the outlines cover.
void draw_outlines(const TMOD3D& model, const ViewFrame& frame, bool with_edges,
                   std::span<const int> edges) {
    const double depth = model.view_bounds[5] - model.view_bounds[4];
    const double lift = with_edges ? 0.005 * depth : std::max(2.5 * frame.unit, 1e-5 * depth);
    const std::vector<double> strengths = outline_strengths(model, frame.unit);
    glDepthFunc(GL_LEQUAL);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glLineWidth(frame.line_width());
    glBegin(GL_LINES);
    for (const int e : edges) {
        const LINE3D& edge = model.lines[e];
        if (!is_hatching(model, edge, frame.unit)) {
            double strength = 0;
            for (const int body : edge.bodies) {
                strength = std::max(strength, strengths[static_cast<std::size_t>(body)]);
            }
            glColor4d(dark.red, dark.green, dark.blue, strength);
            add_edge(model, edge, lift);
        }
    }
    glEnd();
    glDisable(GL_BLEND);
    glDepthFunc(GL_LESS);
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

// As `TMOD3D::gl_draw_mbody` does, but for faces that are seen from behind.
void draw_faces(const TMOD3D& model) {
    TrianglePainter painter;
    for (const BODY3D& body : model.bodies) {
        for (const int number : body.polys) {
            const POLY3D& face = model.polys[number];
            painter.add(model, face, face_colour(body, face));
        }
    }
}

TrianglePainter::TrianglePainter() {
    corners_.reserve(most);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
}

TrianglePainter::~TrianglePainter() {
    paint();
    glDisableClientState(GL_COLOR_ARRAY);
    glDisableClientState(GL_VERTEX_ARRAY);
}

void TrianglePainter::add(const TMOD3D& model, const POLY3D& face,
                          const std::array<float, 4>& colour) {
    for (int k = 2; k < face.verts.GetSize(); ++k) {
        for (const int corner : {0, k - 1, k}) {
            const double* const at = model.verts[face.verts[corner]].view_xyz;
            corners_.push_back({static_cast<float>(at[0]), static_cast<float>(at[1]),
                                static_cast<float>(at[2]), colour[0], colour[1], colour[2],
                                colour[3]});
        }
    }
    if (corners_.size() + 3 > most) {
        paint();
    }
}

void TrianglePainter::paint() {
    if (corners_.empty()) {
        return;
    }
    constexpr GLsizei stride = sizeof corners_[0];
    glVertexPointer(3, GL_FLOAT, stride, corners_[0].data());
    glColorPointer(4, GL_FLOAT, stride, corners_[0].data() + 3);
    glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(corners_.size()));
    corners_.clear();
}

// How opaque the outlines of each body are: less where it is small as seen, since what many small
// bodies show would disappear behind their outlines.
std::vector<double> outline_strengths(const TMOD3D& model, double pixel) {
    constexpr double weakest = 0.25;
    constexpr double large = 32; // pixels
    std::vector<double> strengths;
    for (const BODY3D& body : model.bodies) {
        Rectangle box;
        for (const int vertex : body.verts) {
            box.take_in(model.verts[vertex].view_xyz[0], model.verts[vertex].view_xyz[1]);
        }
        const double size = std::sqrt((box.right - box.left) * (box.bottom - box.top)) / pixel;
        strengths.push_back(box.is_empty() ? 0 : std::clamp(size / large, weakest, 1.0));
    }
    return strengths;
}

// Whether an edge is long beside faces that are a few pixels wide as seen, as the upright edges of
// the wall along a coast are: together they would paint the wall black.
bool is_hatching(const TMOD3D& model, const LINE3D& edge, double pixel) {
    constexpr double narrow = 4; // pixels
    constexpr double slender = 3;
    const double* const start = model.verts[edge.start_vert].view_xyz;
    const double* const end = model.verts[edge.end_vert].view_xyz;
    const double along[] = {end[0] - start[0], end[1] - start[1]};
    const double length = std::hypot(along[0], along[1]);
    const double widest = std::min(narrow * pixel, length / slender);
    return std::all_of(edge.faces.begin(), edge.faces.end(), [&](int face) {
        const CArray<int>& corners = model.polys[face].verts;
        return std::all_of(corners.begin(), corners.end(), [&](int corner) {
            const double* const at = model.verts[corner].view_xyz;
            const double across = along[0] * (at[1] - start[1]) - along[1] * (at[0] - start[0]);
            return std::abs(across) < widest * length;
        });
    });
}

// As it was painted before, so that its depths are the same.
void fill_face(const TMOD3D& model, int face, const GlColour& colour) {
    TrianglePainter().add(model, model.polys[face],
                          {static_cast<float>(colour.red), static_cast<float>(colour.green),
                           static_cast<float>(colour.blue), 1});
}

void draw_edge(const TMOD3D& model, const LINE3D& edge, const GlColour& colour) {
    glBegin(GL_LINES);
    glColor3d(colour.red, colour.green, colour.blue);
    add_edge(model, edge, 0);
    glEnd();
}

void add_edge(const TMOD3D& model, const LINE3D& edge, double lift) {
    for (const int end : {edge.start_vert, edge.end_vert}) {
        const double* const at = model.verts[end].view_xyz;
        glVertex3d(at[0], at[1], at[2] + lift);
    }
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
