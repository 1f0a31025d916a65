// Soups of faces become bodies, and bodies meshes.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "kit/kit.h"
#include "tests/support/dice.h"

namespace korvel::test {
namespace {

using testing::ElementsAre;

/// A cube in a soup of squares or triangles, each of which has points of its own.
struct Cube {
    kit::Point3 low;
    double size;
    bool is_turned = false; ///< inside out
};

void add_face(const std::vector<kit::Point3>& corners, kit::Mesh& mesh) {
    for (const kit::Point3& corner : corners) {
        mesh.corners.push_back(static_cast<int>(mesh.points.size()));
        mesh.points.push_back(corner);
    }
    mesh.face_ends.push_back(static_cast<unsigned>(mesh.corners.size()));
}

void add_cube(const Cube& cube, bool of_squares, kit::Mesh& mesh) {
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

std::vector<double> volumes_of(const kit::Solids& solids) {
    std::vector<double> volumes;
    for (const kit::Body body : solids) {
        volumes.push_back(body.surface().is_closed() ? body.volume() : -1);
    }
    std::sort(volumes.begin(), volumes.end());
    return volumes;
}

TEST(MeshSolids, MakesBodiesOfShells) {
    struct Case {
        std::string name;
        std::vector<Cube> cubes;
        std::vector<double> volumes;
        int cavities;
        int turned;
    };
    const std::vector<Case> cases = {
        {"apart", {{{0, 0, 0}, 1}, {{2, 0, 0}, 2}}, {1, 8}, 0, 0},
        {"one is inside out", {{{0, 0, 0}, 1}, {{2, 0, 0}, 2, true}}, {1, 8}, 0, 6},
        {"with a common wall", {{{0, 0, 0}, 2}, {{2, 0, 0}, 2}}, {8, 8}, 0, 0},
        {"with a common wall, inside out",
         {{{0, 0, 0}, 2, true}, {{2, 0, 0}, 2, true}},
         {8, 8},
         0,
         12},
        {"eight of them",
         {{{0, 0, 0}, 1},
          {{1, 0, 0}, 1},
          {{0, 1, 0}, 1},
          {{1, 1, 0}, 1},
          {{0, 0, 1}, 1},
          {{1, 0, 1}, 1},
          {{0, 1, 1}, 1},
          {{1, 1, 1}, 1}},
         {1, 1, 1, 1, 1, 1, 1, 1},
         0,
         0},
        {"with a common edge", {{{0, 0, 0}, 1}, {{1, 1, 0}, 1}}, {1, 1}, 0, 0},
        {"with a common corner", {{{0, 0, 0}, 1}, {{1, 1, 1}, 1}}, {1, 1}, 0, 0},
        {"a cavity", {{{0, 0, 0}, 4}, {{1, 1, 1}, 1, true}}, {63}, 1, 0},
        {"a cavity, all inside out", {{{0, 0, 0}, 4, true}, {{1, 1, 1}, 1}}, {63}, 1, 12},
        {"a body in a body", {{{0, 0, 0}, 4}, {{1, 1, 1}, 1}}, {1, 64}, 0, 0},
        {"a cavity that touches", {{{0, 0, 0}, 4}, {{0, 1, 1}, 1, true}}, {63}, 1, 0},
        {"a cavity with a body with a cavity",
         {{{0, 0, 0}, 9}, {{1, 1, 1}, 7, true}, {{2, 2, 2}, 5}, {{3, 3, 3}, 1, true}},
         {124, 386},
         2,
         0},
        {"concentric", {{{0, 0, 0}, 6}, {{2, 2, 2}, 2, true}}, {208}, 1, 0},
        {"twice the same", {{{0, 0, 0}, 1}, {{0, 0, 0}, 1}}, {1}, 0, 0},
    };
    for (const Case& each : cases) {
        for (const double place : {0.0, 4e6}) {
            for (const bool of_squares : {false, true}) {
                SCOPED_TRACE(each.name + " at " + std::to_string(place));
                kit::Mesh mesh;
                for (Cube cube : each.cubes) {
                    cube.low[1] += place;
                    add_cube(cube, of_squares, mesh);
                }
                kit::MeshReport report;
                const kit::Solids solids = kit::solids_of(mesh, {}, &report);
                EXPECT_EQ(volumes_of(solids), each.volumes);
                EXPECT_EQ(report.cavities, each.cavities);
                EXPECT_EQ(report.faces_turned, each.turned * (of_squares ? 1 : 2));
                EXPECT_EQ(report.open_edges, 0);
                EXPECT_EQ(volumes_of(kit::solids_of(kit::mesh_of(solids))), each.volumes);
            }
        }
    }
}

std::vector<std::string> messages(const std::vector<kit::Finding>& findings) {
    std::vector<std::string> all;
    for (const kit::Finding& finding : findings) {
        all.push_back(finding.message);
    }
    return all;
}

/// A cube without its last face, with one that is turned, one that is there twice, one with a point
/// twice and one without area.
kit::Mesh damaged_cube() {
    kit::Mesh mesh;
    add_cube({{0, 0, 0}, 2}, false, mesh);
    mesh.corners.resize(33);
    mesh.face_ends.resize(11);
    std::swap(mesh.corners[3], mesh.corners[4]);
    add_face({{0, 0, 0}, {0, 2, 0}, {2, 2, 0}}, mesh);
    add_face({{0, 0, 0}, {0, 0, 0}, {2, 2, 0}}, mesh);
    add_face({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}, mesh);
    mesh.points.push_back({7, 7, 7});
    return mesh;
}

TEST(MeshCheck, NamesWhatIsWrongAndRepairsIt) {
    const kit::Mesh mesh = damaged_cube();
    const kit::Findings findings = kit::check_mesh(mesh);
    EXPECT_THAT(messages(findings.problems),
                ElementsAre("face 12 has point 39 twice", "body 0 is open at 3 edges",
                            "1 face equals another one of the same body"));
    EXPECT_THAT(messages(findings.notes),
                ElementsAre("face 13 has no area", "1 face runs against the neighbours or inward",
                            "33 points are at the position of another one",
                            "point 33 and 3 more belong to no face"));

    const kit::RepairedMesh repaired = kit::repair_mesh(mesh);
    std::vector<std::pair<std::string, int>> repairs;
    for (const kit::Repair& repair : repaired.repairs) {
        repairs.emplace_back(repair.what, repair.count);
    }
    EXPECT_THAT(repairs,
                ElementsAre(std::pair("points at the position of another joined to it", 33),
                            std::pair("faces without an area removed", 2),
                            std::pair("faces that a body has twice removed", 1),
                            std::pair("faces turned outward", 1)));
    EXPECT_EQ(repaired.solids.face_count(), 11);
    EXPECT_THAT(messages(repaired.remaining.problems), ElementsAre("body 0 is open at 3 edges"));
}

} // namespace
} // namespace korvel::test
