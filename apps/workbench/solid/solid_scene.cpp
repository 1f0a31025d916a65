#include "apps/workbench/solid/solid_scene.h"

#include <array>
#include <utility>

#include <GL/gl.h>

#include "apps/workbench/solid/plane_drawing.h"

namespace korvel::workbench {
namespace {

void clip_towards_viewer(const kit::Solids& solids, const kit::Plane& plane);
void draw_box(const kit::Solids& solids, const kit::Box& box);

} // namespace

void SolidScene::draw(const Content& content, const kit::ViewFrame& frame,
                      const SolidDisplay& display) {
    const kit::Solids& solids = content.solids;
    kit::begin_view(frame);
    if (solids.empty()) {
        return;
    }
    const bool is_clipped = display.clipped && content.plane;
    take(content, display.transparent, is_clipped);
    constexpr double lift = 0.01; // the box lies in front of the faces, as `draw_model` draws it
    glDepthRange(lift, 1);
    if (is_clipped) {
        clip_towards_viewer(solids, *content.plane);
    }
    painter_.draw_faces();
    const bool shows_edges = display.edges == SolidDisplay::Edges::all;
    if (shows_edges) {
        painter_.draw_edges();
    }
    if (display.edges != SolidDisplay::Edges::none) {
        const bool has_outlines = solids.edge_count() == outlined_edges_;
        painter_.draw_outlines(solids.model(), frame, shows_edges,
                               has_outlines ? outlines_ : std::vector<int>());
    }
    glDisable(GL_CLIP_PLANE0);
    glDepthRange(0, 1 - lift);
    if (display.box) {
        glColor3d(0, 0, 0);
        draw_box(solids, solids.bounds());
    }
    glColor3d(1, 0.6, 0);
    glLineWidth(2 * frame.line_width());
    for (const int body : content.selected) {
        if (!content.hidden.contains(body)) {
            draw_box(solids, solids[body].bounds());
        }
    }
    glLineWidth(frame.line_width());
    glDepthRange(lift, 1);
    if (content.plane) {
        draw_plane(solids, *content.plane);
    }
}

void SolidScene::take(const Content& content, bool is_transparent, bool is_clipped) {
    constexpr double see_through = 0.4;
    const TMOD3D& model = content.solids.model();
    if (needs_model_) {
        painter_.take_model(model, content.hidden);
    }
    if (needs_model_ || needs_view_ || is_transparent_ != is_transparent ||
        is_clipped_ != is_clipped) {
        painter_.take_view(model, is_transparent ? see_through : 1, is_clipped);
    }
    is_transparent_ = is_transparent;
    is_clipped_ = is_clipped;
    needs_model_ = false;
    needs_view_ = false;
}

void SolidScene::set_outlines(std::vector<int> outlines, int edge_count) {
    outlines_ = std::move(outlines);
    outlined_edges_ = edge_count;
}

void SolidScene::set_moved(const kit::Solids& solids, std::span<const int> vertices) {
    if (!needs_model_ && !needs_view_) {
        painter_.take_moved(solids.model(), vertices);
    }
}

namespace {

// OpenGL turns the plane like points that are drawn.
void clip_towards_viewer(const kit::Solids& solids, const kit::Plane& plane) {
    const std::array<double, 16> matrix = kit::view_matrix(solids.model());
    const double towards_viewer = matrix[2] * plane.a + matrix[6] * plane.b + matrix[10] * plane.c;
    const double sign = towards_viewer > 0 ? -1 : 1;
    const GLdouble kept[] = {sign * plane.a, sign * plane.b, sign * plane.c, sign * plane.d};
    glLoadMatrixd(matrix.data());
    glClipPlane(GL_CLIP_PLANE0, kept);
    glLoadIdentity();
    glEnable(GL_CLIP_PLANE0);
}

void draw_box(const kit::Solids& solids, const kit::Box& box) {
    if (box.is_empty()) {
        return;
    }
    const auto corner = [&](unsigned number) {
        kit::Point3 at;
        for (std::size_t k = 0; k < 3; ++k) {
            at[k] = ((number >> k) & 1U) != 0 ? box.high[k] : box.low[k];
        }
        glVertex3dv(solids.to_view(at).data());
    };
    glBegin(GL_LINES);
    for (unsigned number = 0; number < 8; ++number) {
        for (unsigned bit = 1; bit < 8; bit *= 2) {
            if ((number & bit) == 0) {
                corner(number);
                corner(number | bit);
            }
        }
    }
    glEnd();
}

} // namespace
} // namespace korvel::workbench
