#include "korvel/polyregion/triangulation/oriented_box.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace korvel {

OrientedBox box_around(const Coordinates& points, int first, int end, double rounding) {
    OrientedBox box;
    const auto each = [&](auto use) {
        for (int p = first; p < end; ++p) {
            use(points[p]);
        }
    };
    PlanePoint sum{0, 0};
    each([&](PlanePoint p) { sum = {sum.x + p.x, sum.y + p.y}; });
    const PlanePoint mean{sum.x / (end - first), sum.y / (end - first)};
    double xx = 0;
    double xy = 0;
    double yy = 0;
    each([&](PlanePoint p) {
        const double x = p.x - mean.x;
        const double y = p.y - mean.y;
        xx += x * x;
        xy += x * y;
        yy += y * y;
    });
    // Half the angle whose tangent is 2 xy / (xx − yy).
    const double difference = xx - yy;
    const double norm = std::sqrt(difference * difference + 4 * xy * xy);
    if (norm > 0) {
        const double major = std::sqrt((1 + std::fabs(difference) / norm) / 2);
        const double minor = xy / (norm * major);
        box.ux = difference >= 0 ? major : std::fabs(minor);
        box.uy = difference >= 0 ? minor : std::copysign(major, xy);
    }
    double low_along = std::numeric_limits<double>::infinity();
    double high_along = -low_along;
    double low_across = low_along;
    double high_across = -low_along;
    each([&](PlanePoint p) {
        const double along = p.x * box.ux + p.y * box.uy;
        const double across = p.y * box.ux - p.x * box.uy;
        low_along = std::min(low_along, along);
        high_along = std::max(high_along, along);
        low_across = std::min(low_across, across);
        high_across = std::max(high_across, across);
    });
    const double along = (low_along + high_along) / 2;
    const double across = (low_across + high_across) / 2;
    box.centre = {along * box.ux - across * box.uy, along * box.uy + across * box.ux};
    box.along = (high_along - low_along) / 2 + rounding;
    box.across = (high_across - low_across) / 2 + rounding;
    return box;
}

} // namespace korvel
