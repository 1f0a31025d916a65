#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "kit/files/placement_line.h"
#include "kit/kit.h"
#include "tests/support/model_state.h"
#include "tests/support/scratch.h"

namespace korvel::test {
namespace {

using kit::FileKind;
using kit::Grid;
using kit::Placement;
using kit::TextFile;

const std::string tetrahedron = "4\n0 0 0\n6 0 0\n0 6 0\n0 0 6\n4\n0 1 2\n0 1 3\n0 2 3\n1 2 3\n1\n"
                                "4\n1 1 1\n0 1 2 3\n";
const std::string triangle = "3\n0.0 0\n5 0\n0 5\n1\n3\n0 1 2\n1\n1\n0\n";
const std::string section = "3\n0 1\n0 0 10 0 0 10\n1\n3 0 1 2\n1\n1 0\n";
const std::string written_section = "3\n0 0 0\n10 0 0\n0 10 0.5\n1\n3\n0 1 2 0\n1\n3\n0 0 0 0\n";

/// The placement that a text ends with, or the message.
std::string read_back(const std::string& text) {
    try {
        return kit::placement_line(kit::read_placement(TextFile("f", text)));
    } catch (const kit::Error& error) {
        return error.what();
    }
}

TEST(PlacementLine, ReadsBackAsTheSame) {
    std::vector<Grid> grids = {Grid(),
                               Grid(1, 1000, {500000, 4649776, 0}),
                               Grid(1, 3600),
                               Grid(5, 1, {0.1, -1.5e9, 7}),
                               Grid(1, 7, {1.0 / 3, 1e-9, -0.25}),
                               Grid(1, 3600, {-89.123456789, 0.2, 1e5 / 3})};
    grids.push_back(Grid(1, 1e6, {8.5, 47.25, 0}));
    grids.back().turn_y_down();
    for (const Grid& grid : grids) {
        for (const char* reference : {"", "EPSG:4326", "LOCAL_CS[\"a  grid\", UNIT[\"m\", 1]]"}) {
            const Placement placement = {grid, reference};
            const std::string line = placement_line(placement);
            EXPECT_EQ(line.empty(), placement.is_plain());
            EXPECT_EQ(kit::read_placement(TextFile("f", "1\n" + line)), placement) << line;
        }
    }
    EXPECT_EQ(kit::placement_line({Grid(1, 1000, {500000, -6.5, 0}), " A[1,\r\n    B[2]]\n"}),
              "grid 0.001 origin 500000 -6.5 reference A[1, B[2]]\n");
}

TEST(PlacementLine, IsTheLastThatIsNotBlank) {
    EXPECT_EQ(read_back("0\n  grid 1/3600 origin 1 2 3 down reference\tEPSG:1  \r\n\n \t\n"),
              "grid 1/3600 origin 1 2 3 down reference EPSG:1\n");
    EXPECT_EQ(read_back("grid 2 origin 1 2\n0\n"), "");
    EXPECT_EQ(read_back("0 grid 2 origin 1 2\n"), "");
    EXPECT_EQ(read_back("0\ngrids 2 origin 1 2\n"), "");
    EXPECT_EQ(read_back(""), "");
    const std::vector<std::pair<const char*, const char*>> wrong = {
        {"grid", "'' follows the step of the grid, where 'origin' is expected"},
        {"grid 0 origin 1 2",
         "'0' is not the step of a grid: expected a number from 1e-30 to 1e30, or a fraction"},
        {"grid 1e99 origin 1 2",
         "'1e99' is not the step of a grid: expected a number from 1e-30 to 1e30, or a fraction"},
        {"grid 1 origin 1e308 2",
         "'1e308' is not a number of a usual size: expected the x of the grid's origin"},
        {"grid 1 1 2", "'1' follows the step of the grid, where 'origin' is expected"},
        {"grid 1 origin 1",
         "'' is not a number of a usual size: expected the y of the grid's origin"},
        {"grid 1 origin nan 2",
         "'nan' is not a number of a usual size: expected the x of the grid's origin"},
        {"grid 1 origin 1 2 3 4", "'4' follows the origin of the grid"},
        {"grid 1 origin 1 2 up", "'up' follows the origin of the grid"},
        {"grid 1 origin 1 2 reference", "'' is not a reference system"},
    };
    for (const auto& [line, message] : wrong) {
        EXPECT_EQ(read_back("1\n\n" + std::string(line) + "\n"), "f:3: " + std::string(message));
    }
}

TEST(PlacementLine, FollowsRegionsModelsAndSectionsOnly) {
    const std::vector<std::pair<std::string, FileKind>> files = {
        {triangle, FileKind::regions},
        {tetrahedron, FileKind::model},
        {section, FileKind::section},
        {written_section, FileKind::written_section}};
    for (const auto& [text, kind] : files) {
        EXPECT_EQ(kind_of(TextFile("f", text + "grid 0.5 origin 1 2 reference A B")), kind);
        EXPECT_TRUE(is_whole(TextFile("f", text + "grid 1 origin 1 2\n\n"), kind));
        EXPECT_FALSE(is_whole(TextFile("f", text + "grid 1 origin 1 2\n7"), kind));
    }
    EXPECT_FALSE(is_whole(TextFile("f", "1\n1\n0 0\ngrid 1 origin 1 2\n"), FileKind::curves));
    EXPECT_FALSE(is_whole(TextFile("f", "0\n0\ngrid 1 origin 1 2\n"), FileKind::triangles));
}

kit::Solids solids_of(const std::string& text) {
    return kit::Solids::read(TextFile("f", text));
}

/// What an exact class writes after it has read a text.
template <class Class, class Read, class Write>
std::string rewritten(const std::string& text, Read read, Write write) {
    Class object;
    (object.*read)(stream_of(TextFile("f", text)).get());
    const auto out = stream_of(TextFile("f", ""));
    (object.*write)(out.get());
    std::rewind(out.get());
    std::string written;
    for (int c = std::getc(out.get()); c != EOF; c = std::getc(out.get())) {
        written += static_cast<char>(c);
    }
    return written;
}

TEST(PlacementLine, IsNotReachedByTheExactClasses) {
    const std::string line = "grid 0.001 origin 1 2 reference EPSG:4326\n";
    EXPECT_EQ(rewritten<TMOD3D>(tetrahedron + line, &TMOD3D::read_mode, &TMOD3D::write_mode),
              rewritten<TMOD3D>(tetrahedron, &TMOD3D::read_mode, &TMOD3D::write_mode));
    EXPECT_EQ(
        rewritten<CCPloy2DRg>(triangle + line, &CCPloy2DRg::readpolyrg, &CCPloy2DRg::writepolyrg),
        rewritten<CCPloy2DRg>(triangle, &CCPloy2DRg::readpolyrg, &CCPloy2DRg::writepolyrg));
    EXPECT_EQ(rewritten<TMOD2D>(section + line, &TMOD2D::readdate, &TMOD2D::writedate),
              rewritten<TMOD2D>(section, &TMOD2D::readdate, &TMOD2D::writedate));
}

/// Blocks of a map, raised, in the user's coordinates: the solids that were raised in steps and
/// then written with a placement.
class PlacedSolids : public Scratch {
protected:
    std::string written(const auto& value) const {
        value.write(path("f"));
        return Scratch::read("f");
    }

