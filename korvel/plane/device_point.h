#pragma once

#include <limits>

#include "korvel/platform/framework.h"

namespace korvel {

/// A device coordinate: the value truncated toward zero, saturated where an int cannot hold it, 0
/// for not-a-number.
inline int device_coordinate(double value) {
    constexpr double lowest = std::numeric_limits<int>::min();
    constexpr double highest = std::numeric_limits<int>::max();
    if (value >= highest) {
        return std::numeric_limits<int>::max();
    }
    if (value <= lowest) {
        return std::numeric_limits<int>::min();
    }
    return value == value ? static_cast<int>(value) : 0;
}

/// `coordinate + offset`, saturated where an int cannot hold it.
inline int offset_coordinate(int coordinate, int offset) {
    const long long moved = static_cast<long long>(coordinate) + offset;
    return device_coordinate(static_cast<double>(moved));
}

/// The mapping of the drawing operations from world to device coordinates. The scaled value is
/// truncated before the offset is added, and it is divided by `sx` or `sy` before it is multiplied
/// by `s`: another order would round to other pixels.
struct DeviceMapping {
    int ox = 0;
    int oy = 0;
    double x0 = 0;
    double y0 = 0;
    double sx = 1;
    double sy = 1;
    double s = 1;

    POINT operator()(double x, double y) const {
        POINT device{};
        device.x = offset_coordinate(device_coordinate((x - x0) / sx * s), ox);
        device.y = offset_coordinate(device_coordinate((y - y0) / sy * s), oy);
        return device;
    }
};

} // namespace korvel
