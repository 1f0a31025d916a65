#pragma once

#include <cmath>

#include "korvel/plane/plane_point.h"
#include "korvel/plane/turn.h"

namespace korvel {

/// Unit direction and length of a side. Not finite for a side of length 0.
struct Direction {
    double ux = 0;
    double uy = 0;
    double len = 0;
};

inline Direction direction_between(PlanePoint a, PlanePoint b) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double len = std::sqrt(dx * dx + dy * dy);
    return {dx / len, dy / len, len};
}

/// How two sides lie to one another: the determinant of their directions, and how far from its
/// start each of them meets the other's line.
struct SideMeeting {
    double det = 0;
    double on_e = 0;
    double on_s = 0;
    bool crosses = false; ///< strictly inside both; touching at an end is no crossing
};

/// Sides without a common end point; `e_start` and `s_start` are where they begin. Parallel sides
/// (a determinant of exactly 0, or not a number) never cross.
inline SideMeeting meet_sides(PlanePoint e_start, Direction e, PlanePoint s_start, Direction s) {
    SideMeeting meeting;
    meeting.det = s.uy * e.ux - s.ux * e.uy;
    if (meeting.det == 0 || std::isnan(meeting.det)) {
        return meeting;
    }
    const double dx = s_start.x - e_start.x;
    const double dy = s_start.y - e_start.y;
    meeting.on_e = (dx * s.uy - dy * s.ux) / meeting.det;
    meeting.on_s = (dx * e.uy - dy * e.ux) / meeting.det;
    meeting.crosses =
        0 < meeting.on_e && meeting.on_e < e.len && 0 < meeting.on_s && meeting.on_s < s.len;
    return meeting;
}

/// Radius of the circumscribed circle from the three side lengths (Heron's area). Infinite or not a
/// number for a degenerate triangle.
inline double circumradius(PlanePoint a, PlanePoint b, PlanePoint c) {
    const double la = direction_between(a, b).len;
    const double lb = direction_between(b, c).len;
    const double lc = direction_between(c, a).len;
    const double s = (la + lb + lc) * 0.5;
    return la * lb * lc / (4 * std::sqrt((s - lc) * (s - lb) * (s - la) * s));
}

/// Whether p lies strictly inside the triangle, whichever way it is turned.
inline bool strictly_inside(PlanePoint a, PlanePoint b, PlanePoint c, PlanePoint p) {
    const int turns = turn_sign(a, b, p) + turn_sign(b, c, p) + turn_sign(c, a, p);
    return turns == 3 || turns == -3;
}

} // namespace korvel