    // Four regions with a hole and a touching corner, not far from 0 in steps.
    static kit::Solids in_steps(bool is_separate = false) {
        const kit::Network network = kit::Network::read(TextFile(
            "n", "5\n5\n0 0 9000 0 9000 7001 0 7001 0 0\n2\n0 3000 9000 3500\n2\n4000 0 4000 7001\n"
                 "5\n1000 1000 2000 1000 2000 2000 1000 2000 1000 1000\n"
                 "4\n5000 4000 6000 4000 5500 5000 5000 4000\n"));
        return kit::raise(find_regions(network).map(),
                          {.low = -500, .high = 1250, .separate = is_separate})
            .solids;
    }

    static Placement placement(bool is_down = false) {
        return {Grid(1, 1000, {500000, 4649776, 12.5}).turn_y_down(is_down), "EPSG:25832"};
    }
};

TEST_F(PlacedSolids, ComeBackByteForByte) {
    const std::string plain = written(in_steps());
    for (const bool is_down : {false, true}) {
        const std::string placed = plain + placement_line(placement(is_down));
        const kit::Solids solids = solids_of(placed);
        EXPECT_EQ(solids.placement(), placement(is_down));
        EXPECT_EQ(solids.vertex(0)[1], placement(is_down).grid.to_user(in_steps().vertex(0))[1]);
        EXPECT_EQ(solids.change_by_file(), 0);
        // Reading may turn faces that bodies share.
        const std::string again = written(solids_of(plain)) + placement_line(placement(is_down));
        EXPECT_EQ(written(solids), again);
        EXPECT_EQ(written(kit::Solids(solids)), again);
    }
}

TEST_F(PlacedSolids, AreDerivedAsIfMadeThere) {
    for (const bool is_down : {false, true}) {
        const kit::Solids plain = in_steps(true);
        kit::Solids solids = solids_of(written(plain) + placement_line(placement(is_down)));
        kit::Solids derived = solids;
        derived.derive();
        for (int body = 0; body < solids.size(); ++body) {
            const double volume = plain.model().bodies[body].volume / 1e9;
            double& read = solids.model().bodies[body].volume;
            EXPECT_NEAR(read, volume, 1e-12 * volume);
            EXPECT_NEAR(solids[body].volume(), volume, 1e-6 * volume);
            read = derived.model().bodies[body].volume; // with the digits that are left far from 0
            EXPECT_NEAR(read, volume, 1e-3 * volume);
        }
        EXPECT_PRED_FORMAT2(same_state, solids.model(), derived.model());
    }
    // The orientation of shared faces depends on where 0 is.
    const std::string text = written(in_steps());
    const kit::Solids plain = solids_of(text);
    const kit::Solids solids = solids_of(text + placement_line(placement()));
    for (int face = 0; face < plain.face_count(); ++face) {
        EXPECT_TRUE(std::ranges::equal(solids.faces()[face].vertices(), //
                                       plain.faces()[face].vertices()));
    }
    EXPECT_NEAR(solids.volume(), plain.volume() / 1e9, 1e-7);
}

TEST_F(PlacedSolids, AreCutInTheUsersCoordinates) {
    const std::string text = written(in_steps());
    const kit::Solids solids = solids_of(text + placement_line(placement()));
    const kit::Section cut = solids.cut(kit::Plane::at_z(13.25));
    const kit::Section plain = solids_of(text).cut(kit::Plane::at_z(750));
    ASSERT_EQ(cut.size(), plain.size());
    EXPECT_NEAR(cut.area(), plain.area() / 1e6, 1e-6);
    for (int polygon = 0; polygon < plain.size(); ++polygon) {
        EXPECT_EQ(cut[polygon].body(), plain[polygon].body());
        EXPECT_EQ(cut[polygon].points().size(), plain[polygon].points().size());
        EXPECT_EQ(cut[polygon].is_hole(), plain[polygon].is_hole());
    }
    const std::string lists = written(plain).substr(written(plain).find("\n8\n"));
    EXPECT_EQ(written(cut).substr(written(cut).find("\n8\n")), lists + placement_line(placement()));
    const auto any = kit::read_any(TextFile("f", written(cut)));
    EXPECT_EQ(any.placement, placement());
    EXPECT_EQ(std::get<TMOD2D>(any.contents).verts[0].model_xyz[2], 13.25);
}

TEST_F(PlacedSolids, KeepTheirPlacementWhenTheyChange) {
    kit::Solids solids = solids_of(written(in_steps()) + placement_line(placement()));
    kit::SolidsEditor editor{kit::Solids(solids)};
    editor.gather_body(0);
    editor.move({0, 0, 1});
    editor.undo();
    EXPECT_EQ(editor.take().placement(), placement());
    weld(solids);
    solids.remove(std::vector<int>{1});
    solids.clean();
    EXPECT_EQ(solids.placement(), placement());
    EXPECT_FALSE(collapse_in_file(solids));
    EXPECT_EQ(solids.change_by_file(), 0);
    solids.set_placement({Grid(1, 1, {500000, 4649776, 0}), ""}); // 9 by 7 steps
    EXPECT_NEAR(solids.change_by_file(), 0, 1e-6);
    solids.set_placement({});
    EXPECT_NEAR(solids.change_by_file(), 0.25, 0.1);
    EXPECT_TRUE(collapse_in_file(kit::make_cuboid({500000, 4649776, 0}, {0.1, 0.1, 0.1})));
}

TEST_F(PlacedSolids, AreMergedOnAGridThatSuitsAll) {
    const auto box_at = [](double x, const Placement& placement) {
        kit::Solids box = kit::make_cuboid({x, 0, 0}, {2, 2, 2});
        box.set_placement(placement);
        return box;
    };
    const auto merged = [&](double x, const Placement& first, const Placement& second) {
        std::string warnings;
        const kit::Context context = {.on_warning = [&](const std::string& w) { warnings += w; }};
        kit::Solids sum = box_at(0, first);
        sum.add(box_at(x, second), context);
        std::vector<kit::Solids> parts;
        parts.push_back(box_at(0, first));
        parts.push_back(box_at(x, second));
        const kit::Solids whole = kit::merge(std::move(parts), context);
        EXPECT_EQ(sum.placement(), whole.placement());
        EXPECT_EQ(whole.bounds().high[0], x + 1);
        return placement_line(whole.placement()) + warnings;
    };
    const Placement fine = {Grid(1, 1000, {5, 0, 0}), "EPSG:1"};
    EXPECT_EQ(merged(9, {}, {}), "");
    EXPECT_EQ(merged(9, {}, fine), "grid 0.001 origin 5 0 reference EPSG:1\n");
    EXPECT_EQ(merged(9, fine, {Grid(1, 100), "EPSG:1"}),
              "grid 0.001 origin 5 0 reference EPSG:1\n");
    EXPECT_EQ(merged(30000, fine, {}), "grid 0.001 origin 15000 0 reference EPSG:1\n");
    EXPECT_EQ(merged(1e9, fine, {}), "grid 0.001 origin 5 0 reference EPSG:1\n");
    const std::string warning = "the models are in different reference systems, EPSG:2 and EPSG:1; "
                                "coordinates are taken as they are";
    EXPECT_EQ(merged(9, {Grid(), "EPSG:2"}, fine),
              "grid 0.001 origin 5 0 reference EPSG:2\n" + warning + warning);
    kit::Solids all;
    all.add(box_at(0, fine));
    EXPECT_EQ(all.placement(), fine);
}

TEST(PlacementLine, IsCheckedAndKeptByRepairs) {
    const TextFile sound("f", tetrahedron + "grid 0.5 origin 1 2\n");
    EXPECT_TRUE(check_file(sound, FileKind::model).problems.empty());
    EXPECT_EQ(repair_file(sound, FileKind::model).placement, kit::read_placement(sound));
    const TextFile wrong("f", "3\n0.5 0\n5 0\n0 x\n1\n3\n0 1 2\n1\n1\n0\ngrid 0 origin 1 2\n");
    const auto problems = check_file(wrong, FileKind::regions).problems;
    EXPECT_EQ(problems.front().line, 4);
    EXPECT_EQ(problems.back().line, 11);
    EXPECT_EQ(problems.back().message.substr(0, 8), "'0' is n");
    EXPECT_FALSE(repair_file(wrong, FileKind::regions).is_sound());
    EXPECT_THROW(kit::read_any(TextFile("f", triangle + "grid\n")), kit::Error);
}

} // namespace
} // namespace korvel::test
