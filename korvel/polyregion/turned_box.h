#pragma once

#include <algorithm>
#include <cmath>

#include "korvel/polyregion/region_points.h"
#include "korvel/polyregion/slot_tree.h"

namespace korvel {

/// A box around points that lies along them: thin for those of an arc or of a spike.
struct TurnedBox {
    PlanePoint centre;
    double ux = 1; ///< the unit vector along the box; the other axis is (−uy, ux)
    double uy = 0;
    double along = 0; ///< half of the sizes
    double across = 0;

    /// Half the difference between the largest and the smallest value of a form in the box.
    double spread(const LineForm& form) const {
        return std::fabs(form.nx * ux + form.ny * uy) * along +
               std::fabs(form.ny * ux - form.nx * uy) * across;
    }
    /// A point in the axes of the box, from its centre.
    PlanePoint within(PlanePoint p) const {
        const double dx = p.x - centre.x;
        const double dy = p.y - centre.y;
        return {dx * ux + dy * uy, dy * ux - dx * uy};
    }
    PlanePoint nearest_to(PlanePoint p) const {
        const PlanePoint at = within(p);
        const double x = std::clamp(at.x, -along, along);
        const double y = std::clamp(at.y, -across, across);
        return {centre.x + x * ux - y * uy, centre.y + x * uy + y * ux};
    }
};

/// The box around some slots' points, at least one, turned to their direction of greatest spread
/// and `rounding` larger on every side.
TurnedBox box_around(const Coordinates& points, int first, int end, double rounding);

} // namespace korvel
