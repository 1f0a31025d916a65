#pragma once

#include <cmath>

#include "korvel/plane/plane_point.h"

namespace korvel {

/// Dot and cross product of two vectors, with the terms in the order of the winding sum.
inline double dot_product(PlanePoint a, PlanePoint b) {
    return a.x * b.x + a.y * b.y;
}
inline double cross_product(PlanePoint a, PlanePoint b) {
    return a.x * b.y - a.y * b.x;
}

/// Cosine of the angle between two vectors. It is never clamped: where rounding makes it greater
/// than 1, the angle, and every sum that contains it, is not a number.
inline double angle_cosine(PlanePoint a, PlanePoint b) {
    return dot_product(a, b) /
           (std::sqrt(a.x * a.x + a.y * a.y) * std::sqrt(b.x * b.x + b.y * b.y));
}

/// The angle from a to b in radians: positive for a turn to the left (y axis up) and for parallel
/// or opposite vectors, negative for a turn to the right.
inline double signed_angle(PlanePoint a, PlanePoint b) {
    const double angle = std::acos(angle_cosine(a, b));
    return cross_product(a, b) >= 0 ? angle : -angle;
}

/// Whether a winding sum means "inside". The threshold is one radian, not a value near 2π; a sum
/// that is not a number means "outside".
inline bool sum_encloses(double sum) {
    return std::fabs(sum) > 1.0;
}

/// The winding test in its plain form: the sum of the signed angles between the vectors from the
/// tested point to the corners of a closed ring. `corner(k)` returns the vector to corner k of `n`.
/// A ring without corners encloses nothing.
template <class Corner>
bool plain_winding_encloses(int n, Corner corner) {
    if (n < 1) {
        return false;
    }
    double sum = 0;
    PlanePoint a = corner(0);
    for (int k = 1; k <= n; ++k) {
        const PlanePoint b = corner(k < n ? k : 0);
        sum += signed_angle(a, b);
        a = b;
    }
    return sum_encloses(sum);
}

/// The same result as `plain_winding_encloses` without its arc cosines, about ten times as fast.
///
/// The exact sum is 2π times the number of turns around the point, which is counted here by the
/// signs of the sides that cross the ray y = 0, x > 0. The rounded sum differs from it in two ways
/// only: a step between nearly parallel vectors may have a cosine greater than 1 (computed here
/// too), and a point on or next to a side has a half turn of uncertain sign (left to the plain
/// sum). Every other step differs from its angle by less than 1e-7: too little to reach the
/// threshold within the allowed number of steps.
template <class Corner>
bool winding_encloses(int n, Corner corner) {
    constexpr int most_steps = 4'000'000;
    constexpr double nearly_parallel = 1e-7;
    // Outside this range a squared length, or a product of two lengths, may overflow or underflow.
    constexpr double shortest_squared = 1e-280;
    constexpr double longest_squared = 1e+280;

    if (n < 1) {
        return false;
    }
    if (n > most_steps) {
        return plain_winding_encloses(n, corner);
    }
    int turns = 0;
    PlanePoint a = corner(0);
    if (dot_product(a, a) == 0) {
        return false; // division by a length of 0: the sum is not a number
    }
    for (int k = 1; k <= n; ++k) {
        const PlanePoint b = corner(k < n ? k : 0);
        const double squared = dot_product(b, b);
        if (!(squared > shortest_squared && squared < longest_squared)) {
            return squared != 0 && plain_winding_encloses(n, corner);
        }
        const double dot = dot_product(a, b);
        const double cross = cross_product(a, b);
        bool passes_ahead_upward = cross > 0; // if it passes the line y = 0 at all
        bool passes_ahead_downward = cross < 0;
        if (!(std::fabs(cross) > nearly_parallel * std::fabs(dot))) {
            if (!(dot > 0)) {
                return plain_winding_encloses(n, corner);
            }
            if (!(angle_cosine(a, b) <= 1)) {
                return false;
            }
            // The cross may underflow here. Ends on both sides of y = 0 have a positive dot only
            // where both are ahead of the point or both behind it.
            passes_ahead_upward = passes_ahead_downward = b.x > 0;
        }
        if (a.y < 0 && b.y >= 0) {
            turns += passes_ahead_upward ? 1 : 0;
        } else if (a.y >= 0 && b.y < 0) {
            turns -= passes_ahead_downward ? 1 : 0;
        }
        a = b;
    }
    return turns != 0;
}

} // namespace korvel
