#pragma once

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "korvel/body/tmod3d.h"
#include "tests/support/record_state.h"

namespace korvel::test {

// Every member of a record or a model, every bit of it, a line for each record.

inline std::string state_of(const BODY3D& b) {
    return text_of("%a", b.polys, b.lines, b.verts, b.neighbour_bodies, b.volume, b.param_1,
                   b.body_flags, b.hue, b.saturation, b.lightness, b.alpha, b.param_2, b.param_3,
                   b.model_min, b.model_max, b.view_mid, b.view_span, b.view_min, b.view_max,
                   b.change_dirt);
}

inline std::string state_of(const POLY3D_CPLX& g) {
    return text_of("%a", g.polys, g.area, g.rgb, g.hue, g.saturation, g.lightness);
}

template <class Records>
std::string states_of(const Records& records) {
    std::string text;
    for (const auto& record : records) {
        text += state_of(record) + '\n';
    }
    return text;
}

inline std::string state_of(const TMOD2D& s) {
    return states_of(s.verts) + states_of(s.lines) + states_of(s.polys) + states_of(s.groups);
}

inline std::string state_of(const TMOD3D& m) {
    return states_of(m.verts) + states_of(m.lines) + states_of(m.polys) + states_of(m.bodies) +
           text_of("%a", m.orig_shift, m.view_center, m.wrap_cuboid, m.wrap_radius,
                   m.cuboid_corners, m.rotated_corners, m.cuboid_min, m.cuboid_max, m.model_frame,
                   m.view_bounds, m.vis_angle_1, m.vis_angle_2, m.view_dir, m.view_scale,
                   m.ant_matrix, m.rot_matrix, m.pick_data, m.edit_state, m.relat_list_1,
                   m.relat_list_2, m.relat_list_3, m.relat_list_4, m.mut_weights, m.mode_ok, m.orig,
                   m.tail_data) +
           state_of(m.sect_model_1) + state_of(m.sect_model_2);
}

/// The file that the model writes.
inline std::string file_of(TMOD3D& model) {
    const std::unique_ptr<FILE, int (*)(FILE*)> stream(std::tmpfile(), std::fclose);
    model.write_mode(stream.get());
    std::string text(static_cast<std::size_t>(std::ftell(stream.get())), ' ');
    std::rewind(stream.get());
    text.resize(std::fread(text.data(), 1, text.size(), stream.get()));
    return text;
}

/// Reads a file into the model and returns what that has left of it.
inline std::string read_file(TMOD3D& model, const std::string& text) {
    const std::unique_ptr<FILE, int (*)(FILE*)> stream(std::tmpfile(), std::fclose);
    std::fputs(text.c_str(), stream.get());
    std::rewind(stream.get());
    model.read_mode(stream.get());
    return text.substr(static_cast<std::size_t>(std::ftell(stream.get())));
}

/// Every face is a triangle over three edges, and each of its sides is run along once by one other
/// face, the other way.
inline void expect_closed(const TMOD3D& model, int euler_number) {
    std::map<std::pair<int, int>, int> sides;
    for (const POLY3D& face : model.polys) {
        ASSERT_EQ(text_of("%g", face.verts.GetSize(), face.lines.GetSize(),
                          face.neighbour_faces.GetSize()),
                  "3 3 3 ");
        for (int k = 0; k < 3; ++k) {
            ++sides[{face.verts[k], face.verts[(k + 1) % 3]}];
            LINE3D line = model.lines[face.lines[k]];
            EXPECT_EQ(std::count_if(face.verts.begin(), face.verts.end(),
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
