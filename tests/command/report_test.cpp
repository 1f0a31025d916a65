#include <nlohmann/json.hpp>

#include <string>
#include <vector>

#include "tests/support/command_scratch.h"

namespace korvel::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

const std::string square = "1 5 0 0 10 0 10 10 0 10 0 0";

/// What every subcommand does to its report, and what `-` is.
class Report : public CommandScratch {
protected:
    Report() {
        write("c", square);
        EXPECT_EQ(run("regions c -o r").status, 0);
        EXPECT_EQ(run("solid c --levels 0,4 -o m").status, 0);
    }
};

TEST_F(Report, IsShortLongOrJson) {
    struct Row {
        const char* arguments;
        const char* answer = ""; // printed also with --quiet
        const char* task = "reading the model: ";
    };
    for (const Row& row : std::vector<Row>{
             {"regions c -o out", "", "finding regions: "},
             {"triangles r -o out", "", "triangulating regions: "},
             {"solid r --levels 0,1 -o out", "", "raising regions: "},
             {"locate r 5,5", "5,5 0\n", "reading regions: "},
             {"starter cube --size 1,1,1 -o out", "", "writing out: "},
             {"section m --plane x=4 -o out", "", "cutting: "},
             {"view m --pick 0,0", "0,0: face "},
             {"merge m m -o out"},
             {"weld m -o out"},
             {"clean m -o out"},
             {"inside m 5,5,1", "5,5,1 0\n"},
             {"move m --body 0 --by 1,0 -o out"},
             {"section m --plane y=5 -o out", "", "cutting: "},
             {"view m --pick 0,0", "0,0: face "},
             {"info m", "", "reading "},
             {"check m", "", "checking "},
         }) {
        const std::string arguments = row.arguments;
        const Result plain = run(arguments);
        EXPECT_EQ(plain.status, 0) << plain.err;
        EXPECT_THAT(plain.out, testing::Not(HasSubstr(" ms\n"))) << arguments;
        const std::string written = files() > 3 ? read("out") : "";

        const Result quiet = run(arguments + " --quiet");
        EXPECT_THAT(quiet.out, testing::StartsWith(row.answer)) << arguments;
        EXPECT_EQ(quiet.out.empty(), std::string(row.answer).empty()) << arguments;
        const Result verbose = run(arguments + " --verbose");
        EXPECT_THAT(verbose.out, HasSubstr(row.task)) << arguments;
        EXPECT_GT(verbose.out.size(), plain.out.size());

        const Result in_json = run(arguments + " --json");
        const json report = json::parse(in_json.out, nullptr, false);
        ASSERT_TRUE(report.is_object()) << arguments << "\n" << in_json.out;
        EXPECT_EQ(report["command"], arguments.substr(0, arguments.find(' ')));
        EXPECT_EQ(report["status"], 0);
        EXPECT_EQ(report["outputs"].size(), arguments.ends_with("-o out") ? 1U : 0U) << arguments;
        for (const Result* result : {&quiet, &verbose, &in_json}) {
            EXPECT_EQ(result->status, 0) << arguments;
            EXPECT_EQ(result->err, plain.err) << arguments;
        }
        EXPECT_EQ(files() > 3 ? read("out") : "", written);
        std::filesystem::remove(path("out"));
    }
}

TEST_F(Report, OfAnErrorNamesFileLineAndValue) {
    write("bad", "1\n2\n0 0\n7 x\n");
    const Result result = run("regions bad --json");
    EXPECT_EQ(result.status, 2);
    const json report = json::parse(result.out);
    EXPECT_EQ(report["status"], 2);
    EXPECT_EQ(report["error"]["file"], "bad");
    EXPECT_EQ(report["error"]["line"], 4);
    EXPECT_EQ(report["error"]["value"], "x");
    EXPECT_EQ("korvel: " + report["error"]["message"].get<std::string>() + "\n", result.err);
}

TEST_F(Report, GoesToStandardErrorWhenAFileGoesToStandardOutput) {
    const Result plain = run("regions c -o r2");
    const Result piped = run("regions - -o - < " + path("c").string());
    EXPECT_EQ(piped.status, 0);
    EXPECT_EQ(piped.out, read("r2"));
    EXPECT_THAT(piped.err, testing::StartsWith("standard input: 1 curve, 5 points\n"));
    EXPECT_EQ(run("regions c --picture - --size 40x30 -q").out.substr(1, 3), "PNG");
    const Result chain =
        run("section - --plane y=5", {}, KORVEL_COMMAND " solid c --levels 0,1 -q -o - | ");
    EXPECT_THAT(chain.out, HasSubstr("1 of 1 body cut, 1 polygon, area 10\n"));
    EXPECT_EQ(run("merge - - -o out < " + path("m").string()).err,
              "korvel: standard input can be read once only\n");
    EXPECT_EQ(run("regions c -o - --picture -").status, 2);
}

TEST_F(Report, ShowsProgressOnATerminal) {
    if (std::system("script -qec true /dev/null > /dev/null 2>&1") != 0) {
        GTEST_SKIP() << "there are no terminals here";
    }
    const std::string on_terminal = "cd " + directory_.string() +
                                    " && script -qec '" KORVEL_COMMAND
                                    " solid c --levels 0,1 -o out' log > log2";
    ASSERT_EQ(std::system(on_terminal.c_str()), 0);
    EXPECT_THAT(read("log"), HasSubstr("raising regions ...\r"));
    EXPECT_EQ(run("solid c --levels 0,1 -o out").err, "");
}

TEST_F(Report, CountsWarningsOfAKindAfterTen) {
    std::string clicks;
    for (int i = 0; i < 30; ++i) {
        clicks += " --select " + std::to_string(50 + i) + ",1";
    }
    const Result some = run("regions c --select 5.5,1.25" + clicks);
    EXPECT_EQ(some.status, 0);
    EXPECT_THAT(some.out, HasSubstr("5.5,1.25: region 0\n"));
    EXPECT_EQ(std::count(some.err.begin(), some.err.end(), '\n'), 11);
    EXPECT_THAT(some.err, testing::EndsWith("korvel: warning: and 20 more such as '50,1: no region "
                                            "contains this point' (--verbose shows all)\n"));
    const Result all = run("regions r" + clicks);
    EXPECT_EQ(all.status, 2);
    EXPECT_EQ(run("triangles r -v" + clicks).status, 2);
    EXPECT_THAT(run("triangles c -v" + clicks).err,
                testing::EndsWith("79,1: no region contains this point\n"
                                  "korvel: c: --select finds no region\n"));
}

} // namespace
} // namespace korvel::test
