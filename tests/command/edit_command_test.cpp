#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "kit/files/model_file.h"
#include "kit/solids/inside.h"
#include "tests/support/command_scratch.h"
#include "tests/support/dice.h"
#include "tests/support/lists.h"
#include "tests/support/streams.h"

namespace korvel::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

const std::string bright_tetrahedron = tetrahedron("500 -1 2.5");
// Two bodies on either side of face 0, which is listed once; vertex 0 is in no face, face 1 in no
// body.
const std::string neighbours = "6\n9 9 9\n0 0 0\n4 0 0\n0 3 0\n.5 .75 3\n1 1 -2\n"
                               "8\n1 2 3\n2 3 5\n1 2 4\n2 3 4\n3 1 4\n1 2 5\n2 3 5\n3 1 5\n"
                               "2\n4 120 .5 .5\n0 2 3 4\n4 0 0 0\n0 5 6 7\n";

class EditCommand : public CommandScratch {
protected:
    TMOD3D model(const std::string& name) const {
        TMOD3D model;
        kit::read_model(kit::TextFile(path(name)), model);
        return model;
    }

    static std::string text_of(TMOD3D& model) {
        return written([&](FILE* stream) { model.write_mode(stream); });
    }

    static std::vector<Point> points(const TMOD3D& model) {
        std::vector<Point> all;
        for (const VERT3D& vertex : model.verts) {
            all.push_back({vertex.model_xyz[0], vertex.model_xyz[1], vertex.model_xyz[2]});
        }
        return all;
    }

    /// The corners of the faces of a body, in any order, as points.
    static std::multiset<std::set<Point>> triangles(const TMOD3D& model, int body) {
        const std::vector<Point> positions = points(model);
        std::multiset<std::set<Point>> all;
        for (const int f : model.bodies[body].polys) {
            std::set<Point> corners;
            for (const int v : model.polys[f].verts) {
                corners.insert(positions[v]);
            }
            all.insert(corners);
        }
        return all;
    }

    static void expect_equal_body(const TMOD3D& a, int in_a, const TMOD3D& b, int in_b) {
        EXPECT_EQ(triangles(a, in_a), triangles(b, in_b));
        EXPECT_EQ(a.bodies[in_a].volume, b.bodies[in_b].volume);
        EXPECT_EQ(a.bodies[in_a].param_1, b.bodies[in_b].param_1);
        EXPECT_EQ(a.bodies[in_a].param_2, b.bodies[in_b].param_2);
        EXPECT_EQ(a.bodies[in_a].param_3, b.bodies[in_b].param_3);
    }
};

TEST_F(EditCommand, MergedModelsKeepWhatEachHeld) {
    write("t", bright_tetrahedron);
    write("n", neighbours);
    const Result merge = run("merge t n t -o m");
    EXPECT_EQ(merge.status, 0);
    EXPECT_EQ(merge.err, "");
    EXPECT_THAT(merge.out, StartsWith("t: 1 body, 4 vertices, 6 edges, 4 faces, volume 36\n"
                                      "n: 2 bodies, 6 vertices, 9 edges, 8 faces, volume 10\n"));
    EXPECT_THAT(merge.out, HasSubstr("together: 4 bodies, 14 vertices, 21 edges, 16 faces, "));
    const TMOD3D merged = model("m");
    TMOD3D added;
    int body = 0;
    for (const char* const name : {"t", "n", "t"}) {
        TMOD3D part = model(name);
        for (int b = 0; b < part.bodies.GetSize(); ++b) {
            expect_equal_body(merged, body++, part, b);
        }
        added.add_model(part);
    }
    EXPECT_EQ(read("m"), text_of(added)) << "as if added one by one";
    EXPECT_THAT(run("merge t t -o t").out, HasSubstr("together: 2 bodies, 8 vertices"));
    EXPECT_EQ(model("t").bodies.GetSize(), 2) << "an input may be the output";
}

