// What is wrong with a mesh is named, and repaired as far as it can be.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "kit/kit.h"
#include "tests/kit/cube_mesh.h"

namespace korvel::test {
namespace {

using testing::ElementsAre;

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
