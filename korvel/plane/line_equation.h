#pragma once

#include <cmath>

#include "korvel/plane/plane_point.h"

namespace korvel {

/// Coefficients of the line a·x + b·y + c = 0.
struct LineEquation {
    double a = 0;
    double b = 0;
    double c = 0;
};

/// The line from p to q before scaling, and the length of its 3-vector (a, b, c), which includes c
/// on purpose.
struct UnscaledLine {
    LineEquation line;
    double norm = 0;

    /// a = b = 0.701 (not √½) and c = 0 where there is no line to scale.
    static constexpr LineEquation none{0.701, 0.701, 0.0};
    static constexpr double vanishing = 1e-8;

    LineEquation scaled() const { return {line.a / norm, line.b / norm, line.c / norm}; }
};

inline UnscaledLine unscaled_line_through(PlanePoint p, PlanePoint q) {
    const double a = q.y - p.y;
    const double b = p.x - q.x;
    const double c = -(p.x * a + p.y * b);
    return {{a, b, c}, std::sqrt(a * a + b * b + c * c)};
}

/// The scaled line from p to q; `none` where the norm is at most 1e-8 or not a number.
inline LineEquation line_through(PlanePoint p, PlanePoint q) {
    const UnscaledLine unscaled = unscaled_line_through(p, q);
    return unscaled.norm > UnscaledLine::vanishing ? unscaled.scaled() : UnscaledLine::none;
}

/// The same, except that a norm that is not a number makes all three coefficients not a number.
inline LineEquation side_line_through(PlanePoint p, PlanePoint q) {
    const UnscaledLine unscaled = unscaled_line_through(p, q);
    return unscaled.norm <= UnscaledLine::vanishing ? UnscaledLine::none : unscaled.scaled();
}

} // namespace korvel