TEST_F(EditCommand, CleanTakesOutWhatIsNotUsed) {
    write("t", bright_tetrahedron);
    write("n", neighbours);
    EXPECT_THAT(run("clean n -o c").out, HasSubstr("taken out: 0 bodies, 1 face, 1 vertex\n"
                                                   "left: 2 bodies, 5 vertices, 9 edges, 7 faces"));
    EXPECT_EQ(points(model("c")).front(), (Point{0, 0, 0}));
    // The shared face stays with the other body.
    EXPECT_THAT(run("clean n --delete 0 -o c").out,
                HasSubstr("n: 2 bodies, 8 faces, 6 vertices\n"
                          "taken out: 1 body, 4 faces, 2 vertices\nleft: 1 body, 4 vertices"));
    expect_equal_body(model("c"), 0, model("n"), 1);

    ASSERT_EQ(run("merge n t n -o m").status, 0);
    ASSERT_EQ(run("clean m --delete 1 --delete 4 --delete 0 --delete 1 -o c").status, 0);
    TMOD3D one_by_one = model("m");
    for (const int body : {4, 1, 0}) {
        one_by_one.deletet(body);
    }
    EXPECT_EQ(points(model("c")), points(one_by_one));
    expect_equal_body(model("c"), 0, model("t"), 0);
    expect_equal_body(model("c"), 1, model("n"), 0);
}

TEST_F(EditCommand, InsideAgreesWithThePlan) {
    // A plate with two holes, the left one filled by a region of its own.
    write("r", "12\n0.0 0.0\n10.0 0.0\n10.0 8.0\n0.0 8.0\n2.0 2.0\n4.0 2.0\n4.0 6.0\n2.0 6.0\n"
               "6.0 2.0\n8.0 2.0\n8.0 6.0\n6.0 6.0\n"
               "3\n4 0 1 2 3\n4 4 5 6 7\n4 8 9 10 11\n2\n3 0 1 2\n1 1\n");
    ASSERT_EQ(run("solid r --levels 0,5 -o m").status, 0);
    TMOD3D plate = model("m");
    const auto planned = [](const Point& p) {
        const auto lies = [&](double left, double right, double low, double high) {
            return p[0] > left && p[0] < right && p[1] > low && p[1] < high && p[2] > 0 && p[2] < 5;
        };
        if (lies(2, 4, 2, 6)) {
            return 1;
        }
        return lies(0, 10, 0, 8) && !lies(6, 8, 2, 6) ? 0 : -1;
    };
    Dice dice(5);
    const auto anywhere = [&] { return dice.between(-1, 11); };
    const auto lattice = [&] { return dice(-1, 10) + 0.5; };
    for (int i = 0; i < 3000; ++i) {
        // Half of them in line with corners and with the diagonals of walls and caps.
        Point p = {anywhere(), anywhere(), anywhere()};
        if (i % 2 != 0) {
            p = {lattice(), lattice(), lattice()};
        }
        EXPECT_EQ(kit::body_at(plate, p), planned(p)) << p[0] << ' ' << p[1] << ' ' << p[2];
    }
    const Result asked = run("inside m -1,1,1 1,1,1 3,3,3 7,3,3 .5,.5,.5");
    EXPECT_EQ(asked.err, "");
    EXPECT_EQ(asked.out, "-1,1,1 none\n1,1,1 0\n3,3,3 1\n7,3,3 none\n.5,.5,.5 0\n");
    write("open", "4\n0 0 0\n6 0 0\n0 6 0\n0 0 6\n3\n0 1 2\n0 1 3\n0 2 3\n1\n3\n0 0 0\n0 1 2\n");
    EXPECT_EQ(
        run("inside open 9,9,9").err,
        "korvel: warning: open: body 0 is open at 3 edges, the answers for it are uncertain\n");
}

TEST_F(EditCommand, InsideAgreesWithSignedVolumes) {
    ASSERT_EQ(run("starter ball --size 2 --center 3,4,5 --rounds 2 -o m").status, 0);
    TMOD3D ball = model("m");
    Dice dice(6);
    const auto off = [&] { return dice.between(-2.2, 2.2); };
    int inside = 0;
    for (int i = 0; i < 1000; ++i) {
        const Point p = {3 + off(), 4 + off(), 5 + off()};
        // Convex: inside is where every face, seen from p, runs the same way round.
        const bool is_inside =
            std::all_of(ball.polys.begin(), ball.polys.end(), [&](const POLY3D& face) {
                double d[3][3];
                for (int k = 0; k < 9; ++k) {
                    d[k / 3][k % 3] = ball.verts[face.verts[k / 3]].model_xyz[k % 3] - p[k % 3];
                }
                return d[0][0] * (d[1][1] * d[2][2] - d[1][2] * d[2][1]) +
                           d[0][1] * (d[1][2] * d[2][0] - d[1][0] * d[2][2]) +
                           d[0][2] * (d[1][0] * d[2][1] - d[1][1] * d[2][0]) >
                       0;
            });
        EXPECT_EQ(kit::body_at(ball, p), is_inside ? 0 : -1);
        inside += is_inside ? 1 : 0;
    }
    EXPECT_GT(inside, 200);
    EXPECT_LT(inside, 800);
}

