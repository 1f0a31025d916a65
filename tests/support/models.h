#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "korvel/body/tmod3d.h"

namespace korvel::test {

using Ints = std::vector<int>;
using Point = std::array<double, 3>;

inline Ints ints(const CArray<int>& list) {
    return Ints(list.begin(), list.end());
}

inline Point point(const double* p) {
    return {p[0], p[1], p[2]};
}

/// A model from the text of its file.
inline TMOD3D model_of(const std::string& text) {
    const std::unique_ptr<FILE, int (*)(FILE*)> stream(std::tmpfile(), std::fclose);
    std::fputs(text.c_str(), stream.get());
    std::rewind(stream.get());
    TMOD3D model;
    model.read_mode(stream.get());
    return model;
}

/// Two bodies on either side of face 0.
const std::string two_tetrahedra = "5 0 0 0  4 0 0  0 3 0  .5 .75 3  1 1 -2 "
                                   "7 0 1 2  0 1 3  1 2 3  2 0 3  0 1 4  1 2 4  2 0 4 "
                                   "2 4 0 0 0 0 1 2 3  4 0 0 0 0 4 5 6";

/// A solid of height 10 on an L of area 1799.5.
const std::string raised_l =
    "12 0 0 0   60 1 0   59 20 0   21 22 0   20 51 0   1 50 0 "
    "   0 0 10  60 1 10  59 20 10  21 22 10  20 51 10  1 50 10 "
    "20 0 1 2  0 2 3  0 3 4  0 4 5  6 7 8  6 8 9  6 9 10  6 10 11  0 1 7  0 7 6  1 2 8  1 8 7 "
    "   2 3 9  2 9 8  3 4 10  3 10 9  4 5 11  4 11 10  5 0 6  5 6 11 "
    "1 20 0 0 0 0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19";

/// A cuboid (kind 1) or a ball (kind 0).
inline TMOD3D starter(int kind, int rounds, Point size = {2, 2, 2}, Point centre = {}) {
    TMOD3D model;
    model.inti_mode(centre.data(), size.data(), kind, rounds);
    return model;
}

/// Everything that is derived, from the start: the edges of the faces from `first_face` on and, if
/// `chained`, their chains of vertices by the faces' own searches, then the passes over the model.
inline TMOD3D rebuilt(TMOD3D model, int first_face, bool chained) {
    for (int f = first_face; f < model.polys.GetSize(); ++f) {
        model.polys[f].find_side(model.lines);
    }
    for (int f = first_face; chained && f < model.polys.GetSize(); ++f) {
        model.polys[f].line_to_vert(model.lines);
        model.polys[f].vert_to_line(model.lines);
    }
    model.comput_mode_aux_parm();
    model.model_wrap_cuboid();
    model.change_vis_parm();
    model.found_top_rel();
    return model;
}

/// A model's lists, and its numbers to six decimals.
inline std::string shape_of(const TMOD3D& model) {
    std::ostringstream text;
    const auto add = [&](const auto& numbers) {
        for (const double x : numbers) {
            text << std::round(x * 1e6) / 1e6 + 0.0 << ' ';
        }
        text << "; ";
    };
    for (const VERT3D& v : model.verts) {
        add(v.model_xyz), add(v.view_xyz);
        add(v.faces), add(v.lines), add(v.neighbours), add(v.bodies);
    }
    for (const LINE3D& e : model.lines) {
        add(Point{double(e.start_vert), double(e.end_vert), e.length});
        add(e.line_2d_eqt), add(e.faces), add(e.bodies);
    }
    for (const POLY3D& f : model.polys) {
        add(f.plane), add(f.rotated_plane), add(Ints{f.state_flags & 16});
        add(f.verts), add(f.lines), add(f.neighbour_faces), add(f.bodies);
    }
    for (const BODY3D& b : model.bodies) {
        add(Point{b.volume});
        add(b.polys), add(b.lines), add(b.verts), add(b.neighbour_bodies);
    }
    add(model.wrap_cuboid), add(model.view_bounds), add(model.rotated_corners[6]);
    return text.str();
}

} // namespace korvel::test
