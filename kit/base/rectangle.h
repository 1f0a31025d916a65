#pragma once

#include <algorithm>
#include <limits>

namespace korvel::kit {

/// An upright rectangle of real coordinates. `top` is the least y and `bottom` the greatest, as
/// in pixels. Empty (left > right) until it is enlarged.
struct Rectangle {
    double left = std::numeric_limits<double>::infinity();
    double top = std::numeric_limits<double>::infinity();
    double right = -std::numeric_limits<double>::infinity();
    double bottom = -std::numeric_limits<double>::infinity();

    bool is_empty() const { return left > right; }

    /// Whether a point is inside or on the border.
    bool contains(double x, double y) const {
        return left <= x && x <= right && top <= y && y <= bottom;
    }

    /// Enlarges the rectangle by a point.
    void take_in(double x, double y) {
        left = std::min(left, x);
        right = std::max(right, x);
        top = std::min(top, y);
        bottom = std::max(bottom, y);
    }
};

} // namespace korvel::kit
