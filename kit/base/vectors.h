#pragma once

#include "kit/base/points.h"

namespace korvel::kit {

/// The vector from one point to another.
inline Point3 apart(const Point3& from, const Point3& to) {
    return {to[0] - from[0], to[1] - from[1], to[2] - from[2]};
}

inline double dot(const Point3& a, const Point3& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

inline Point3 cross(const Point3& a, const Point3& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

} // namespace korvel::kit
