#pragma once

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "korvel/body/tmod3d.h"
#include "tests/support/record_state.h"
#include "tests/support/streams.h"

namespace korvel::test {

constexpr auto members_of(EveryBit, const BODY3D*) {
    return std::tuple(KORVEL_MEMBER(BODY3D, polys), KORVEL_MEMBER(BODY3D, lines),
                      KORVEL_MEMBER(BODY3D, verts), KORVEL_MEMBER(BODY3D, neighbour_bodies),
                      KORVEL_MEMBER(BODY3D, volume), KORVEL_MEMBER(BODY3D, param_1),
                      KORVEL_MEMBER(BODY3D, body_flags), KORVEL_MEMBER(BODY3D, hue),
                      KORVEL_MEMBER(BODY3D, saturation), KORVEL_MEMBER(BODY3D, lightness),
                      KORVEL_MEMBER(BODY3D, alpha), KORVEL_MEMBER(BODY3D, param_2),
                      KORVEL_MEMBER(BODY3D, param_3), KORVEL_MEMBER(BODY3D, model_min),
                      KORVEL_MEMBER(BODY3D, model_max), KORVEL_MEMBER(BODY3D, view_mid),
                      KORVEL_MEMBER(BODY3D, view_span), KORVEL_MEMBER(BODY3D, view_min),
                      KORVEL_MEMBER(BODY3D, view_max), KORVEL_MEMBER(BODY3D, change_dirt));
}

constexpr auto members_of(EveryBit, const POLY3D_CPLX*) {
    return std::tuple(KORVEL_MEMBER(POLY3D_CPLX, polys), KORVEL_MEMBER(POLY3D_CPLX, list_2),
                      KORVEL_MEMBER(POLY3D_CPLX, list_3), KORVEL_MEMBER(POLY3D_CPLX, list_4),
                      KORVEL_MEMBER(POLY3D_CPLX, area), KORVEL_MEMBER(POLY3D_CPLX, rgb),
                      KORVEL_MEMBER(POLY3D_CPLX, aux_value), KORVEL_MEMBER(POLY3D_CPLX, aux_int),
                      KORVEL_MEMBER(POLY3D_CPLX, hue), KORVEL_MEMBER(POLY3D_CPLX, saturation),
                      KORVEL_MEMBER(POLY3D_CPLX, lightness), KORVEL_MEMBER(POLY3D_CPLX, aux_xyz_1),
                      KORVEL_MEMBER(POLY3D_CPLX, aux_xyz_2));
}

constexpr auto members_of(EveryBit, const TMOD2D*) {
    return std::tuple(KORVEL_MEMBER(TMOD2D, verts), KORVEL_MEMBER(TMOD2D, lines),
                      KORVEL_MEMBER(TMOD2D, polys), KORVEL_MEMBER(TMOD2D, groups));
}

constexpr auto members_of(EveryBit, const TMOD3D*) {
    return std::tuple(KORVEL_MEMBER(TMOD3D, verts), KORVEL_MEMBER(TMOD3D, lines),
                      KORVEL_MEMBER(TMOD3D, polys), KORVEL_MEMBER(TMOD3D, bodies),
                      KORVEL_MEMBER(TMOD3D, orig_shift), KORVEL_MEMBER(TMOD3D, view_center),
                      KORVEL_MEMBER(TMOD3D, wrap_cuboid), KORVEL_MEMBER(TMOD3D, wrap_radius),
                      KORVEL_MEMBER(TMOD3D, cuboid_corners), KORVEL_MEMBER(TMOD3D, rotated_corners),
                      KORVEL_MEMBER(TMOD3D, cuboid_min), KORVEL_MEMBER(TMOD3D, cuboid_max),
                      KORVEL_MEMBER(TMOD3D, model_frame), KORVEL_MEMBER(TMOD3D, view_bounds),
                      KORVEL_MEMBER(TMOD3D, vis_angle_1), KORVEL_MEMBER(TMOD3D, vis_angle_2),
                      KORVEL_MEMBER(TMOD3D, view_dir), KORVEL_MEMBER(TMOD3D, view_scale),
                      KORVEL_MEMBER(TMOD3D, ant_matrix), KORVEL_MEMBER(TMOD3D, rot_matrix),
                      KORVEL_MEMBER(TMOD3D, pick_data), KORVEL_MEMBER(TMOD3D, edit_state),
                      KORVEL_MEMBER(TMOD3D, relat_list_1), KORVEL_MEMBER(TMOD3D, relat_list_2),
                      KORVEL_MEMBER(TMOD3D, relat_list_3), KORVEL_MEMBER(TMOD3D, relat_list_4),
                      KORVEL_MEMBER(TMOD3D, mut_weights), KORVEL_MEMBER(TMOD3D, sect_model_1),
                      KORVEL_MEMBER(TMOD3D, sect_model_2), KORVEL_MEMBER(TMOD3D, mode_ok),
                      KORVEL_MEMBER(TMOD3D, orig), KORVEL_MEMBER(TMOD3D, tail_data));
}

using Pairs = std::vector<std::pair<int, int>>;

/// The two vertices of every edge.
inline Pairs edge_ends(const TMOD3D& model) {
    Pairs ends;
    for (const LINE3D& line : model.lines) {
        ends.emplace_back(line.start_vert, line.end_vert);
    }
    return ends;
}

/// The file that the model writes.
inline std::string file_of(TMOD3D& model) {
    return written([&](FILE* stream) { model.write_mode(stream); });
}

/// Reads a file into the model and returns the text behind what that consumes.
inline std::string read_file(TMOD3D& model, const std::string& text) {
    return rest_after(text, [&](FILE* stream) { model.read_mode(stream); });
}

/// Every face is a triangle over three edges, and each of its sides is run along once by one other
/// face, the other way.
inline void expect_closed(const TMOD3D& model, int euler_number) {
    std::map<std::pair<int, int>, int> sides;
    for (const POLY3D& face : model.polys) {
        ASSERT_EQ(face.verts.GetSize(), 3);
        ASSERT_EQ(face.lines.GetSize(), 3);
        ASSERT_EQ(face.neighbour_faces.GetSize(), 3);
        for (int k = 0; k < 3; ++k) {
            ++sides[{face.verts[k], face.verts[(k + 1) % 3]}];
            LINE3D line = model.lines[face.lines[k]];
            EXPECT_EQ(std::count_if(begin(face.verts), end(face.verts),
                                    [&](int v) { return line.det_vert_at(v) >= 0; }),
                      2);
        }
    }
    for (const LINE3D& line : model.lines) {
        EXPECT_EQ((sides[{line.start_vert, line.end_vert}]), 1);
        EXPECT_EQ((sides[{line.end_vert, line.start_vert}]), 1);
    }
    EXPECT_EQ(sides.size(), 2 * std::size_t(model.lines.GetSize()));
    EXPECT_EQ(model.verts.GetSize() - model.lines.GetSize() + model.polys.GetSize(), euler_number);
}

} // namespace korvel::test
