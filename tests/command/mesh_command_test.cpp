// Meshes of other programs as models of the commands: by the suffix in, by the suffix out.

#include <filesystem>
#include <string>

#include "tests/support/command_scratch.h"

namespace korvel::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

/// A tetrahedron with a face that runs the wrong way, or with a point that a thousandth is missing.
std::string tip(const std::string& last_face, const std::string& apex = "0 0 6") {
    return "o tip\nusemtl none\nv 0 0 0\nv 6 0 0\nv 0 6 0\nv 0 0 6\nv " + apex +
           "\nf 1 3 2\nf 1 2 4\nf 2 3 4\nf " + last_face + "\n";
}

class MeshCommand : public CommandScratch {};

TEST_F(MeshCommand, EveryFormatGivesTheSameModel) {
    ASSERT_EQ(run("starter cube --size 4,6,5 --center 1,2,3 --rounds 1 -o a.model").status, 0);
    ASSERT_EQ(run("starter ball --size 1 --center 20,0,0 --rounds 1 -o b.ply").status, 0);
    ASSERT_EQ(run("merge a.model b.ply -o both.glb").status, 0);
    const std::string figures =
        "2 bodies, 0 of them open, 92 vertices, 264 edges, 176 faces, volume ";
    for (const std::string file : {"c.stl", "c.ply", "c.obj", "c.off", "c.glb", "c.model"}) {
        EXPECT_EQ(run("convert both.glb " + file).err, "") << file;
        EXPECT_THAT(run("info " + file).out, HasSubstr(figures + "123.65")) << file;
        const Result cut = run("section " + file + " --plane z=3.1 -o cut.section");
        EXPECT_THAT(cut.out, HasSubstr("area 24")) << file;
    }
    for (const std::string format : {"STL-text", "ply-text"}) {
        EXPECT_EQ(run("convert c.stl d --to " + format).status, 0);
        EXPECT_THAT(read(directory_ / "d"),
                    StartsWith(format[0] == 'S' ? "solid" : "ply\nformat ascii"));
        EXPECT_THAT(run("info d").out, HasSubstr(figures)) << format;
    }
    EXPECT_EQ(run("convert c.obj - -q", "piped").status, 0);
    EXPECT_THAT(run("info - <piped").out, HasSubstr(figures));
    EXPECT_THAT(run("clean - -o cleaned.ply <c.obj").out, HasSubstr("left: 2 bodies"));
    EXPECT_THAT(run("inside c.stl 1,2,3 20,0,0 9,9,9").out,
                HasSubstr("1,2,3 0\n20,0,0 1\n9,9,9 none\n"));
    EXPECT_THAT(run("info c.glb --csv").out, StartsWith("body,"));
}

TEST_F(MeshCommand, ReportsAndRepairsWhatIsWrong) {
    write("turned.obj", tip("1 3 4"));
    EXPECT_THAT(run("info turned.obj").out, HasSubstr("1 face turned, 0 open edges"));
    EXPECT_THAT(run("check turned.obj").out, HasSubstr("note: "));
    EXPECT_THAT(run("check turned.obj --fix -o right.stl").out,
                HasSubstr("turned outward: 1\nturned.obj: mesh, repaired\nwrote right.stl\n"));
    EXPECT_THAT(run("info right.stl").out, HasSubstr("0 faces turned"));

    write("gap.obj", tip("1 5 3", "0 0 6.001"));
    EXPECT_EQ(run("check gap.obj").status, 2);
    EXPECT_THAT(run("info gap.obj --json").out, HasSubstr("\"open_edges\": 4"));
    EXPECT_EQ(run("check gap.obj --fix -o closed.ply").status, 2);
    EXPECT_FALSE(std::filesystem::exists(directory_ / "closed.ply"));
    EXPECT_EQ(run("check gap.obj --weld 0.01 --fix -o closed.ply").status, 0);
    EXPECT_THAT(run("info closed.ply").out, HasSubstr("volume 36"));
    for (const std::string command :
         {"view gap.obj --pick 1,1", "weld gap.obj -o w.obj", "clean gap.obj -o w.obj",
          "move gap.obj --body 0 --by 1,0,0 -o w.obj", "section gap.obj --plane z=1",
          "inside gap.obj 1,1,1", "convert gap.obj w.obj", "merge gap.obj -o w.obj"}) {
        const Result result = run(command + " --weld 0.01");
        EXPECT_EQ(result.status, 0) << result.err;
    }
}

TEST_F(MeshCommand, KeepsMillimetresFarFromTheOrigin) {
    write("far.obj", "v 4500000.001 5500000.002 0.003\nv 4500004.001 5500000.002 0.003\n"
                     "v 4500000.001 5500003.002 0.003\nv 4500000.001 5500000.002 2.503\n"
                     "f 1 3 2\nf 1 2 4\nf 2 3 4\nf 3 1 4\n");
    EXPECT_EQ(run("convert far.obj far.model").err, "");
    EXPECT_THAT(read(directory_ / "far.model"), HasSubstr("\ngrid 0.001 origin "));
    EXPECT_EQ(run("convert far.model back.obj").status, 0);
    for (const std::string digits :
         {"v 4500000.001 5500000.002 0.003\n", "v 4500000.001 5500000.002 2.503\n"}) {
        EXPECT_THAT(read(directory_ / "back.obj"), HasSubstr(digits));
    }
    EXPECT_THAT(run("convert far.model far.stl").err, HasSubstr("single precision moves vertices"));
}

TEST_F(MeshCommand, RefusesWhatDoesNotFit) {
    ASSERT_EQ(run("starter cube --size 4,6,5 -o a.stl").status, 0);
    const struct {
        std::string command;
        std::string message;
    } cases[] = {
        {"convert a.stl a.geojson", "a.stl: a mesh, which is written as a mesh or a body model"},
        {"convert a.stl - --to PLY", "a mesh is written into a file"},
        {"convert a.stl a.ply --decimals 2", "--decimals are for features"},
        {"info a.stl --weld -1", "--weld"},
        {"starter cube --size 1,1,1 -o no/a.stl", "no/a.stl"},
    };
    for (const auto& [command, message] : cases) {
        const Result result = run(command);
        EXPECT_NE(result.status, 0) << command;
        EXPECT_THAT(result.err, HasSubstr(message));
    }
}

} // namespace
} // namespace korvel::test
