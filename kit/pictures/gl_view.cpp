#include "kit/pictures/gl_view.h"

#include <GL/gl.h>

#include "kit/base/error.h"
#include "kit/base/number_text.h"

namespace korvel::kit {

std::array<double, 16> Projection::matrix() const {
    std::array<double, 16> m = {};
    m[0] = 2 / (right - left);
    m[5] = 2 / (top - bottom);
    m[10] = -2 / (far_plane - near_plane);
    m[12] = -(right + left) / (right - left);
    m[13] = -(top + bottom) / (top - bottom);
    m[14] = -(far_plane + near_plane) / (far_plane - near_plane);
    m[15] = 1;
    return m;
}

Projection projection(const ViewFrame& frame) {
    return {frame.left, frame.right(), frame.bottom, frame.top(), -frame.nearest, -frame.farthest};
}

// The library multiplies points as rows on the left of its matrix, and OpenGL as columns on the
// right of the transposed one: the same numbers in the same order.
std::array<double, 16> view_matrix(const TMOD3D& model) {
    std::array<double, 16> m = {};
    for (int column = 0; column < 3; ++column) {
        for (int row = 0; row < 3; ++row) {
            m[4 * column + row] = model.rot_matrix[4 * column + row];
        }
        m[12 + column] = -model.view_center[column];
    }
    m[15] = 1;
    return m;
}

void begin_view(const ViewFrame& frame) {
    if (!frame.is_drawable()) {
        const std::string width = number_text(frame.right() - frame.left);
        throw input_error("a picture " + width + " wide cannot be drawn", {.value = width});
    }
    constexpr GLclampf grey = 140 / 255.0F; // white edges and black ones both contrast with it
    glViewport(0, 0, frame.size.width, frame.size.height);
    glClearColor(grey, grey, grey, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LESS); // of faces at one depth the first drawn stays
    const Projection seen = projection(frame);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(seen.left, seen.right, seen.bottom, seen.top, seen.near_plane, seen.far_plane);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glLineWidth(frame.line_width());
}

} // namespace korvel::kit
