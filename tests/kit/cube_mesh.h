#pragma once

#include <algorithm>
#include <vector>

#include "kit/kit.h"

namespace korvel::test {

/// A cube in a soup of squares or triangles, each of which has points of its own.
struct Cube {
    kit::Point3 low;
    double size;
    bool is_turned = false; ///< inside out
};

inline void add_face(const std::vector<kit::Point3>& corners, kit::Mesh& mesh) {
    for (const kit::Point3& corner : corners) {
        mesh.corners.push_back(static_cast<int>(mesh.points.size()));
        mesh.points.push_back(corner);
    }
    mesh.face_ends.push_back(static_cast<unsigned>(mesh.corners.size()));
}

inline void add_cube(const Cube& cube, bool of_squares, kit::Mesh& mesh) {
    const auto at = [&](int x, int y, int z) {
        return kit::Point3{cube.low[0] + x * cube.size, cube.low[1] + y * cube.size,
                           cube.low[2] + z * cube.size};
    };
    const std::vector<std::vector<kit::Point3>> squares = {
        {at(0, 0, 0), at(0, 1, 0), at(1, 1, 0), at(1, 0, 0)},
        {at(0, 0, 1), at(1, 0, 1), at(1, 1, 1), at(0, 1, 1)},
        {at(0, 0, 0), at(1, 0, 0), at(1, 0, 1), at(0, 0, 1)},
        {at(0, 1, 0), at(0, 1, 1), at(1, 1, 1), at(1, 1, 0)},
        {at(0, 0, 0), at(0, 0, 1), at(0, 1, 1), at(0, 1, 0)},
        {at(1, 0, 0), at(1, 1, 0), at(1, 1, 1), at(1, 0, 1)}};
    for (std::vector<kit::Point3> square : squares) {
        if (cube.is_turned) {
            std::reverse(square.begin(), square.end());
        }
        if (of_squares) {
            add_face(square, mesh);
        } else {
            add_face({square[0], square[1], square[2]}, mesh);
            add_face({square[0], square[2], square[3]}, mesh);
        }
    }
}

} // namespace korvel::test
