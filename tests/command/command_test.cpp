#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/command_scratch.h"
#include "tests/support/pixels.h"

namespace korvel::test {
namespace {

using testing::HasSubstr;

// A square with a square hole, the hole drawn first.
const std::string square_in_square = "2\n"
                                     "5\n40 40\n60 40\n60 60\n40 60\n40 40\n"
                                     "5\n0 0\n100 0\n100 100\n0 100\n0 0\n";
// An L of area 12.
const std::string l_shape = "6\n0.0 0.0\n4.0 0.0\n4.0 2.0\n2.0 2.0\n2.0 4.0\n0.0 4.0\n"
                            "1\n6\n0 1 2 3 4 5\n1\n1\n0\n";

class Command : public CommandScratch {};

TEST_F(Command, FindsRegionsAndWritesThem) {
    write("c", square_in_square);
    const Result all = run("regions c -o r --picture p.svg");
    EXPECT_EQ(all.status, 0);
    EXPECT_EQ(all.err, "");
    EXPECT_THAT(all.out, HasSubstr("c: 2 curves, 10 points\n2 regions with 1 hole, 8 distinct"));
    EXPECT_THAT(all.out,
                HasSubstr("area 10000 in all, smallest region 0 with 400, largest region 1 "
                          "with 9600"));
    EXPECT_EQ(files(), 3);
    EXPECT_THAT(read("r"), testing::EndsWith("\n2\n1\n0 \n2\n1 2 \n"));
    ASSERT_EQ(run("regions c --as-traced -o r").status, 0);
    EXPECT_THAT(read("r"), testing::EndsWith("\n2\n1\n0 \n2\n1 0 \n"));

    const Result one = run("regions c --select -5,-5 --select 50,50 -o r");
    EXPECT_EQ(one.status, 0);
    EXPECT_EQ(one.err, "korvel: warning: -5,-5: no region contains this point\n");
    EXPECT_THAT(one.out, HasSubstr("50,50: region 0\nregion 0: 4 points, 0 holes, area 400\n"));
    EXPECT_THAT(read("r"), testing::AllOf(testing::StartsWith("4\n40.000000 40.000000\n"),
                                          testing::EndsWith("\n1\n1\n0 \n")));

    const Result seed = run("regions c --seed 10,10 -o r");
    EXPECT_EQ(seed.status, 0);
    EXPECT_THAT(seed.out, HasSubstr("ring around the seed: 4 points, area 10000\n"
                                    "ring inside it: 4 points, area 400\n"
                                    "2 rings, area between them 9600\n"));
    EXPECT_EQ(run("locate r 10,10 50,50 -.5,3").out, "10,10 0\n50,50 none\n-0.5,3 none\n");
}

TEST_F(Command, ReportsWhatIsOnNoBorder) {
    // A square in two parts, its middle drawn twice, a loose end, a bridge to an island.
    write("c", "6 5 0 0 20 0 20 20 0 20 0 0 2 10 -5 10 20 2 10 20 10 0"
               " 4 4 4 6 4 4 6 4 4 2 4 4 0 0 3 30 30 31 31 32 31");
    const Result all = run("regions c --leftover l");
    EXPECT_THAT(all.out, HasSubstr("0 crossings split, 1 overlap resolved, 0 ends joined\n"
                                   "3 regions with 1 hole, "));
    EXPECT_THAT(all.out, HasSubstr("15 segments: 10 borders, 3 dangling, 1 bridge, 1 duplicate\n"));
    EXPECT_EQ(all.err, "korvel: warning: 1 sliver: region 2; --min-area merges small regions\n");
    EXPECT_EQ(read("l"),
              "4\n2\n10 -5\n10 0\n2\n10 20\n10 0\n2\n4 4\n0 0\n3\n30 30\n31 31\n32 31\n");
    EXPECT_THAT(run("regions c --min-area 5").out, HasSubstr("1 region merged into neighbours\n"));
    EXPECT_EQ(run("regions c --min-area 5 --as-traced").status, 2);
    EXPECT_EQ(run("regions c --min-area -1").status, 2);
}

TEST_F(Command, PaintsEachRegionInItsOwnColour) {
    // A frame around a field, and a square beside the frame's corner.
    write("c", "3 5 40 40 60 40 60 60 40 60 40 40 5 0 0 100 0 100 100 0 100 0 0"
               " 5 0 100 0 150 50 150 50 100 0 100");
    constexpr COLORREF white = RGB(255, 255, 255);
    for (const bool y_down : {false, true}) {
        ASSERT_EQ(
            run("regions c --picture p.png --size 104x154" + std::string(y_down ? " --y-down" : ""))
                .status,
            0);
        const Pixels pixels(path("p.png"));
        EXPECT_EQ(pixels.height(), 154);
        // A unit is 150/154 of the width between the margins: about a pixel.
        const auto at = [&](int x, int y) { return pixels.at(x, y_down ? y : 153 - y); };
        const std::set<COLORREF> colours = {white, at(20, 50), at(52, 52), at(20, 120)};
        EXPECT_EQ(colours.size(), 4U);
        EXPECT_EQ(at(80, 50), at(20, 50));
        EXPECT_EQ(at(80, 120), white);
    }

    ASSERT_EQ(run("regions c --picture v.png --view 45,45,55,55 --size 50x50").status, 0);
    const Pixels view(path("v.png"));
    EXPECT_EQ(view.at(1, 1), view.at(48, 48));
    EXPECT_NE(view.at(1, 1), white);
}

TEST_F(Command, PicturesShowMostOfAMapOrAllOfIt) {
    // Far islands lie east and south of the states.
    const std::string states = data + "us-states.curves";
    for (const std::string command : {"regions ", "triangles "}) {
        const std::string most = run(command + states + " --picture p.png --size 300x300").out;
        EXPECT_THAT(most, HasSubstr("the picture leaves out 3 "));
        EXPECT_THAT(most, HasSubstr("regions, in part or whole; --all shows everything\n"));
        for (const char* option : {" --all", " --view 0,0,9,9"}) {
            const std::string out = run(command + states + " --picture p.png" + option).out;
            EXPECT_THAT(out, testing::Not(HasSubstr("leaves out"))) << option;
        }
    }
    EXPECT_EQ(run("regions " + states + " --picture p.png --all --view 0,0,9,9").status, 2);
}

TEST_F(Command, ClicksAndLookupsAgreeOnAMap) {
    ASSERT_EQ(run("regions " + data + "world-110m.curves -o r").status, 0);
    std::string clicks;
    std::string points;
    for (int i = 0; i < 40; ++i) {
        const int x = 100000 * i / 40 + 7;
        const int y = 95000 - i * 37 % 40 * 2000;
        const std::string point = std::to_string(x) + "," + std::to_string(y);
        clicks.append(" --select ").append(point);
        points.append(" ").append(point);
    }
    std::istringstream answers(run("locate r" + points).out);
    const Result clicked = run("regions -v " + data + "world-110m.curves" + clicks);
    int found = 0;
    std::string point;
    std::string region;
    while (answers >> point >> region) {
        const bool is_inside = region != "none";
        std::ostringstream expected;
        expected << point << (is_inside ? ": region " + region + "\n" : ": no region contains");
        EXPECT_THAT(is_inside ? clicked.out : clicked.err, HasSubstr(expected.str()));
        found += is_inside ? 1 : 0;
    }
    EXPECT_GT(found, 10);
    EXPECT_LT(found, 40);
}

TEST_F(Command, TrianglesTellWhatTheyCover) {
    write("l", l_shape);
    const Result covered = run("triangles l -o t --picture t.pdf --size 300x200");
    EXPECT_EQ(covered.status, 0);
    EXPECT_EQ(covered.err, "");
    EXPECT_THAT(covered.out,
                HasSubstr("1 of 1 region covered, area of triangles 12, of regions 12"));
    EXPECT_THAT(read("t"), testing::StartsWith("6\n0 0\n4 0\n4 2\n2 2\n2 4\n0 4\n1\n4\n"));
    EXPECT_EQ(files(), 3) << "no trace files unless asked for";

    // The same ring walked the other way round.
    write("mirrored", "6\n0.0 0.0\n0.0 4.0\n2.0 4.0\n2.0 2.0\n4.0 2.0\n4.0 0.0\n"
                      "1\n6\n0 1 2 3 4 5\n1\n1\n0\n");
    EXPECT_THAT(run("triangles mirrored").out, HasSubstr("1 of 1 region covered"));

    write("bow_tie", "7\n0.0 0.0\n9.0 9.0\n9.0 0.0\n0.0 9.0\n20.0 0.0\n30.0 0.0\n30.0 10.5\n"
                     "2\n3\n4 5 6\n4\n0 1 2 3\n2\n1\n0\n1\n1\n");
    const Result bow_tie = run("triangles bow_tie --select 29,1 --select 1,4");
    EXPECT_EQ(bow_tie.status, 0);
    EXPECT_THAT(bow_tie.out, HasSubstr("1 of 2 regions covered"));
    EXPECT_THAT(bow_tie.err,
                HasSubstr("korvel: warning: region 1 (0,0 to 9,9): not covered, the outer "
                          "ring crosses itself at 4.5,4.5\n"));
    const Result strict = run("triangles bow_tie --strict -o u --picture u.png --size 400x200");
    EXPECT_EQ(strict.status, 3);
    EXPECT_EQ(read("u"), (run("triangles bow_tie -o v --threads 3"), read("v")));
    // In the left half of the bow tie.
    EXPECT_EQ(Pixels(path("u.png")).at(40, 110), RGB(255, 0, 255));
}

TEST_F(Command, TracesGoWhereTheyWereAskedFor) {
    write("l", l_shape);
    ASSERT_EQ(run("triangles l -o plain").status, 0);
    ASSERT_EQ(run("triangles l -o traced --trace some/where").status, 0);
    EXPECT_EQ(read("plain"), read("traced"));
    EXPECT_THAT(read("some/where/wwwtrg.dat"), HasSubstr("trgs = 4\n"));
    EXPECT_GT(read("some/where/trg.dat").size(), 100U);
    EXPECT_EQ(files(), 4);
}

TEST_F(Command, WholeMapsGoThrough) {
    for (const char* map : {"us-states", "world-110m"}) {
        const std::string curves = data + map + ".curves";
        ASSERT_EQ(run("regions " + curves + " -o r --picture r.png --size 400x300").status, 0);
        // By way of the region file or straight from the curves: the same triangles.
        ASSERT_EQ(run("triangles r -o via-regions").status, 0);
        ASSERT_EQ(run("triangles " + curves + " -o straight --picture t.svg").status, 0);
        EXPECT_TRUE(read("via-regions") == read("straight")) << map;
    }
    // A county with three corners in line, for which the sum of the ring's angles is not a number.
    write("county", "1 18 25139 -58610 25125 -58645 25085 -58686 25079 -58730 25078 -58809"
                    " 25063 -58846 25058 -58803 25038 -58714 25020 -58708 25016 -58634"
                    " 25029 -58582 25040 -58561 25068 -58539 25083 -58496 25096 -58489"
                    " 25110 -58463 25145 -58595 25139 -58610");
    EXPECT_THAT(run("triangles county").out, HasSubstr("1 of 1 region covered"));
}

TEST_F(Command, OutputsThatCannotBeWrittenEndWithOne) {
    write("c", square_in_square);
    EXPECT_THAT(run("regions c -o no/where").err,
                testing::StartsWith("korvel: no/where: cannot be written: No such file"));
    std::filesystem::create_symlink("/dev/full", path("full.png"));
    for (const char* arguments : {"regions c -o no/where", "regions c -o .",
                                  "regions c -o /dev/full", "regions c -o r --picture full.png"}) {
        EXPECT_EQ(run(arguments).status, 1) << arguments;
    }
    EXPECT_EQ(run("--help", "/dev/full").status, 1);
    EXPECT_EQ(files(), 2) << "neither the complete half of the outputs nor a temporary file";
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool has_sanitizer = true;
#elif defined(__has_feature)
constexpr bool has_sanitizer = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
constexpr bool has_sanitizer = false;
#endif

// A limit on the address space leaves less memory than the crossings need.
TEST_F(Command, TooManyCrossingsAreAnError) {
    if (has_sanitizer) {
        GTEST_SKIP() << "sanitizers need more address space than this test leaves";
    }
    constexpr int strokes = 1200;
    std::ostringstream grid;
    grid << 2 * strokes << '\n';
    for (int i = 1; i <= strokes; ++i) {
        grid << "2 0 " << 10 * i << " 99999 " << 10 * i << '\n';
        grid << "2 " << 10 * i << " 0 " << 10 * i << " 99999\n";
    }
    write("grid", grid.str());
    write("out", "former");
    const Result result = run("regions grid -o out", {}, "ulimit -v 600000; ");
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.err,
                testing::ContainsRegex("^korvel: grid: the curves have more than [0-9]+ "
                                       "crossings, for which there is not enough"));
    EXPECT_EQ(read("out"), "former");
    EXPECT_EQ(files(), 2);
}

} // namespace
} // namespace korvel::test
