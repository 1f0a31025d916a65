// Repaired files, which a check finds sound, and what cannot be repaired.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "kit/solids/any_file.h"
#include "kit/solids/file_check.h"
#include "kit/solids/file_repair.h"
#include "tests/support/dice.h"
#include "tests/support/scratch.h"

namespace korvel::test {
namespace {

using kit::FileKind;
using kit::TextFile;
using testing::ElementsAre;

class FileRepair : public Scratch {
protected:
    struct Result {
        std::vector<std::string> repairs;
        std::vector<std::string> remaining;
        std::string text;
    };

    // Repairs a file; the result is sound, and its own repair.
    Result repair(FileKind kind, const std::string& text) const {
        const kit::RepairedFile repaired = repair_file(TextFile("f", text), kind);
        Result result;
        for (const kit::Repair& repair : repaired.repairs) {
            result.repairs.push_back(repair.what + ": " + std::to_string(repair.count));
        }
        for (const kit::Finding& problem : repaired.remaining.problems) {
            result.remaining.push_back(std::to_string(problem.line) + ": " + problem.message);
        }
        if (repaired.is_sound()) {
            result.text = written(repaired);
            const TextFile again("again", result.text);
            EXPECT_TRUE(check_file(again, kind).problems.empty()) << result.text;
            const kit::RepairedFile twice = repair_file(again, kind);
            EXPECT_TRUE(twice.repairs.empty()) << twice.repairs.front().what;
            EXPECT_EQ(written(twice), result.text);
        }
        return result;
    }

private:
    std::string written(const kit::RepairedFile& repaired) const {
        write_completely(repaired, path("repaired"));
        return read("repaired");
    }
};

TEST_F(FileRepair, OfCurves) {
    const Result result = repair(FileKind::curves, "5 # curves\n4 0 0 0 0 5 5 0 0\n1 7 7\n"
                                                   "2 8 8 8 8\n0\n2 1 1 2 2\n");
    EXPECT_THAT(result.repairs, ElementsAre("repeated points of curves removed: 2",
                                            "curves of fewer than two points removed: 3"));
    EXPECT_EQ(result.text, "2\n3\n0 0\n5 5\n0 0\n2\n1 1\n2 2\n");
    EXPECT_THAT(repair(FileKind::curves, "1\n2 0 0\n5 x\n").remaining,
                ElementsAre("3: 'x' is not a number: expected the y of a point"));
}

TEST_F(FileRepair, OfRegions) {
    // A square with a hole without area, a region of two points, unused points and rings.
    const Result result =
        repair(FileKind::regions, "8\n0 0\n9 0\n9 9\n0 9\n9.000 0\n1.25 1\n2.5 2\n0.0000001 0\n"
                                  "5\n7 0 1 4 1 2 3 0\n3 5 6 5\n2 1 2\n3 0 1 2\n3 7 1 2\n"
                                  "3\n2 0 1\n1 2\n1 4\n");
    EXPECT_THAT(result.repairs,
                ElementsAre("repeated points of rings removed: 4", "holes without area removed: 1",
                            "regions without area removed: 1", "rings of no region removed: 3",
                            "points of no ring removed: 3"));
    EXPECT_EQ(result.text, "5\n0.000000 0.000000\n9.000000 0.000000\n9.000000 9.000000\n"
                           "0.000000 9.000000\n1e-07 0.000000\n2\n4\n0 1 2 3 \n3\n4 1 2 \n"
                           "2\n1\n0 \n1\n1 \n");
    EXPECT_EQ(repair(FileKind::regions, "1\n0 0\n0\n0\n").text, "0\n");
}

const std::string corners = "4\n0 0 0\n6 0 0\n0 6 0\n0 0 6\n";

TEST_F(FileRepair, OfAModel) {
    // Folded, doubled and inward faces, an empty body, and what nothing uses.
    const Result result =
        repair(FileKind::model, "5\n0 0 0\n6 0 0\n0 6 0\n0 0 6\n9 9 9\n7\n0 1 2\n0 1 3\n0 3 2\n"
                                "1 2 3\n1 1 2\n3 2 1\n0 1 2\n2\n7\n120 0.5 0.6\n0 1 2 3 4 5 5\n"
                                "0\n0 0 0\n");
    EXPECT_THAT(result.repairs,
                ElementsAre("faces with a vertex twice removed: 1",
                            "faces that a body has twice removed: 2",
                            "bodies without faces removed: 1", "faces of no body removed: 3",
                            "vertices of no face removed: 1", "faces turned outward: 1"));
    EXPECT_EQ(result.text, "4\n0.000000 0.000000 0.000000 \n6.000000 0.000000 0.000000 \n"
                           "0.000000 6.000000 0.000000 \n0.000000 0.000000 6.000000 \n"
                           "4\n0 2 1 \n0 1 3 \n0 3 2 \n1 2 3 \n1\n4\n"
                           "120.000000 0.500000 0.600000\n0 1 2 3 \n");

    EXPECT_THAT(
        repair(FileKind::model, corners + "3\n0 1 2\n0 1 3\n0 2 3\n1\n3\n0 0 0\n0 1 2\n").remaining,
        ElementsAre("11: body 0 is open at 3 edges"));
    EXPECT_THAT(repair(FileKind::model, corners + "4\n0 1 2\n0 1 9\n0 2 3\n1 2 3\n1\n4\n0 0 0\n"
                                                  "0 1 2 3\n")
                    .remaining,
                ElementsAre("8: the vertex of a face is 9, out of range: they go from 0 to 3"));
}

TEST_F(FileRepair, LeavesAClosedBodyWithAWallOfNoThicknessClosed) {
    const Result result =
        repair(FileKind::model, "5\n0 0 0\n6 0 0\n0 6 0\n0 0 6\n2 2 9\n6\n0 2 1\n0 1 3\n0 3 2\n"
                                "1 2 3\n0 1 4\n4 1 0\n1\n6\n0 0 0\n0 1 2 3 4 5\n");
    EXPECT_THAT(result.repairs,
                ElementsAre("faces that a body has twice removed: 2", "faces of no body removed: 2",
                            "vertices of no face removed: 1"));
}

TEST_F(FileRepair, JoinsTheVerticesOfSingleFaces) {
    const kit::Solids ball = kit::make_ball({1, 2, 3}, 5, 2);
    Dice dice;
    std::string vertices;
    std::string faces;
    std::string list;
    for (const kit::Face face : ball.faces()) {
        const int turn = dice(0, 1);
        for (int k = 0; k < 3; ++k) {
            const kit::Point3 at = face.corner(turn == 0 ? k : 2 - k);
            for (const double coordinate : at) {
                vertices += kit::shortest_digits(coordinate) + " ";
            }
            faces += std::to_string(3 * face.index() + k) + " ";
        }
        list += std::to_string(face.index()) + " ";
    }
    const std::string count = std::to_string(ball.face_count());
    const Result result =
        repair(FileKind::model, std::to_string(3 * ball.face_count()) + "\n" + vertices + "\n" +
                                    count + "\n" + faces + "\n1\n" + count + "\n0 0 0\n" + list);
    ASSERT_EQ(result.repairs.size(), 3U);
    const auto file = kit::read_any(TextFile("again", result.text));
    const auto& solids = std::get<kit::Solids>(file.contents);
    EXPECT_TRUE(solids[0].surface().is_clean());
    EXPECT_EQ(solids.vertex_count(), ball.vertex_count());
    EXPECT_NEAR(solids.volume(), ball.volume(), 1e-3);
}

} // namespace
} // namespace korvel::test
