#pragma once

#include <gtest/gtest.h>

#include "kit/files/mesh.h"

namespace korvel::test {

/// Two tetrahedra on a grid of millimetres far from the origin, the second one without a name.
inline kit::Mesh two_bodies() {
    kit::Mesh mesh;
    mesh.placement = {.grid = kit::Grid(1, 1000, {3500000, 5500000, 100}),
                      .reference = "EPSG:31467"};
    for (const double x : {0.0, 12345.0}) {
        for (const kit::Point3& steps :
             {kit::Point3{x, 0, 0}, {x + 1001, 0, 0}, {x, 2003, 7}, {x, 0, 5009}}) {
            mesh.points.push_back(mesh.placement.grid.to_user(steps));
        }
    }
    mesh.corners = {0, 2, 1, 0, 1, 3, 1, 2, 3, 2, 0, 3, 4, 6, 5, 4, 5, 7, 5, 6, 7, 6, 4, 7};
    mesh.parts = {
        {.name = "T\xC3\xBCrm #1 \"east\"", .colour = kit::Colour{0xD1, 0x90, 0x60}, .face_end = 4},
        {.face_end = 8}};
    mesh.parts_are_bodies = true;
    return mesh;
}

inline void expect_same_mesh(const kit::Mesh& one, const kit::Mesh& other) {
    EXPECT_EQ(one.points, other.points);
    EXPECT_EQ(one.corners, other.corners);
    EXPECT_EQ(one.face_ends, other.face_ends);
    EXPECT_EQ(one.point_colours, other.point_colours);
    EXPECT_EQ(one.face_colours, other.face_colours);
    EXPECT_EQ(one.parts_are_bodies, other.parts_are_bodies);
    EXPECT_EQ(one.placement, other.placement);
    ASSERT_EQ(one.parts.size(), other.parts.size());
    for (std::size_t i = 0; i < one.parts.size(); ++i) {
        EXPECT_EQ(one.parts[i].name, other.parts[i].name);
        EXPECT_EQ(one.parts[i].colour, other.parts[i].colour);
        EXPECT_EQ(one.parts[i].face_end, other.parts[i].face_end);
    }
}

} // namespace korvel::test
