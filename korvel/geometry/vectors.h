#pragma once

#include <cmath>

namespace korvel {

/// The axis of the largest component by magnitude; of equals the first.
inline int main_axis_of(const double* v) {
    int axis = 0;
    double largest = std::fabs(v[0]);
    for (int k = 1; k < 3; ++k) {
        if (std::fabs(v[k]) > largest) {
            axis = k;
            largest = std::fabs(v[k]);
        }
    }
    return axis;
}

/// The unit vector from p to q, not finite where they are one, and their distance.
inline double direction_to(const double* p, const double* q, double* direction) {
    for (int k = 0; k < 3; ++k) {
        direction[k] = q[k] - p[k];
    }
    const double length = std::sqrt(direction[0] * direction[0] + direction[1] * direction[1] +
                                    direction[2] * direction[2]);
    for (int k = 0; k < 3; ++k) {
        direction[k] /= length;
    }
    return length;
}

/// The determinant of the matrix with rows p, q, r, written p·(q × r).
inline double triple_product(const double* p, const double* q, const double* r) {
    return p[0] * (q[1] * r[2] - q[2] * r[1]) + p[1] * (q[2] * r[0] - q[0] * r[2]) +
           p[2] * (q[0] * r[1] - q[1] * r[0]);
}

/// The plane through three points, with a unit normal that sees them run counter-clockwise. Points
/// in line give values that are not finite.
inline void plane_through(const double* p0, const double* p1, const double* p2, double* plane) {
    double u[3];
    double w[3];
    for (int k = 0; k < 3; ++k) {
        u[k] = p1[k] - p0[k];
        w[k] = p2[k] - p0[k];
    }
    const double a = u[1] * w[2] - w[1] * u[2];
    const double b = w[0] * u[2] - u[0] * w[2];
    const double c = u[0] * w[1] - w[0] * u[1];
    const double norm = std::sqrt(a * a + b * b + c * c);
    plane[0] = a / norm;
    plane[1] = b / norm;
    plane[2] = c / norm;
    plane[3] = -(plane[0] * p0[0] + plane[1] * p0[1] + plane[2] * p0[2]);
}

/// What the plane's equation gives for a point: its distance where the normal has unit length.
inline double height_above(const double* plane, const double* p) {
    return plane[0] * p[0] + plane[1] * p[1] + plane[2] * p[2] + plane[3];
}

/// How much that grows along a direction.
inline double climb_along(const double* plane, const double* direction) {
    return plane[0] * direction[0] + plane[1] * direction[1] + plane[2] * direction[2];
}

/// Where a segment (start, unit direction, length) meets a plane, both ends included. False where
/// it does not or runs parallel; `point` is then left alone.
inline bool segment_meets_plane(const double* start, const double* direction, double length,
                                const double* plane, double* point) {
    const double approach = climb_along(plane, direction);
    if (approach == 0.0) {
        return false;
    }
    const double t = -height_above(plane, start) / approach;
    if ((t - length) * t > 0) {
        return false;
    }
    for (int k = 0; k < 3; ++k) {
        point[k] = start[k] + t * direction[k];
    }
    return true;
}

} // namespace korvel
