// Vertices, edges and faces: equations, chains, list queries and copies.

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/record_state.h"

using namespace korvel::test;

namespace {

CArray<VERT3D, VERT3D&> verts;
CArray<LINE3D, LINE3D&> lines;

TEST(Edge, Equations) {
    struct Case {
        Point from, to;
        Point direction;
        double length;
        int axis;   ///< of equals the lower
        Point line; ///< in the view. The divisor includes c; (0.701, 0.701, 0) if all vanish
    };
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const Case cases[] = {
        {{0, 0, 0}, {0, 0, -2}, {0, 0, -1}, 2, 2, {0.701, 0.701, 0}},
        {{3, 4, 0}, {3, 4, 1}, {0, 0, 1}, 1, 2, {0.701, 0.701, 0}},
        {{3, 4, 0}, {3, 4, 0}, {nan, nan, nan}, 0, 0, {0.701, 0.701, 0}},
        {{0, 0, 0}, {1e-8, 0, 0}, {1, 0, 0}, 1e-8, 0, {0.701, 0.701, 0}}, // not above 1e-8
        {{0, 0, 0}, {2e-8, 0, 0}, {1, 0, 0}, 2e-8, 0, {0, -1, -0.0}},
        {{0, 0, 7}, {-2, 1, 9}, {-0.666667, 0.333333, 0.666667}, 3, 0, {0.447214, 0.894427, -0.0}},
        {{1, 1, 1}, {4, 5, 1}, {0.6, 0.8, 0}, 5, 1, {0.784465, -0.588348, -0.196116}},
        {{0, 1, 0},
         {1, -1, 2},
         {0.333333, -0.666667, 0.666667},
         3,
         1,
         {-0.816497, -0.408248, 0.408248}},
        {{0, 1, 0}, {2, 1, 0}, {1, 0, 0}, 2, 0, {0, -0.707107, 0.707107}},
    };
    for (const Case& c : cases) {
        set_verts(verts, {{c.from[0], c.from[1], c.from[2]}, {c.to[0], c.to[1], c.to[2]}});
        LINE3D line;
        line.set_line_point(0, 1);
        line.set_line_eqt(verts);
        line.set_line_2d_eqt(verts);
        SCOPED_TRACE(&c - cases);
        EXPECT_PRED_FORMAT2(same_digits, point(line.direction), c.direction);
        EXPECT_PRED_FORMAT2(same_digits, line.length, c.length);
        EXPECT_EQ(line.main_axis, c.axis);
        EXPECT_PRED_FORMAT2(same_digits, point(line.line_2d_eqt), c.line);
    }
}

TEST(Face, PlaneAndFacing) {
    set_verts(verts, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {5, 5, 2}, {0, 1, 2}, {1, 0, 2}, {2, 0, 0}});
    struct Case {
        POLY3D face;
        std::array<double, 4> plane;
        int axis;
        int flags; ///< 32, and 16 if the face is seen
    };
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const Case cases[] = {
        {face_of({0, 1, 2}), {0, 0, 1, -0.0}, 2, 48},
        {face_of({0, 2, 1}), {0, 0, -1, -0.0}, 2, 32},
        {face_of({1, 2, 0, 3}), {0, 0, 1, -0.0}, 2, 48}, // the first three vertices alone count
        {face_of({2, 4, 1}), {0.707107, 0.707107, -0.0, -0.707107}, 0, 32}, // seen edge-on
        {face_of({0, 1, 6}), {nan, nan, nan, nan}, 0, 32},
        {face_of({0, 1}), {9, 9, 9, 9}, 5, 48},
    };
    for (const Case& c : cases) {
        POLY3D face = c.face;
        for (double* plane : {face.plane, face.rotated_plane}) {
            std::fill_n(plane, 4, 9);
        }
        face.main_axis = 5;
        face.state_flags = c.flags == 48 ? 32 : 48;
        face.get_rotated_poly_eql(verts);
        EXPECT_EQ(face.main_axis, 5);
        face.set_poly_eql(verts);
        face.detect_rotated_poly_vis(nullptr);
        SCOPED_TRACE(&c - cases);
        EXPECT_PRED_FORMAT2(same_digits, std::to_array(face.plane), c.plane);
        EXPECT_PRED_FORMAT2(same_digits, std::to_array(face.rotated_plane), c.plane);
        EXPECT_EQ(face.main_axis, c.axis);
        EXPECT_EQ(face.state_flags, c.flags);
    }
}

