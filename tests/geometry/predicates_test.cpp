// View transforms, and the questions that faces answer from coordinates.

#include <algorithm>
#include <array>

#include <gtest/gtest.h>

#include "korvel/geometry/view_transform.h"
#include "tests/support/record_state.h"

using namespace korvel::test;

namespace {

TEST(ViewTransform, Matrices) {
    double back[16];
    double into[16];
    double dir[3];
    for (const auto& [a, b] : {std::pair(0.0, 0.0),
                               {90.0, 0.0},
                               {0.0, 90.0},
                               {5.0, 5.0},
                               {-37.0, 0.0},
                               {0.0, -120.0},
                               {1e6, -0.25},
                               {180.0, 180.0}}) {
        rate_xyz_matrix(a, b, back, into, dir);
        const double c1 = std::cos(a * 0.017453292519943295);
        const double s1 = std::sin(a * 0.017453292519943295);
        const double c2 = std::cos(b * 0.017453292519943295);
        const double s2 = std::sin(b * 0.017453292519943295);
        double expected[16] = {c2,       s2,      0,  0, -c1 * s2, c1 * c2, -s1, 0,
                               -s1 * s2, s1 * c2, c1, 0, 0,        0,       0,   1};
        double transposed[16];
        for (int i = 0; i < 16; ++i) {
            expected[i] += 0.0; // no negative zeros
            transposed[i % 4 * 4 + i / 4] = expected[i];
        }
        EXPECT_PRED_FORMAT2(same_state, back, expected) << a << ' ' << b;
        EXPECT_PRED_FORMAT2(same_state, into, transposed) << a << ' ' << b;
        EXPECT_PRED_FORMAT2(same_state, point(dir), point(expected + 8)) << a << ' ' << b;
    }
}

TEST(ViewTransform, TurnedPoints) {
    struct Case {
        double a, b, model[3], view[3];
    };
    const Case cases[] = {
        {0, 0, {1, 2, 3}, {1, 2, 3}},    {90, 0, {0, 1, 0}, {0, 0, 1}},
        {90, 0, {0, 0, 1}, {0, -1, 0}},  {0, 90, {1, 0, 0}, {0, -1, 0}},
        {90, 90, {-1, 0, 0}, {0, 0, 1}},
    };
    for (const Case& c : cases) {
        double back[16];
        double into[16];
        double dir[3];
        double centre[3] = {0.5, -4, 8};
        rate_xyz_matrix(c.a, c.b, back, into, dir);
        VERT3D vertex;
        std::copy_n(c.model, 3, vertex.model_xyz);
        vertex.backvert();
        vertex.rotate(into);
        vertex.backtempvert();
        vertex.trans_uvw_org(centre);
        vertex.ant_rotate(back, centre);
        for (int k = 0; k < 3; ++k) {
            EXPECT_NEAR(vertex.temp_view_xyz[k], c.view[k], 1e-15);
            EXPECT_NEAR(vertex.view_xyz[k], c.view[k] - centre[k], 1e-15);
            EXPECT_NEAR(vertex.model_xyz[k], c.model[k], 2e-15);
        }
        vertex.model_xyz[0] = vertex.view_xyz[0] = 70;
        vertex.restorvert();
        vertex.copytemvert();
        EXPECT_EQ(vertex.model_xyz[0], c.model[0]);
        EXPECT_NEAR(vertex.view_xyz[0], c.view[0], 1e-15);
    }
}

TEST(FacePredicates, PointInside) {
    CArray<VERT3D, VERT3D&> verts;
    set_verts(verts, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 0}});
    struct Case {
        POLY3D face;
        double point[3];
        bool in_view, in_space;
    };
    // Across axis 2 the space test projects on (y, x): a face that the view sees counter-clockwise
    // runs clockwise there, and its border is outside.
    const Case cases[] = {
        {face_of({0, 1, 2}), {0.2, 0.2, 0}, true, true},
        {face_of({0, 2, 1}), {0.2, 0.2, 0}, false, true},
        {face_of({0, 1, 2}), {1, 1, 0}, false, false},
        {face_of({0, 2, 1}), {1, 1, 0}, false, false},
        {face_of({0, 1, 2}), {0.5, 0, 0}, true, false},
        {face_of({0, 2, 1}), {0.5, 0, 0}, false, true},
        {face_of({0, 1, 4, 2}), {0.9, 0.9, 0}, true, true},
        {face_of({0, 2, 3}), {0, 0.2, 0.2}, true, true}, // across axis 0: (z, y)
        {face_of({0, 2, 3}), {0, 0.5, 0.6}, true, false},
        {face_of({0, 3, 1}), {0.2, 0, 0.2}, true, true}, // across axis 1: (x, z)
        {face_of({0, 3, 1}), {0.6, 0, 0.6}, true, false},
        {face_of({0, 1}), {0.5, 0, 0}, false, false},
    };
    for (Case c : cases) {
        c.face.set_poly_eql(verts);
        EXPECT_EQ(c.face.det_point_in_con_poly(c.point, &verts), c.in_view) << c.point[0];
        EXPECT_EQ(c.face.det_3dpoint_in_con_poly(c.point, verts), c.in_space) << c.point[0];
    }
}

