#include <sstream>
#include <string>
#include <vector>

#include "tests/host/scratch.h"

namespace korvel::test {
namespace {

using testing::HasSubstr;

const std::string data = KORVEL_DATA_DIR "/";

// A square with a square hole, the hole drawn first.
const std::string square_in_square = "2\n"
                                     "5\n40 40\n60 40\n60 60\n40 60\n40 40\n"
                                     "5\n0 0\n100 0\n100 100\n0 100\n0 0\n";
// An L of area 12.
const std::string l_shape = "6\n0.0 0.0\n4.0 0.0\n4.0 2.0\n2.0 2.0\n2.0 4.0\n0.0 4.0\n"
                            "1\n6\n0 1 2 3 4 5\n1\n1\n0\n";

class Command : public Scratch {};

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
    EXPECT_THAT(read("r"), testing::EndsWith("\n2\n1\n0 \n2\n1 0 \n"));

    const Result one = run("regions c --select -5,-5 --select 50,50 -o r");
    EXPECT_EQ(one.status, 0);
    EXPECT_EQ(one.err, "warning: -5,-5: no region holds this point\n");
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

TEST_F(Command, ClicksAndLookupsAgreeOnAMap) {
    ASSERT_EQ(run("regions " + data + "world-110m.curves -o r").status, 0);
    std::string clicks;
    std::string points;
    for (int i = 0; i < 40; ++i) {
        const int x = 100000 * i / 40 + 7;
        const int y = -95000 + i * 37 % 40 * 2000;
        const std::string point = std::to_string(x) + "," + std::to_string(y);
        clicks.append(" --select ").append(point);
        points.append(" ").append(point);
    }
    std::istringstream answers(run("locate r" + points).out);
    const Result clicked = run("regions " + data + "world-110m.curves" + clicks);
    int found = 0;
    std::string point;
    std::string region;
    while (answers >> point >> region) {
        const bool is_inside = region != "none";
        std::ostringstream expected;
        expected << point << (is_inside ? ": region " + region + "\n" : ": no region holds");
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
    EXPECT_THAT(bow_tie.err, HasSubstr("warning: region 1 (0,0 to 9,9): triangles cover"));
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

struct BadInput {
    const char* text;
    const char* message;
};

class BadInputs : public Scratch {
protected:
    // The message is all that comes, and whatever stood in the output file still stands there.
    void expect_refused(const std::string& arguments, const std::string& message) {
        const int files_before = files();
        const Result result = run(arguments);
        EXPECT_EQ(result.status, 2) << arguments;
        EXPECT_THAT(result.err, testing::StartsWith(message)) << arguments;
        EXPECT_EQ(read("out"), "former") << arguments;
        EXPECT_EQ(files(), files_before) << arguments;
    }

    void SetUp() override {
        write("out", "former");
        write("c", square_in_square);
        write("r", l_shape);
    }
};

TEST_F(BadInputs, InCurveFiles) {
    const std::vector<BadInput> table = {
        {"", "f:1: the file ends where the number of curves belongs"},
        {"two", "f:1: 'two' stands where the number of curves belongs, an integer"},
        {"-1", "f:1: the number of curves is -1, it cannot be negative"},
        {"1\n-3", "f:2: the number of points of a curve is -3, it cannot be negative"},
        {"1\n2\n0 0\n1 1.5\n", "f:4: '1.5' stands where the y of a point belongs, an integer"},
        {"1\n2\n0 0\n2147483648 1\n", "f:4: '2147483648' is too large for the x of a point"},
        {"2\n2\n0 0\n1 1\n", "f:4: the file ends after 1 of 2 curves"},
        {"1\r\n3\r\n0 0\r\n1 1\r\n",
         "f:4: the file ends after 2 of 3 points of curve 1, whose count "
         "stands in line 2"},
        {"1 2000000000\n0 0\n1", "f:3: the file ends where the y of a point belongs"},
        {"1\n2\n0 0\n1 1\n\n\n7", "f:7: '7' stands after the last curve, curve 1"},
    };
    for (const BadInput& bad : table) {
        write("f", bad.text);
        expect_refused("regions f -o out", bad.message);
        expect_refused("triangles f -o out", bad.message);
    }
}

TEST_F(BadInputs, InRegionFiles) {
    const std::string points = "3\n0.0 0.0\n1.0 0.0\n1.0 1.0\n";
    const std::vector<std::pair<std::string, std::string>> table = {
        {"3\n0.0 0.0\n1.0 0.0\n", "f:3: the file ends after 2 of 3 points"},
        {"3\n0.0 0.0\n1.0 x\n", "f:3: 'x' stands where the y of a point belongs, a number"},
        {"3\n0.0 0.0\n1.0 nan\n", "f:3: 'nan' stands where the y of a point belongs, a finite"},
        {"3\n0.0 0.0\n1.0 4e38\n", "f:3: '4e38' does not fit the y of a point"},
        {points, "f:4: the file ends where the number of rings belongs"},
        {points + "1\n3\n0 1 3 ",
         "f:7: the point of a ring is 3, out of range: they go from 0 to 2"},
        {points + "1\n3\n0 1 -1", "f:7: the point of a ring is -1, out of range"},
        {points + "0\n1\n1\n0\n", "f:8: the ring of a region is 0, out of range: there are none"},
        {points + "1\n-1", "f:6: the number of points of a ring is -1, it cannot be negative"},
        {points + "0\n0\n5", "f:7: '5' stands after the end of the regions"},
    };
    for (const auto& [text, message] : table) {
        write("f", text);
        expect_refused("triangles f -o out", message);
        expect_refused("locate f 0,0", message);
    }
}

TEST_F(BadInputs, InArguments) {
    const std::vector<std::pair<std::string, std::string>> table = {
        {"", "A command is required"},
        {"frob", "The following argument was not expected: frob"},
        {"regions c --frob -o out", "The following argument was not expected: --frob"},
        {"regions nowhere -o out", "nowhere: cannot be read: No such file"},
        {"triangles / -o out", "/: cannot be read: Is a directory"},
        {"regions c -o out --picture p.bmp", "p.bmp: the name of a picture ends in .png, .svg"},
        {"regions c -o p.png --picture ./p.png", "korvel: p.png: named both"},
        {"regions c -o out --size 15x99", "korvel: --size: '15x99' is not a size WxH"},
        {"regions c -o out --view 1,2,3,2", "korvel: --view: '1,2,3,2' is not a view"},
        {"regions c -o out --stretch 0", "korvel: --stretch: '0' is not a factor"},
        {"regions c -o out --tolerance nan", "korvel: --tolerance: 'nan' is not a distance"},
        {"regions c -o out --select 1.5,2",
         "korvel: --select: '1.5,2' is not a point X,Y of two int"},
        {"regions c -o out --seed 1,3000000000", "korvel: --seed: '1,3000000000' is not a point"},
        {"triangles r -o out --select 1,inf",
         "korvel: --select: '1,inf' is not a point X,Y of two fi"},
        {"locate r 1 2", "korvel: POINTS: '1' is not a point"},
        {"locate c 1,2",
         "c:5: the point of a ring is 60, out of range: they go from 0 to 1 (a poly"},
    };
    for (const auto& [arguments, message] : table) {
        expect_refused(arguments, message);
    }
}

TEST_F(Command, OutputsThatCannotBeWrittenEndWithOne) {
    write("c", square_in_square);
    EXPECT_THAT(run("regions c -o no/where").err,
                testing::StartsWith("no/where: cannot be written: No such file"));
    std::filesystem::create_symlink("/dev/full", place("full.png"));
    for (const char* arguments : {"regions c -o no/where", "regions c -o .",
                                  "regions c -o /dev/full", "regions c -o r --picture full.png"}) {
        EXPECT_EQ(run(arguments).status, 1) << arguments;
    }
    EXPECT_EQ(run("--help", "/dev/full").status, 1);
    EXPECT_EQ(files(), 2) << "neither the complete half of the outputs nor a temporary file";
}

} // namespace
} // namespace korvel::test
