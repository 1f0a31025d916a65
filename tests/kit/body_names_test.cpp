// Names of bodies in body model files.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "kit/kit.h"
#include "tests/support/scratch.h"

namespace korvel::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class BodyNames : public Scratch {
protected:
    static std::vector<std::string> names_in(const kit::Solids& solids) {
        std::vector<std::string> names;
        for (const kit::Body body : solids) {
            names.push_back(body.name());
        }
        return names;
    }
    static kit::Solids three_cubes() {
        kit::Solids solids;
        for (const double x : {0.0, 5.0, 9.0}) {
            solids.add(kit::make_cuboid({x, 0, 0}, {1, 1, 1}));
        }
        return solids;
    }
};

TEST_F(BodyNames, TravelThroughFiles) {
    kit::Solids solids = three_cubes();
    solids.write(path("plain"));
    for (const bool is_placed : {false, true}) {
        if (is_placed) {
            solids.set_placement({*kit::Grid::parse("0.001", {4, 0, 0}), "EPSG:25832"});
        }
        solids.set_name(0, "body 7 name  Straße\t1 ");
        solids.set_name(2, "two\nlines");
        solids.write(path("model"));
        const kit::Solids read = kit::Solids::read(path("model"));
        EXPECT_THAT(names_in(read), ElementsAre("body 7 name  Straße 1", "", "two lines"));
        EXPECT_EQ(read.placement(), solids.placement());
        EXPECT_THAT(kit::check_file(kit::TextFile(path("model")), kit::FileKind::model).problems,
                    testing::IsEmpty());
        EXPECT_EQ(kit::kind_of(kit::TextFile(path("model"))), kit::FileKind::model);
    }
}

TEST_F(BodyNames, WrongLinesAreNamed) {
    kit::Solids solids = three_cubes();
    solids.write(path("plain"));
    const std::string text = kit::TextFile(path("plain")).text;
    struct Case {
        std::string lines;
        std::string message;
    };
    const std::vector<Case> cases = {
        {"body 3 name x\n", "'3' is not a body, of which there are 3"},
        {"body 0 name x\r\n\r\nbody -1 name y", "'-1' is not a body, of which there are 3"},
        {"body 1x name x\n", "'1x' is not a body"},
        {"body\n", "'' is not a body"},
        {"body 1 named x\n", "'named' follows the number of a body"},
        {"body 1 name \n", "'name' follows the number of a body"},
        {"name 1\n", "'name' follows the end of the bodies"},
        {"body 1 name x\n7\n", "'body' follows the end of the bodies"},
    };
    for (const Case& each : cases) {
        const kit::TextFile file("m", text + each.lines);
        const kit::Findings findings = kit::check_file(file, kit::FileKind::model);
        ASSERT_EQ(findings.problems.size(), 1U) << each.lines;
        EXPECT_THAT(findings.problems[0].message, HasSubstr(each.message));
        try {
            kit::Solids::read(file);
            ADD_FAILURE() << each.lines;
        } catch (const kit::Error& error) {
            EXPECT_THAT(error.what(), HasSubstr(each.message));
            EXPECT_EQ(error.line(), findings.problems[0].line);
        }
    }
}

TEST_F(BodyNames, StayWithTheirBodiesInARepair) {
    const kit::TextFile file("m", "4\n0 0 0\n1 0 0\n0 1 0\n0 0 1\n4\n0 2 1\n0 1 3\n1 2 3\n0 3 2\n"
                                  "2\n0\n0 0 0\n4\n0 0 0\n0 1 2 3\n"
                                  "body 0 name empty\nbody 1 name full\n");
    const kit::RepairedFile repaired = kit::repair_file(file, kit::FileKind::model);
    kit::OutputFile out(path("repaired"));
    repaired.write(out);
    out.replace();
    EXPECT_THAT(names_in(kit::Solids::read(path("repaired"))), ElementsAre("full"));
}

} // namespace
} // namespace korvel::test
