#include <string>

#include "tests/support/command_scratch.h"
#include "tests/support/pixels.h"

namespace korvel::test {
namespace {

using testing::HasSubstr;

// Options mean the same with every subcommand that has them.
class SharedOptions : public CommandScratch {
protected:
    // A square with a thin cap, and beside it one whose curve ends 2 units before its start.
    SharedOptions() {
        write("c", "3 5 0 0 100 0 100 100 0 100 0 0 3 0 100 50 101 100 100"
                   " 5 200 0 300 0 300 100 200 100 200 2");
    }
};

TEST_F(SharedOptions, OfCurvesGiveTheSameRegions) {
    for (const char* command : {"regions c", "triangles c", "solid c --levels 0,1 -o m"}) {
        const std::string korvel = command;
        EXPECT_THAT(run(korvel).out, HasSubstr("\n2 regions with 0 holes, ")) << korvel;
        EXPECT_THAT(run(korvel + " --tolerance 5").out, HasSubstr("\n3 regions with ")) << korvel;
        EXPECT_THAT(run(korvel + " --min-area 60").out, HasSubstr("\n1 region with 0 holes"))
            << korvel;
        EXPECT_THAT(run(korvel + " --as-traced --tolerance 0").out, HasSubstr("\n3 regions with "))
            << korvel;
        EXPECT_THAT(run(korvel + " --select 50.5,20.25").out, HasSubstr("50.5,20.25: region 0\n"));
    }
    EXPECT_EQ(run("triangles c --tolerance -1").status, 2);
}

TEST_F(SharedOptions, OfUnitsScaleTheLevelsToo) {
    const auto bounds = [&](const std::string& options) {
        const Result result = run("solid c --levels 10,30 -o m " + options);
        const std::size_t at = result.out.find("bounds ");
        return at == std::string::npos ? result.err
                                       : result.out.substr(at, result.out.find('\n', at) - at);
    };
    EXPECT_EQ(bounds("--unit 10"), "bounds x 0 to 10, y 0 to 10.1, z 1 to 3");
    EXPECT_EQ(bounds("--unit 10 --level-unit 2"), "bounds x 0 to 10, y 0 to 10.1, z 5 to 15");
    EXPECT_EQ(bounds("--unit 10,-20 --level-unit 5"), "bounds x 0 to 10, y -5.05 to 0, z 2 to 6");
    EXPECT_EQ(bounds("--unit 10 --y-down"), "bounds x 0 to 10, y -10.1 to 0, z 1 to 3");
    write("h", "0 40 50\n");
    EXPECT_EQ(bounds("--unit 10 --heights h --select 50,20"),
              "bounds x 0 to 10, y 0 to 10, z 4 to 5");
}

TEST_F(SharedOptions, OfPicturesShowTheSamePart) {
    // The upper part of the first square, and as much above it.
    const std::string part = " --picture p.png --size 40x40 --view 0,50,100,150";
    constexpr COLORREF white = RGB(255, 255, 255);
    for (const char* command : {"regions c", "triangles c"}) {
        ASSERT_EQ(run(command + part).status, 0);
        const Pixels upward(path("p.png"));
        EXPECT_TRUE(upward.at(20, 8) == white && upward.at(20, 30) != white) << command;
        ASSERT_EQ(run(command + part + " --y-down").status, 0);
        const Pixels downward(path("p.png"));
        EXPECT_TRUE(downward.at(20, 8) != white && downward.at(20, 30) == white) << command;
    }
}

} // namespace
} // namespace korvel::test
