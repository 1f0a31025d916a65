#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "korvel/body/tmod3d.h"
#include "tests/support/lists.h"
#include "tests/support/same_state.h"
#include "tests/support/streams.h"

namespace korvel::test {

/// A model from the text of its file.
inline TMOD3D model_of(const std::string& text) {
    TMOD3D model;
    model.read_mode(stream_of(text).get());
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

/// Orients the bodies from `first_body` on, as if they were all.
inline void orient_from(TMOD3D& model, int first_body) {
    TMOD3D added = model;
    added.bodies.RemoveAt(0, first_body);
    added.comput_mode_aux_parm();
    for (int f = 0; f < model.polys.GetSize(); ++f) {
        model.polys[f].verts.Copy(added.polys[f].verts);
    }
}

/// From where `rebuilt` starts.
struct Rebuild {
    int first_face = 0;        ///< edges are found for this face and those behind it
    bool chained = true;       ///< orders their chains by the searches of the faces
    int first_added_body = -1; ///< bodies from here on are oriented on their own first
};

/// The model with everything that is derived, from the start.
inline TMOD3D rebuilt(TMOD3D model, const Rebuild& how = {}) {
    for (int f = how.first_face; f < model.polys.GetSize(); ++f) {
        model.polys[f].find_side(model.lines);
    }
    for (int f = how.first_face; how.chained && f < model.polys.GetSize(); ++f) {
        model.polys[f].line_to_vert(model.lines);
        model.polys[f].vert_to_line(model.lines);
    }
    if (how.first_added_body >= 0) {
        orient_from(model, how.first_added_body);
    }
    model.comput_mode_aux_parm();
    model.model_wrap_cuboid();
    model.change_vis_parm();
    model.found_top_rel();
    return model;
}

/// Numbers are the same to six decimals, those above 1 to six digits.
struct SixDecimals {
    static bool are_same(double a, double b) {
        return a == b || std::fabs(a - b) <= 1e-6 * std::max(1.0, std::fabs(b)) ||
               (std::isnan(a) && std::isnan(b));
    }
};

constexpr auto members_of(SixDecimals, const VERT3D*) {
    return std::tuple(KORVEL_MEMBER(VERT3D, model_xyz), KORVEL_MEMBER(VERT3D, view_xyz),
                      KORVEL_MEMBER(VERT3D, faces), KORVEL_MEMBER(VERT3D, lines),
                      KORVEL_MEMBER(VERT3D, neighbours), KORVEL_MEMBER(VERT3D, bodies));
}

constexpr auto members_of(SixDecimals, const LINE3D*) {
    return std::tuple(KORVEL_MEMBER(LINE3D, start_vert), KORVEL_MEMBER(LINE3D, end_vert),
                      KORVEL_MEMBER(LINE3D, length), KORVEL_MEMBER(LINE3D, line_2d_eqt),
                      KORVEL_MEMBER(LINE3D, faces), KORVEL_MEMBER(LINE3D, bodies));
}

constexpr auto members_of(SixDecimals, const POLY3D*) {
    return std::tuple(
        KORVEL_MEMBER(POLY3D, plane), KORVEL_MEMBER(POLY3D, rotated_plane),
        KORVEL_MEMBER(POLY3D, verts), KORVEL_MEMBER(POLY3D, lines),
        KORVEL_MEMBER(POLY3D, neighbour_faces), KORVEL_MEMBER(POLY3D, bodies),
        std::pair("faces_viewer", [](const POLY3D& face) { return face.state_flags & 16; }));
}

constexpr auto members_of(SixDecimals, const BODY3D*) {
    return std::tuple(KORVEL_MEMBER(BODY3D, volume), KORVEL_MEMBER(BODY3D, polys),
                      KORVEL_MEMBER(BODY3D, lines), KORVEL_MEMBER(BODY3D, verts),
                      KORVEL_MEMBER(BODY3D, neighbour_bodies));
}

constexpr auto members_of(SixDecimals, const TMOD3D*) {
    return std::tuple(KORVEL_MEMBER(TMOD3D, verts), KORVEL_MEMBER(TMOD3D, lines),
                      KORVEL_MEMBER(TMOD3D, polys), KORVEL_MEMBER(TMOD3D, bodies),
                      KORVEL_MEMBER(TMOD3D, wrap_cuboid), KORVEL_MEMBER(TMOD3D, view_bounds),
                      KORVEL_MEMBER(TMOD3D, rotated_corners));
}

/// For `EXPECT_PRED_FORMAT2(same_shape, actual, expected)`: a model's lists, and its numbers to six
/// decimals. A failure names the first member that differs, and both values.
inline testing::AssertionResult same_shape(const char* actual_name, const char* expected_name,
                                           const TMOD3D& actual, const TMOD3D& expected) {
    return same_under(SixDecimals(), actual_name, expected_name, actual, expected);
}

} // namespace korvel::test