TEST_F(EditCommand, MovesABodyAlongTheAxesOfTheView) {
    ASSERT_EQ(run("starter cube --size 4,4,4 -o a").status, 0);
    ASSERT_EQ(run("starter cube --size 2,2,2 --center 20,0,0 -o b").status, 0);
    ASSERT_EQ(run("merge a b -o m").status, 0);
    const std::vector<Point> before = points(model("m"));
    // cos 60 = sin 30 = 1/2, cos 30 = sin 60 = h
    const double h = std::sqrt(0.75);
    const std::vector<std::pair<const char*, Point>> table = {
        {"--by -1.5,2,.25", {-1.5, 2, 0.25}},
        {"--by 3,0", {3, 0, 0}},
        {"--by-view 8,0,0 --angles 30,60", {8 * h, 4, 0}},
        {"--by-view 0,8 --angles 30,60", {-2, 4 * h, -8 * h}},
        {"--by-view 0,0,8 --angles 30,60", {-4 * h, 6, 4}},
        {"--by-view 0,-5 --angles 0,90", {0, 0, 5}},
        {"--by-view 8,0", {8 * h, 4, 0}}, // in the view of 30,-60
    };
    for (const auto& [arguments, shift] : table) {
        const Result move = run(std::string("move m --body 1 -o o ") + arguments);
        EXPECT_EQ(move.err, "");
        EXPECT_THAT(move.out, StartsWith("m: 14 vertices moved\n2 bodies, 28 vertices, 72 edges, "
                                         "48 faces, volume "));
        const std::vector<Point> after = points(model("o"));
        for (std::size_t v = 0; v < before.size(); ++v) {
            for (int k = 0; k < 3; ++k) {
                EXPECT_NEAR(after[v][k], before[v][k] + (v < 14 ? 0 : shift[k]), 2e-6) << arguments;
            }
        }
    }
}

TEST_F(EditCommand, MovesFadeOutAroundAVertex) {
    // Vertices 1 and 2 are next to vertex 0, 3 is next to those, 4 and 5 are next to 3.
    write("m", "6\n0 0 0\n1 0 0\n0 4 0\n0 16 0\n-3 30 0\n3 30 0\n3\n0 1 2\n1 3 2\n3 5 4\n"
               "1\n3\n0 0 0\n0 1 2\n");
    struct Row {
        const char* arguments;
        std::array<double, 6> x;
        std::array<double, 6> z;
    };
    for (const Row& row : std::vector<Row>{
             // 2/3 (1 - 1/16), 2/3 (1 - 2/16), 1/3 (1 - 4/16)
             {"--depth 2 --by 12,0,2", {12, 1 + 7.5, 7, 3, -3, 3}, {2, 2, 2, 2, 0, 0}},
             // 1/2 (1 - 1/8), 1/2 (1 - 1/4)
             {"--depth 1 --by 16,0", {16, 1 + 7, 6, 0, -3, 3}, {0, 0, 0, 0, 0, 0}},
             {"--depth 0 --by 16,0,-2", {16, 1, 0, 0, -3, 3}, {-2, 0, 0, 0, 0, 0}},
             {"--by 16,0,-2", {16, 1, 0, 0, -3, 3}, {-2, 0, 0, 0, 0, 0}},
         }) {
        EXPECT_EQ(run(std::string("move m --vertex 0 -o o ") + row.arguments).err, "");
        const std::vector<Point> after = points(model("o"));
        for (int v = 0; v < 6; ++v) {
            EXPECT_NEAR(after[v][0], row.x[v], 2e-6) << row.arguments << ", vertex " << v;
            EXPECT_NEAR(after[v][2], row.z[v], 2e-6) << row.arguments << ", vertex " << v;
        }
    }
}

