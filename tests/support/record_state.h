#pragma once

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <string>

#include "korvel/geometry/poly3d.h"
#include "tests/support/lists.h"
#include "tests/support/same_state.h"

namespace korvel::test {

/// Numbers are the same when their six leading digits and their signs are, or when neither is a
/// number.
struct SixDigits {
    static bool are_same(double a, double b) {
        return printed(a) == printed(b) || (std::isnan(a) && std::isnan(b));
    }
    static std::string printed(double number) {
        char digits[40];
        std::snprintf(digits, sizeof digits, "%g", number);
        return digits;
    }
};

/// For `EXPECT_PRED_FORMAT2(same_digits, actual, expected)`, of numbers or lists of them.
template <class Value>
testing::AssertionResult same_digits(const char* actual_name, const char* expected_name,
                                     const Value& actual, const Value& expected) {
    return same_under(SixDigits(), actual_name, expected_name, actual, expected);
}

constexpr auto members_of(EveryBit, const VERT3D*) {
    return std::tuple(KORVEL_MEMBER(VERT3D, model_xyz), KORVEL_MEMBER(VERT3D, backup_xyz),
                      KORVEL_MEMBER(VERT3D, temp_view_xyz), KORVEL_MEMBER(VERT3D, view_xyz),
                      KORVEL_MEMBER(VERT3D, spare_int_1), KORVEL_MEMBER(VERT3D, spare_int_2),
                      KORVEL_MEMBER(VERT3D, state_flags), KORVEL_MEMBER(VERT3D, spare_int_3),
                      KORVEL_MEMBER(VERT3D, faces), KORVEL_MEMBER(VERT3D, lines),
                      KORVEL_MEMBER(VERT3D, neighbours), KORVEL_MEMBER(VERT3D, bodies));
}

constexpr auto members_of(EveryBit, const LINE3D*) {
    return std::tuple(KORVEL_MEMBER(LINE3D, start_vert), KORVEL_MEMBER(LINE3D, end_vert),
                      KORVEL_MEMBER(LINE3D, state_flags), KORVEL_MEMBER(LINE3D, direction),
                      KORVEL_MEMBER(LINE3D, length), KORVEL_MEMBER(LINE3D, line_2d_eqt),
                      KORVEL_MEMBER(LINE3D, main_axis), KORVEL_MEMBER(LINE3D, faces),
                      KORVEL_MEMBER(LINE3D, bodies));
}

constexpr auto members_of(EveryBit, const POLY3D*) {
    return std::tuple(KORVEL_MEMBER(POLY3D, verts), KORVEL_MEMBER(POLY3D, lines),
                      KORVEL_MEMBER(POLY3D, neighbour_faces), KORVEL_MEMBER(POLY3D, bodies),
                      KORVEL_MEMBER(POLY3D, area), KORVEL_MEMBER(POLY3D, plane),
                      KORVEL_MEMBER(POLY3D, main_axis), KORVEL_MEMBER(POLY3D, rotated_plane),
                      KORVEL_MEMBER(POLY3D, state_flags));
}

/// Vertices with the same model and view coordinates.
inline void set_verts(CArray<VERT3D, VERT3D&>& verts,
                      std::initializer_list<std::initializer_list<double>> points) {
    verts.RemoveAll();
    for (const auto& point : points) {
        VERT3D vertex;
        std::copy_n(point.begin(), 3, vertex.model_xyz);
        std::copy_n(point.begin(), 3, vertex.view_xyz);
        verts.Add(vertex);
    }
}

inline POLY3D face_of(const Ints& verts, const Ints& lines = {}) {
    POLY3D face;
    set_ints(face.verts, verts);
    set_ints(face.lines, lines);
    return face;
}

inline void set_lines(CArray<LINE3D, LINE3D&>& lines,
                      std::initializer_list<std::pair<int, int>> ends) {
    lines.RemoveAll();
    for (const auto& [a, b] : ends) {
        LINE3D line;
        line.set_line_point(a, b);
        lines.Add(line);
    }
}

} // namespace korvel::test
