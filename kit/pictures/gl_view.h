#pragma once

#include <array>

#include "kit/pictures/view_frame.h"
#include "korvel/module/korvel.h"

// How OpenGL shows a model's view: what the off-screen pictures use, and what a host needs to draw
// a model in a window of its own. docs/opengl.md shows a whole window.

namespace korvel::kit {

/// A parallel projection of view coordinates, in the order of the arguments of `glOrtho`. u and v
/// from `left` to `right` and from `bottom` to `top` fill the viewport. OpenGL looks along −w and
/// counts distances that way, so w = −`near_plane` is nearest to the viewer.
struct Projection {
    double left = -1;
    double right = 1;
    double bottom = -1;
    double top = 1;
    double near_plane = -1;
    double far_plane = 1;

    /// The same as a matrix, column by column as `glLoadMatrixd` and shaders take it.
    std::array<double, 16> matrix() const;
};

Projection projection(const ViewFrame& frame);

/// The matrix that turns model coordinates into view coordinates, column by column. The modelview
/// matrix of a host that draws vertices by their model coordinates (`TMOD3D::gl_draw_orig_mbody`,
/// or buffers of its own); the other drawing calls of `TMOD3D` take view coordinates and need the
/// identity. The view must be current (`TMOD3D::change_vis_parm`).
std::array<double, 16> view_matrix(const TMOD3D& model);

/// Starts a picture in the current OpenGL context: fills the viewport and its depth buffer with an
/// empty grey page, and sets everything that `draw_model` and `draw_pick` rely on: viewport, depth
/// test, projection, the identity as modelview matrix, line width. To be called before each
/// drawing; lighting, textures and programs of the host's must be off, and multisampling smooths
/// the edges if the host turns it on. Throws an input error for a frame that single precision
/// cannot draw (`ViewFrame::is_drawable`).
void begin_view(const ViewFrame& frame);

} // namespace korvel::kit