TEST_F(EditCommand, BadInputLeavesWhatThereWas) {
    write("t", bright_tetrahedron);
    write("n", neighbours);
    write("out", "former");
    write("r", "3\n0.0 0.0\n1.0 0.0\n0.0 1.0\n1\n3 0 1 2\n1\n1 0\n");
    // A tetrahedron clear of a big one with a face at x = 6.
    write("apart", "8\n0 0 0\n2 0 0\n0 2 0\n0 0 2\n6 -9 -9\n6 9 -9\n6 0 19\n30 0 0\n"
                   "8\n0 1 2\n0 1 3\n0 2 3\n1 2 3\n4 5 6\n4 5 7\n4 6 7\n5 6 7\n"
                   "2\n4 0 0 0\n0 1 2 3\n4 0 0 0\n4 5 6 7\n");
    // Two that share a face, and a third body that only edges of the second would sweep into.
    write("hung",
          "9\n0 0 0\n4 0 0\n0 3 0\n.5 .75 3\n1 1 -2\n5.5 -3 -4\n5.5 5 -4\n5.5 1 5\n6 1 -1\n"
          "11\n0 1 2\n0 1 3\n1 2 3\n2 0 3\n0 1 4\n1 2 4\n2 0 4\n5 6 7\n5 6 8\n6 7 8\n7 5 8\n"
          "3\n4 0 0 0\n0 1 2 3\n4 0 0 0\n0 4 5 6\n4 0 0 0\n7 8 9 10\n");
    write("one", "6\n1 1 1\n1 1 1\n1 1 1\n0 0 0\n2 0 0\n0 2 0\n2\n0 1 2\n3 4 5\n"
                 "2\n2 0 0 0\n0 1\n0 0 0 0\n");
    const int files_before = files();
    const std::vector<std::pair<std::string, std::string>> table = {
        {"merge -o out", "MODELS is required"},
        {"merge t r -o out", "r: a polygon-region file, where a body model file is expected"},
        {"merge t nowhere -o out", "nowhere: cannot be read: "},
        {"clean t --delete 1 -o out", "--delete: '1' is not a body of t, they go from 0 to 0"},
        {"clean t --delete -1 -o out", "--delete: '-1' is not a body of t"},
        {"clean n --delete 0 --delete 1 -o out", "n: nothing would be left"},
        {"inside t 1,2", "POINTS: '1,2' is not X,Y,Z in finite numbers"},
        {"inside r 1,2,3", "r: a polygon-region file, where a body model file is expected"},
        {"move t --by 1,1 -o out", "exactly 1 option from [--body,--vertex] is"},
        {"move t --body 0 --vertex 0 --by 1,1 -o out", "exactly 1 option from"},
        {"move t --body 0 --depth 1 --by 1,1 -o out", "--depth excludes --body"},
        {"move t --body 1 --by 1,1 -o out", "--body: '1' is not a body of t"},
        {"move t --vertex 4 --by 1,1 -o out", "--vertex: '4' is not a vertex of t"},
        {"move t --body 0 --by 1 -o out", "--by: '1' is not DX,DY[,DZ] in finite numbers"},
        {"move t --body 0 --by 1,2,3,4 -o out", "--by: '1,2,3,4' is not DX,DY[,DZ]"},
        {"move t --body 0 --by-view 1,2 --angles 1e999,0 -o out", "--angles: '1e999,0' is not"},
        {"move t --vertex 1 --by 1e39,0 -o out",
         "t: --by 1e39,0 takes vertex 1 to 1e+39, which does not fit single precision"},
        {"move one --body 1 --by 1,2 -o out", "one: body 1 has no face, there is nothing to move"},
        {"move one --vertex 0 --depth 1 --by 1,2 -o out",
         "one: all vertices within 1 edge of vertex 0 have the same position"},
        {"move one --vertex 3 --by 1,2 -o out", "one: --by 1,2: face 0 of body 0 would have no"},
        {"move apart --body 0 --by 5,0,0 -o out",
         "apart: --by 5,0,0: the edge between vertices 0 and 1 would pass through face 4 of body 1 "
         "or touch it"},
        {"move apart --vertex 1 --by 5,0,0 -o out",
         "apart: --by 5,0,0: the edge between vertices "},
        {"move hung --body 0 --by 10,0 -o out", "hung: --by 10,0: the edge between vertices "},
    };
    for (const auto& [arguments, message] : table) {
        const Result result = run(arguments);
        EXPECT_EQ(result.status, 2) << arguments;
        EXPECT_THAT(result.err, StartsWith("korvel: " + message)) << arguments;
        EXPECT_EQ(read("out"), "former") << arguments;
        EXPECT_EQ(files(), files_before) << arguments;
    }
    // Only where it ends counts: on the far side, and just short of the face.
    EXPECT_EQ(run("move apart --body 0 --by 40,0 -o out").status, 0);
    EXPECT_EQ(run("move apart --body 0 --by 3.9,0 -o out").status, 0);
}

} // namespace
} // namespace korvel::test
