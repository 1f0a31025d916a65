#pragma once

#include <algorithm>
#include <limits>

#include "korvel/platform/framework.h"

namespace korvel {

/// An axis-parallel box of integer points, its borders included; empty at the start.
struct IntBox {
    int x_min = std::numeric_limits<int>::max();
    int y_min = std::numeric_limits<int>::max();
    int x_max = std::numeric_limits<int>::min();
    int y_max = std::numeric_limits<int>::min();

    void include(POINT pt) {
        x_min = std::min<int>(x_min, pt.x);
        y_min = std::min<int>(y_min, pt.y);
        x_max = std::max<int>(x_max, pt.x);
        y_max = std::max<int>(y_max, pt.y);
    }
    bool contains(POINT pt) const {
        return pt.x >= x_min && pt.x <= x_max && pt.y >= y_min && pt.y <= y_max;
    }
    bool meets(const IntBox& other) const {
        return x_min <= other.x_max && other.x_min <= x_max && y_min <= other.y_max &&
               other.y_min <= y_max;
    }
};

} // namespace korvel
