// Vertices, edges and faces: equations, chains, list queries and copies.

#include <array>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/record_state.h"

using namespace korvel::test;

namespace {

CArray<VERT3D, VERT3D&> verts;
CArray<LINE3D, LINE3D&> lines;

TEST(Edge, Equations) {
    // From, to; direction, length, axis (of equals the lower) and line in the view, whose divisor
    // includes c and which is 0.701 0.701 0 where everything vanishes.
    const std::pair<std::array<double, 6>, std::string> cases[] = {
        {{0, 0, 0, 0, 0, -2}, "( 0 0 -1 ) 2 2 ( 0.701 0.701 0 ) "},
        {{3, 4, 0, 3, 4, 1}, "( 0 0 1 ) 1 2 ( 0.701 0.701 0 ) "},
        {{3, 4, 0, 3, 4, 0}, "( nan nan nan ) 0 0 ( 0.701 0.701 0 ) "},
        {{0, 0, 0, 1e-8, 0, 0}, "( 1 0 0 ) 1e-08 0 ( 0.701 0.701 0 ) "}, // not above 1e-8
        {{0, 0, 0, 2e-8, 0, 0}, "( 1 0 0 ) 2e-08 0 ( 0 -1 -0 ) "},
        {{0, 0, 7, -2, 1, 9}, "( -0.666667 0.333333 0.666667 ) 3 0 ( 0.447214 0.894427 -0 ) "},
        {{1, 1, 1, 4, 5, 1}, "( 0.6 0.8 0 ) 5 1 ( 0.784465 -0.588348 -0.196116 ) "},
        {{0, 1, 0, 1, -1, 2},
         "( 0.333333 -0.666667 0.666667 ) 3 1 ( -0.816497 -0.408248 0.408248 ) "},
        {{0, 1, 0, 2, 1, 0}, "( 1 0 0 ) 2 0 ( 0 -0.707107 0.707107 ) "},
    };
    for (const auto& [p, expected] : cases) {
        set_verts(verts, {{p[0], p[1], p[2]}, {p[3], p[4], p[5]}});
        LINE3D line;
        line.set_line_point(0, 1);
        line.set_line_eqt(verts);
        line.set_line_2d_eqt(verts);
        EXPECT_EQ(text_of("%g", line.direction, line.length, line.main_axis, line.line_2d_eqt),
                  expected);
    }
}

TEST(Face, PlaneAndFacing) {
    set_verts(verts, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {5, 5, 2}, {0, 1, 2}, {1, 0, 2}, {2, 0, 0}});
    // Plane, axis, and the flags after 32 or 32 + 16.
    const std::pair<POLY3D, std::string> cases[] = {
        {face_of({0, 1, 2}), "( 0 0 1 -0 ) 2 48 "},
        {face_of({0, 2, 1}), "( 0 0 -1 -0 ) 2 32 "},
        {face_of({1, 2, 0, 3}), "( 0 0 1 -0 ) 2 48 "}, // the first three vertices alone count
        {face_of({2, 4, 1}), "( 0.707107 0.707107 -0 -0.707107 ) 0 32 "}, // seen edge-on
        {face_of({0, 1, 6}), "( nan nan nan nan ) 0 32 "},
        {face_of({0, 1}), "( 9 9 9 9 ) 5 48 "},
    };
    for (auto [face, expected] : cases) {
        for (double* plane : {face.plane, face.rotated_plane}) {
            std::fill_n(plane, 4, 9);
        }
        face.main_axis = 5;
        face.state_flags = expected.find("48") == std::string::npos ? 48 : 32;
        face.get_rotated_poly_eql(verts);
        EXPECT_EQ(face.main_axis, 5);
        face.set_poly_eql(verts);
        face.detect_rotated_poly_vis(nullptr);
        EXPECT_EQ(text_of("%g", face.plane, face.main_axis, face.state_flags), expected);
        EXPECT_EQ(text_of("%g", face.plane), text_of("%g", face.rotated_plane));
    }
}

TEST(Face, EdgeChains) {
    lines.RemoveAll();
    POLY3D faces[] = {face_of({0, 1, 2}), face_of({2, 1, 3})};
    faces[0].find_side(lines);
    faces[1].find_side(lines);
    EXPECT_EQ(lines.GetSize(), 5);
    EXPECT_EQ(text_of("%g", faces[1].lines, lines[1].start_vert, lines[1].end_vert),
              "( 1 3 4 ) 1 2 ");

    // Of several edges between two vertices the last one counts; a side without an edge gets 0, or
    // nothing where no later one has an edge.
    set_lines(lines, {{0, 1}, {1, 2}, {2, 0}, {1, 3}, {3, 2}, {1, 0}});
    const std::pair<POLY3D, std::string> by_verts[] = {{face_of({0, 1, 2}), "( 5 1 2 ) "},
                                                       {face_of({0, 3, 1, 2}), "( 0 3 1 2 ) "},
                                                       {face_of({0, 1, 3, 9}), "( 5 3 ) "},
                                                       {face_of({7, 7}, {1}), "( ) "}};
    for (auto [face, expected] : by_verts) {
        face.vert_to_line(lines);
        EXPECT_EQ(text_of("%g", face.lines), expected);
    }

    // A triangle comes out turned against its first edge; more sides as the same steps leave them.
    set_lines(lines, {{0, 1}, {1, 2}, {2, 0}, {1, 0}, {2, 3}, {3, 0}});
    const std::pair<POLY3D, std::string> by_lines[] = {
        {face_of({0, 1, 2}, {0, 1, 2}), "( 0 2 1 ) "},
        {face_of({1, 2, 0}, {0, 1, 2}), "( 0 2 1 ) "},
        {face_of({0, 1, 2}, {3, 1, 2}), "( 1 2 0 ) "},
        {face_of({}, {1, 2, 0}), "( 1 0 2 ) "},
        {face_of({0, 1, 2, 3}, {0, 1, 4, 5}), "( 0 2 3 1 ) "},
        {face_of({7, 8, 9}, {0, 1}), "( 0 1 9 ) "},
        {face_of({}, {4}), "( 2 3 ) "},
        {face_of({7, 8}, {}), "( 7 8 ) "},
        {face_of({7, 8}, {0, 6}), "( 7 8 ) "},
        {face_of({}, {0, 4, 4, 4}), "( 0 1 0 1 ) "}}; // edges that do not hang together
    for (auto [face, expected] : by_lines) {
        face.line_to_vert(lines);
        EXPECT_EQ(text_of("%g", face.verts), expected);
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
    EXPECT_EQ(text_of("%g", face.verts, face.lines), "( 5 4 3 2 1 ) ( 7 8 9 ) ");
    set_lines(lines, {{3, 7}, {4, 4}});
    EXPECT_EQ(lines[0].det_vert_at(3), 7);
    EXPECT_EQ(lines[0].det_vert_at(7), 3);
    EXPECT_EQ(lines[0].det_vert_at(5), -1);
    EXPECT_EQ(lines[1].det_vert_at(4), 4);
}

} // namespace
