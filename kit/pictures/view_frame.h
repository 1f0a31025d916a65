#pragma once

#include "kit/base/rectangle.h"
#include "kit/pictures/picture_size.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// The part of a model's view that a picture shows, in view coordinates: u runs to the right, v
/// upward and w towards the viewer, all from the middle of the model's extent in the view.
struct ViewFrame {
    PictureSize size;
    double left = 0;   ///< u at the picture's left border
    double bottom = 0; ///< v at its lower border
    double unit = 1;   ///< side of a pixel
    double nearest = 1;
    double farthest = -1; ///< w from here to `nearest` is shown

    double right() const { return left + unit * size.width; }
    double top() const { return bottom + unit * size.height; }

    /// The middle of a pixel, counted from the upper left corner.
    double u_of(int x) const { return left + (x + 0.5) * unit; }
    double v_of(int y) const { return top() - (y + 0.5) * unit; }

    /// Of drawn edges, in pixels; a pixel in pictures of the usual size, more in large ones.
    float line_width() const;

    /// Whether OpenGL, which draws in single precision, can show it: no side is shorter than 1e-30
    /// or longer than 1e30.
    bool is_drawable() const;
};

// Frames of a model whose view is current, as large as the picture and a margin allow.

/// Shows the whole model, and with `with_box` the corners of its wrap cuboid.
ViewFrame whole_view(const TMOD3D& model, bool with_box, PictureSize size);

/// Shows a part, the box's x being u and its y being v.
ViewFrame part_of_view(const TMOD3D& model, const Rectangle& part, PictureSize size);

/// Whether no part of a face is within a picture, whether or not another face hides it. Linear.
bool shows_nothing(const ViewFrame& frame, const TMOD3D& model);

/// Shows the model at whatever angle it is turned to about its z axis, in one scale and with the
/// middle of the wrap cuboid in the middle of the picture.
ViewFrame turning_view(const TMOD3D& model, bool with_box, PictureSize size);

} // namespace korvel::kit
