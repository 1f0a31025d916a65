#pragma once

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <string>

#include "korvel/geometry/poly3d.h"

namespace korvel::test {

/// Values, arrays and lists one after another; what is not a number is "nan", whatever its sign.
template <class... Values>
std::string text_of(const char* real_format, const Values&... values) {
    std::string text;
    const auto add = [&](const auto& value) {
        if constexpr (requires { std::begin(value); }) {
            text += "( ";
            for (const auto& element : value) {
                text += text_of(real_format, element);
            }
            text += ") ";
        } else if (std::isnan(static_cast<double>(value))) {
            text += "nan ";
        } else {
            char digits[40];
            std::snprintf(digits, sizeof digits, real_format, static_cast<double>(value));
            text += std::string(digits) + ' ';
        }
    };
    (add(values), ...);
    return text;
}

// Every member of a record, every bit of it.

inline std::string state_of(const VERT3D& v) {
    return text_of("%a", v.model_xyz, v.backup_xyz, v.temp_view_xyz, v.view_xyz, v.spare_int_1,
                   v.spare_int_2, v.state_flags, v.spare_int_3, v.faces, v.lines, v.neighbours,
                   v.bodies);
}
inline std::string state_of(const LINE3D& e) {
    return text_of("%a", e.start_vert, e.end_vert, e.state_flags, e.direction, e.length,
                   e.line_2d_eqt, e.main_axis, e.faces, e.bodies);
}
inline std::string state_of(const POLY3D& f) {
    return text_of("%a", f.verts, f.lines, f.neighbour_faces, f.bodies, f.area, f.plane,
                   f.main_axis, f.rotated_plane, f.state_flags);
}

inline void set_ints(CArray<int>& list, std::initializer_list<int> values) {
    list.RemoveAll();
    for (const int value : values) {
        list.Add(value);
    }
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

inline POLY3D face_of(std::initializer_list<int> verts, std::initializer_list<int> lines = {}) {
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
