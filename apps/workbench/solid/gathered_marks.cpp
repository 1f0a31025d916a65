#include "apps/workbench/solid/gathered_marks.h"

#include <GL/gl.h>

#include <unordered_map>

namespace korvel::workbench {

void draw_weights(const kit::Solids& solids, std::span<const int> faces,
                  std::span<const int> vertices, std::span<const double> weights) {
    std::unordered_map<int, double> weight_of;
    for (std::size_t k = 0; k < std::min(vertices.size(), weights.size()); ++k) {
        weight_of.emplace(vertices[k], weights[k]);
    }
    glDepthFunc(GL_LEQUAL);
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(-1, -1);
    glBegin(GL_TRIANGLES);
    for (const int number : faces) {
        const std::span<const int> corners = solids.faces()[number].vertices();
        for (std::size_t k = 2; k < corners.size(); ++k) {
            for (const int corner : {corners[0], corners[k - 1], corners[k]}) {
                const auto found = weight_of.find(corner);
                const double weight = found == weight_of.end() ? 0 : found->second;
                glColor3d(0.1 + 0.85 * weight, 0.25 + 0.6 * weight, 0.8 - 0.7 * weight);
                glVertex3dv(solids.model().verts[corner].view_xyz);
            }
        }
    }
    glEnd();
    glDisable(GL_POLYGON_OFFSET_FILL);
    glDepthFunc(GL_LESS);
}

void draw_verdict(const kit::Solids& solids, const kit::Verdict& verdict,
                  const kit::ViewFrame& frame) {
    const TMOD3D& model = solids.model();
    glDisable(GL_DEPTH_TEST);
    glColor3d(0.9, 0, 0);
    if (verdict.face >= 0) {
        glBegin(GL_POLYGON);
        for (const int corner : solids.faces()[verdict.face].vertices()) {
            glVertex3dv(model.verts[corner].view_xyz);
        }
        glEnd();
    }
    if (verdict.edge >= 0) {
        constexpr float pixels = 4;
        glColor3d(1, 0.3, 0.3);
        glLineWidth(pixels * frame.line_width());
        glBegin(GL_LINES);
        for (const int end : verdict.ends) {
            glVertex3dv(model.verts[end].view_xyz);
        }
        glEnd();
        glLineWidth(frame.line_width());
    }
    glEnable(GL_DEPTH_TEST);
}

void draw_rectangle(const kit::Rectangle& rectangle) {
    glDisable(GL_DEPTH_TEST);
    glColor3d(1, 0.6, 0);
    glBegin(GL_LINE_LOOP);
    glVertex2d(rectangle.left, rectangle.top);
    glVertex2d(rectangle.right, rectangle.top);
    glVertex2d(rectangle.right, rectangle.bottom);
    glVertex2d(rectangle.left, rectangle.bottom);
    glEnd();
    glEnable(GL_DEPTH_TEST);
}

} // namespace korvel::workbench