TEST(Face, EdgeChains) {
    lines.RemoveAll();
    POLY3D faces[] = {face_of({0, 1, 2}), face_of({2, 1, 3})};
    faces[0].find_side(lines);
    faces[1].find_side(lines);
    EXPECT_EQ(lines.GetSize(), 5);
    EXPECT_EQ(ints(faces[1].lines), (Ints{1, 3, 4}));
    EXPECT_EQ(lines[1].start_vert, 1);
    EXPECT_EQ(lines[1].end_vert, 2);

    // Of several edges between two vertices the last one counts; a side without an edge gets 0, or
    // nothing where no later one has an edge.
    set_lines(lines, {{0, 1}, {1, 2}, {2, 0}, {1, 3}, {3, 2}, {1, 0}});
    const std::pair<POLY3D, Ints> by_verts[] = {{face_of({0, 1, 2}), {5, 1, 2}},
                                                {face_of({0, 3, 1, 2}), {0, 3, 1, 2}},
                                                {face_of({0, 1, 3, 9}), {5, 3}},
                                                {face_of({7, 7}, {1}), {}}};
    for (auto [face, expected] : by_verts) {
        face.vert_to_line(lines);
        EXPECT_EQ(ints(face.lines), expected);
    }

    // A triangle comes out turned against its first edge; more sides as the same steps leave them.
    set_lines(lines, {{0, 1}, {1, 2}, {2, 0}, {1, 0}, {2, 3}, {3, 0}});
    const std::pair<POLY3D, Ints> by_lines[] = {
        {face_of({0, 1, 2}, {0, 1, 2}), {0, 2, 1}},
        {face_of({1, 2, 0}, {0, 1, 2}), {0, 2, 1}},
        {face_of({0, 1, 2}, {3, 1, 2}), {1, 2, 0}},
        {face_of({}, {1, 2, 0}), {1, 0, 2}},
        {face_of({0, 1, 2, 3}, {0, 1, 4, 5}), {0, 2, 3, 1}},
        {face_of({7, 8, 9}, {0, 1}), {0, 1, 9}},
        {face_of({}, {4}), {2, 3}},
        {face_of({7, 8}, {}), {7, 8}},
        {face_of({7, 8}, {0, 6}), {7, 8}},
        {face_of({}, {0, 4, 4, 4}), {0, 1, 0, 1}}}; // edges that are not connected
    for (auto [face, expected] : by_lines) {
        face.line_to_vert(lines);
        EXPECT_EQ(ints(face.verts), expected);
    }
}

TEST(Face, ListQueries) {
    POLY3D face = face_of({4, 5, 6}, {8});
    for (const auto& [a, b, along] :
         {std::array{5, 6, 1}, {6, 5, -1}, {6, 4, 1}, {4, 6, -1}, {4, 4, 0}, {4, 7, 0}}) {
        int pair[] = {a, b};
        EXPECT_EQ(face.det_poly_include_line(pair), along);
    }
    EXPECT_EQ(face.point_range_in_poly(6), 2);
    EXPECT_EQ(face.point_range_in_poly(8), -1);
    EXPECT_EQ(face_of({2, 3, 3}).point_range_in_poly(3), 1);
    EXPECT_TRUE(face.is_composed_vert(4) && face.detect_line_in(8));
    EXPECT_FALSE(face.is_composed_vert(8) || face.detect_line_in(4));
    face = face_of({1, 2, 3, 4, 5}, {7, 8, 9});
    face.invert_poly_range();
    EXPECT_EQ(ints(face.verts), (Ints{5, 4, 3, 2, 1}));
    EXPECT_EQ(ints(face.lines), (Ints{7, 8, 9}));
    set_lines(lines, {{3, 7}, {4, 4}});
    EXPECT_EQ(lines[0].det_vert_at(3), 7);
    EXPECT_EQ(lines[0].det_vert_at(7), 3);
    EXPECT_EQ(lines[0].det_vert_at(5), -1);
    EXPECT_EQ(lines[1].det_vert_at(4), 4);
}

} // namespace