TEST(FacePredicates, EdgePiercesFace) {
    CArray<VERT3D, VERT3D&> verts;
    // What the edge of length 0 and the face without a normal give is not a number, and inside.
    const std::pair<std::array<double, 6>, bool> cases[] = {
        {{0.2, 0.2, -1, 0.2, 0.2, 1}, true}, {{0.2, 0.2, 1, 0.2, 0.2, 0}, true}, // ends count
        {{0.2, 0.2, 0, 0.3, 0.2, 1}, true},  {{0.2, 0.2, 1, 0.2, 0.2, 0.25}, false},
        {{2, 2, -1, 2, 2, 1}, false},        {{0, 0, 1, 1, 0, 1}, false},
        {{0, 0.25, 0, 1, 0.25, 0}, false},   {{0.5, 0, -1, 0.5, 0, 1}, false}, // the border
        {{0.2, 0.2, 1, 0.2, 0.2, 1}, true},
    };
    for (const auto& [p, pierces] : cases) {
        set_verts(
            verts,
            {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {2, 0, 0}, {p[0], p[1], p[2]}, {p[3], p[4], p[5]}});
        POLY3D triangle = face_of({0, 1, 2});
        POLY3D flat = face_of({0, 1, 3});
        triangle.set_poly_eql(verts);
        flat.set_poly_eql(verts);
        LINE3D line;
        line.set_line_point(4, 5);
        line.set_line_eqt(verts);
        EXPECT_EQ(line.detect_line_cross_poly(triangle, verts), pierces) << p[0] << ' ' << p[5];
        EXPECT_TRUE(line.detect_line_cross_poly(flat, verts));
    }
}

TEST(FacePredicates, VolumeNearestVertexAndEdge) {
    CArray<VERT3D, VERT3D&> verts;
    set_verts(verts, {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {9, 9, 9}, {0, 2, -3}});
    EXPECT_EQ(face_of({0, 1, 2}).poly_volume(verts), 1);
    EXPECT_EQ(face_of({0, 2, 1, 3}).poly_volume(verts), -1);
    EXPECT_EQ(face_of({3, 1, 4}).poly_volume(verts), -27);

    set_verts(verts, {{0, 0, 0}, {2, 0, 9}, {2, 2, 0}, {0, 2, 0}});
    double p[] = {1, 0.5};
    EXPECT_EQ(face_of({2, 1, 0}).get_uvw_near_point(verts, p), 1); // the first of equals
    EXPECT_EQ(face_of({0, 2, 1}).get_uvw_near_point(verts, p), 0);
    EXPECT_EQ(face_of({}).get_uvw_near_point(verts, p), 0);

    verts[1].model_xyz[0] = 4; // twice as long as it is seen
    verts[1].model_xyz[2] = 0;
    CArray<LINE3D, LINE3D&> lines;
    set_lines(lines, {{0, 3}, {0, 1}, {1, 0}, {2, 3}});
    for (LINE3D& line : lines) {
        line.set_line_eqt(verts);
        line.set_line_2d_eqt(verts);
    }
    struct Case {
        POLY3D face;
        double p[2];
        int edge;
        Point nearest;
    };
    const Case cases[] = {
        {face_of({}, {1}), {0.5, 1}, 1, {1, 0, 0}},
        {face_of({}, {2}), {0.5, 1}, 2, {1, 0, 0}},
        {face_of({}, {1}), {-0.5, 1}, 1, {1, 0, 0}}, // always on the end side of the start
        {face_of({}, {1}), {3, 1}, 1, {6, 0, 0}},    // and not kept on the edge
        {face_of({}, {0, 1, 3}), {1, 1}, 0, {0, 1, 0}},
        {face_of({}, {3, 1, 0}), {1, 1}, 3, {1, 2, 0}},
        {face_of({}, {3, 1, 0}), {0.25, 0.75}, 0, {0, 0.75, 0}},
        {face_of({}, {}), {0, 0}, 0, {7, 7, 7}},
    };
    for (Case c : cases) {
        double q[3] = {7, 7, 7};
        EXPECT_EQ(c.face.get_uvw_near_side(verts, lines, c.p, q), c.edge);
        EXPECT_PRED_FORMAT2(same_digits, point(q), c.nearest);
    }
}

TEST(FacePredicates, NumbersOutsideTheArraysAreHarmless) {
    CArray<VERT3D, VERT3D&> verts;
    set_verts(verts, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
    CArray<LINE3D, LINE3D&> lines;
    lines.SetSize(1);
    for (const int bad : {-1, 3, 2147483647, -2147483647 - 1}) {
        for (int corner = 0; corner < 3; ++corner) {
            POLY3D face = face_of({0, 1, 2}, {0, 0, 0});
            face.verts[corner] = face.lines[corner] = bad;
            face.set_poly_eql(verts);
            face.get_rotated_poly_eql(verts);
            double p[3] = {0.2, 0.2, 0};
            EXPECT_FALSE(face.det_point_in_con_poly(p, &verts));
            EXPECT_FALSE(face.det_3dpoint_in_con_poly(p, verts));
            EXPECT_EQ(face.poly_volume(verts), 0);
            face.get_uvw_near_point(verts, p);
            face.get_uvw_near_side(verts, lines, p, p);
            face.line_to_vert(lines);
            EXPECT_EQ(face.verts[corner], bad);
            lines[0].set_line_point(corner == 0 ? bad : 0, corner == 0 ? 0 : bad);
            lines[0].set_line_eqt(verts);
            lines[0].set_line_2d_eqt(verts);
            EXPECT_EQ(lines[0].length, 0);
        }
    }
}

} // namespace
