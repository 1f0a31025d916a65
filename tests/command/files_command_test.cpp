// locate, inside, info and check: points of files, lists of many, repairs.

#include <nlohmann/json.hpp>

#include <string>

#include "tests/support/command_scratch.h"

namespace korvel::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

/// A row of squares of side 2, each a little higher than the one before.
std::string squares(int count) {
    std::string text = std::to_string(count);
    for (int i = 0; i < count; ++i) {
        const std::string left = std::to_string(4 * i);
        const std::string right = std::to_string(4 * i + 2);
        const std::string top = std::to_string(i + 1);
        text += "\n5 " + left + " 0 " + right + " 0 " + right + " " + top + " " + left + " " + top +
                " " + left + " 0";
    }
    return text;
}

class FilesCommand : public CommandScratch {
protected:
    FilesCommand() {
        write("c", squares(30));
        EXPECT_EQ(run("regions c -o r").status, 0);
        EXPECT_EQ(run("solid r --levels 0,1 -o m").status, 0);
    }
};

TEST_F(FilesCommand, LooksUpThePointsOfAFile) {
    write("p", "# places\n1.0 .5\n\n5,0.5 # the second\n3 3\n");
    const std::string answers = "1.0,.5 0\n5,0.5 1\n3,3 none\n";
    for (const char* arguments : {"locate r --points p", "locate r <p", "locate r --points - -q <p",
                                  "locate - --points p <r", "locate r 1.0,.5 5,0.5 3,3"}) {
        const Result result = run(arguments);
        EXPECT_EQ(result.err, "") << arguments;
        EXPECT_EQ(result.out, answers) << arguments;
    }
    write("q", "1 .5 .5\n5,0.5,9\n");
    EXPECT_EQ(run("inside m --points q").out, "1,.5,.5 0\n5,0.5,9 none\n");
    EXPECT_EQ(run("inside m </dev/null").out, "");
    const json report = json::parse(run("inside m --points q --json").out);
    EXPECT_EQ(report["answers"][0]["point"], json({1, .5, .5}));
    EXPECT_EQ(report["answers"][0]["body"], 0);
    EXPECT_TRUE(report["answers"][1]["body"].is_null());

    write("bad", "1 1\n2 y\n");
    const Result bad = run("locate r --points bad");
    EXPECT_EQ(bad.status, 2);
    EXPECT_EQ(bad.out, "");
    EXPECT_EQ(bad.err, "korvel: bad:2: 'y' is not a finite number: expected the y of a point\n");
}

TEST_F(FilesCommand, InfoSumsUpMany) {
    const std::string summary = run("info m").out;
    EXPECT_THAT(summary, StartsWith("m: body model file\n30 bodies, 0 of them open, "));
    EXPECT_THAT(summary, testing::EndsWith("volume: least 2 (body 0), median 30 (body 14), largest "
                                           "60 (body 29)\n--all lists each of the 30\n"));
    const std::string all = run("info m --all").out;
    EXPECT_THAT(all, HasSubstr("\n    29      12      18         8      2                  60  #"));
    EXPECT_THAT(all, HasSubstr("\n     0      12 "));
    const std::string sorted = run("info r --sort area").out;
    EXPECT_THAT(
        sorted,
        HasSubstr("area: least 2 (region 0), median 30 (region 14), largest 60 (region 29)\n"
                  "region  points  holes                area  bounds\n"
                  "    29       4      0                  60  x 116 to 118, y 0 to 30\n"
                  "    28 "));
    EXPECT_THAT(sorted, testing::EndsWith("\n... and 10 more (--all lists each)\n"));
    EXPECT_THAT(run("info m --sort volume --csv -q").out,
                StartsWith("body,faces,edges,vertices,euler,volume,colour,state,shares_faces_with\n"
                           "29,12,18,8,2,60,#"));
    EXPECT_THAT(run("info r --csv").out,
                StartsWith("region,points,holes,area,perimeter,x_min,x_max,y_min,y_max\n"
                           "0,4,0,2,6,0,2,0,1\n1,4,0,4,8,4,6,0,2\n"));
    const json report = json::parse(run("info m --json --sort volume").out);
    EXPECT_EQ(report["kind"], "model");
    ASSERT_EQ(report["listed"].size(), 30U);
    EXPECT_EQ(report["listed"][0]["body"], 29);
    EXPECT_EQ(report["listed"][29]["volume"], 2);
    EXPECT_EQ(json::parse(run("info r --json").out)["listed"][1]["perimeter"], 8);

    write("few", squares(2));
    ASSERT_EQ(run("solid few --levels 0,1 -o m2").status, 0);
    EXPECT_THAT(run("info m2").out, HasSubstr("\n     1      12 ")) << "a few are listed";
    EXPECT_EQ(run("info m --sort area").err,
              "korvel: --sort area: a body model file is sorted by volume\n");
    EXPECT_EQ(run("info c --csv").err,
              "korvel: --csv: a curve file contains no bodies or regions\n");
}

TEST_F(FilesCommand, InfoNamesOpenBodies) {
    std::string model = read("m");
    const std::size_t last = model.find_last_not_of(" \n");
    model[last] = model[last - 1]; // another face of the last body
    write("open", model);
    const Result result = run("info open");
    EXPECT_THAT(result.out, HasSubstr("30 bodies, 1 of them open"));
    EXPECT_THAT(result.out, HasSubstr("\nopen: body 29\n"));
}

TEST_F(FilesCommand, CheckRepairs) {
    write("bad", "3\n3 0 0 0 0 5 5\n1 7 7\n2 1 1 2 2\n");
    const Result fixed = run("check bad --fix -o good");
    EXPECT_EQ(fixed.status, 0);
    EXPECT_EQ(fixed.out, "bad: repeated points of curves removed: 1\n"
                         "bad: curves of fewer than two points removed: 1\n"
                         "bad: curve file, repaired\nwrote good\n");
    EXPECT_EQ(read("good"), "2\n2\n0 0\n5 5\n2\n1 1\n2 2\n");
    EXPECT_EQ(run("check - --fix -o - -q <bad").out, read("good"));
    const json report = json::parse(run("check bad --fix -o good --json").out);
    EXPECT_EQ(report["repairs"][0]["count"], 1);

    for (const char* file : {"r", "m"}) {
        const Result result = run(std::string("check --fix -o same ") + file);
        EXPECT_THAT(result.out, HasSubstr("nothing to repair\nwrote same\n"));
        EXPECT_TRUE(read("same") == read(file)) << file;
    }
    write("open", "4\n0 0 0\n6 0 0\n0 6 0\n0 0 6\n4\n0 1 2\n0 1 3\n0 2 3\n1 1 2\n1\n4\n1 1 1\n"
                  "0 1 2 3\n");
    const Result open = run("check open --fix -o none");
    EXPECT_EQ(open.status, 2);
    EXPECT_EQ(open.out, "open: faces with a vertex twice removed: 1\nopen: faces of no body "
                        "removed: 1\nopen:12: body 0 is open at 3 edges\n");
    EXPECT_EQ(open.err, "korvel: open: body model file with 1 problem that cannot be repaired\n");
    EXPECT_FALSE(std::filesystem::exists(path("none")));
    EXPECT_EQ(run("check r --fix").err, "korvel: --fix needs --output\n");
    EXPECT_EQ(run("check r -o x").err, "korvel: --output needs --fix\n");
    ASSERT_EQ(run("triangles r -o t").status, 0);
    EXPECT_EQ(run("check t --fix -o x").err,
              "korvel: t: a triangle file, --fix repairs curves, regions, models and meshes\n");
}

} // namespace
} // namespace korvel::test
