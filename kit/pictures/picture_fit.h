#pragma once

#include "kit/base/rectangle.h"
#include "kit/pictures/picture_size.h"

namespace korvel::kit {

/// Places a part of the plane in a picture: as large as the margins allow, centred, x to the right
/// and y upward, or downward with `y_down`. The members are the arguments of the library's drawing
/// calls: X = trunc((x − x0) / sx · scale) + ox, Y alike.
struct PictureFit {
    /// Device units per pixel of the pictures that are painted with a fit. Fine enough to hide that
    /// device coordinates are integers.
    static constexpr int units_per_pixel = 16;

    int ox = 0;
    int oy = 0;
    double x0 = 0;
    double y0 = 0;
    double sx = 1;
    double sy = -1; ///< below 0 where y grows upward
    double scale = 1;
    PictureSize page;
    int device_units = units_per_pixel; ///< to a pixel

    /// A unit of x is painted `stretch` times as long as a unit of y. An empty box gets scale 1, a
    /// box without width or height the scale that the other allows.
    PictureFit(const Rectangle& box, PictureSize size, double stretch,
               int device_units = units_per_pixel, bool y_down = false);

    /// What the whole page shows, in coordinates of the map.
    Rectangle page_in_map() const;

    /// Width in device units of a pen for the outlines of `shapes` shapes spread over the picture:
    /// about a pixel for a few large ones, thinner for many small ones.
    int outline_width(int shapes) const;
};

} // namespace korvel::kit
