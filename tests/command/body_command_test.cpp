#include <string>
#include <utility>
#include <vector>

#include "kit/files/curve_file.h"
#include "kit/files/model_file.h"
#include "kit/files/output_file.h"
#include "kit/maps/region_sets.h"
#include "tests/support/command_scratch.h"
#include "tests/support/pixels.h"

namespace korvel::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

// A plate with two holes, the left one filled by a region of its own.
const std::string plate = "12\n0.0 0.0\n10.0 0.0\n10.0 8.0\n0.0 8.0\n2.0 2.0\n4.0 2.0\n4.0 6.0\n"
                          "2.0 6.0\n6.0 2.0\n8.0 2.0\n8.0 6.0\n6.0 6.0\n"
                          "3\n4 0 1 2 3\n4 4 5 6 7\n4 8 9 10 11\n2\n3 0 1 2\n1 1\n";
class BodyCommand : public CommandScratch {};

TEST_F(BodyCommand, CutsWhatItRaised) {
    write("r", plate);
    const Result solid = run("solid r --levels 0,5 -o m");
    EXPECT_EQ(solid.status, 0);
    EXPECT_EQ(solid.err, "");
    EXPECT_THAT(solid.out, HasSubstr("\n2 bodies: "));
    EXPECT_THAT(solid.out, HasSubstr("24 vertices, 80 edges, 56 faces, volume 360\n"));
    EXPECT_THAT(solid.out, HasSubstr("bounds x 0 to 10, y 0 to 8, z 0 to 5\n"));
    const std::string info = run("info m").out;
    EXPECT_THAT(info, StartsWith("m: body model file\n2 bodies, 0 of them open, 24 vertices"));
    EXPECT_THAT(info, HasSubstr("     0      52      78        24     -2                 320  #"));

    struct Section {
        const char* plane;
        const char* shown;
        const char* figures;
    };
    for (const Section& row : std::vector<Section>{
             {"--plane y=1", "y = 1\n1 of 2", "1 polygon, area 50\n"},
             {"--plane y=4", "y = 4\n2 of 2", "4 polygons, area 40\n"},
             {"--plane x=7.0", "x = 7\n1 of 2", "2 polygons, area 20\n"},
             {"--plane z=.5", "z = 0.5\n2 of 2", "4 polygons, area 72\n"},
             {"--plane 0,0,2,-4", "z = 2\n2 of 2", "4 polygons, area 72\n"},
             {"--plane 0,3,-4,5", "3y - 4z = -5\n2 of 2", "area 55\n"},
             {"--plane -1,-1,0,9.5", "-x - y = -9.5\n2 of 2", "4 polygons, area 45.96"},
             {"--plane y=2", "y = 2, cut beside the corners that lie there: y = 2.0", "area 40\n"},
             {"--x 1", "y = 1\n1 of 2", "1 polygon, area 50\n"},
             {"--y 7", "x = 7\n1 of 2", "2 polygons, area 20\n"},
         }) {
        const Result cut = run(std::string("section m ") + row.plane);
        EXPECT_EQ(cut.err, "") << row.plane;
        EXPECT_THAT(cut.out, HasSubstr(row.shown)) << row.plane;
        EXPECT_THAT(cut.out, HasSubstr(row.figures)) << row.plane;
    }

    ASSERT_EQ(run("section m --plane 0,0,1,-2 --picture p.png --size 500x400 -o s").status, 0);
    EXPECT_THAT(run("info s").out, HasSubstr("writes it\n24 vertices, 4 faces, 4 groups\n"
                                             "bounds x 0 to 10, y 0 to 8, z 2 to 2\n"));
    const Pixels pixels(path("p.png"));
    const COLORREF plate_colour = pixels.at(120, 120);
    const COLORREF filling = pixels.at(165, 230);
    EXPECT_EQ(pixels.at(420, 300), plate_colour);
    EXPECT_NE(plate_colour, filling);
    EXPECT_EQ(pixels.at(320, 230), RGB(255, 255, 255)) << "the open hole";
    EXPECT_EQ(pixels.at(5, 5), RGB(255, 255, 255));

    const Result sweep = run("section m --plane y=99 --sweep 4 --picture p.svg");
    EXPECT_EQ(sweep.status, 0);
    EXPECT_THAT(sweep.out, HasSubstr("    2  y = 3: 2 bodies, 4 polygons, area 40\n"));
    EXPECT_THAT(sweep.out, HasSubstr("spacing of 2: 360, volume of the bodies: 360\n"
                                     "wrote p-001.svg to p-004.svg\n"));
    EXPECT_THAT(read("p-004.svg"), testing::EndsWith("</svg>\n"));
    EXPECT_EQ(files(), 8);
}

TEST_F(BodyCommand, RefusesPlanesThatAreNone) {
    write("m", tetrahedron());
    for (const char* plane : {"w=3", "x", "x=", "=5", "x=3,4", "x=nan", "x=1e999", "X=3", "xy=3",
                              "'x= 3'", "'x =3'", "1,2,3", "1,2,3,4,5", "'1, 2,3,4'", "1,2,3,x"}) {
        const Result result = run(std::string("section m --plane ") + plane);
        EXPECT_EQ(result.status, 2) << plane;
        EXPECT_THAT(result.err, HasSubstr("is not a plane x=V, y=V, z=V or A,B,C,D in finite"))
            << plane;
    }
    EXPECT_THAT(run("section m --plane 0,0,0,1").err, HasSubstr("A, B and C not all 0"));
    EXPECT_EQ(run("section m").err, "korvel: --plane is required\n");
    EXPECT_THAT(run("section m --x 1 --plane x=1").err, HasSubstr("more than one plane"));
    EXPECT_THAT(run("section m --x 1 --y 1").err, HasSubstr("more than one plane"));
    EXPECT_THAT(run("section m --plane x=1 --view 0,0,1,1").err, HasSubstr("requires --picture"));
    EXPECT_THAT(run("section --help").out, testing::Not(testing::ContainsRegex("--[xy]\\b")));
}

TEST_F(BodyCommand, ReportsWhatAPlaneMisses) {
    ASSERT_EQ(run("starter cube --size 4,4,4 -o a").status, 0);
    ASSERT_EQ(run("starter cube --size 4,4,4 --center 20,0,0 -o b").status, 0);
    ASSERT_EQ(run("merge a b -o m").status, 0);
    const std::vector<std::pair<std::string, std::string>> table = {
        {"x=-3.5", "x = -3.5 does not meet the model: x is -2 to 22 there"},
        {"0,0,2,-8", "z = 4 does not meet the model: z is -2 to 2 there"},
        {"1,-1,0,90", "x - y = -90 does not meet the model: x - y is -4 to 24 there"},
        {"x=10", "x = 10 meets no body"},
    };
    for (const auto& [plane, message] : table) {
        const Result result = run("section m -o s --picture p.png --size 300x200 --plane " + plane);
        EXPECT_EQ(result.status, 0) << plane;
        EXPECT_EQ(result.err, "korvel: warning: the plane " + message + "\n");
        EXPECT_THAT(result.out, HasSubstr("\nwrote s, p.png\n")) << plane;
    }
    const Result sweep = run("section m --plane x=0 --sweep 6");
    EXPECT_EQ(sweep.err, "korvel: warning: 4 of 6 cuts meet no body\n");
    EXPECT_EQ(sweep.status, 0);
}

TEST_F(BodyCommand, RaisesAsTheLibraryDoes) {
    const Result result =
        run("solid " KORVEL_DATA_DIR "/us-states.curves --select 20000,60000 --levels -1,2 --axis 2"
            " --unit 10,-10 --level-unit 1 --origin 20000,60000 --fill front "
            "--separate --notices --as-traced -o m");
    EXPECT_EQ(result.status, 0);

    kit::CurveNetwork curves = kit::read_curves(kit::TextFile(KORVEL_DATA_DIR "/us-states.curves"));
    CREGION builder;
    builder.SetTolerance(1);
    builder.SetPtsInfo(curves.pts, curves.counts);
    builder.AddSelectRegion({20000, 60000});
    PLYDT region;
    builder.GetSelectRegion(region);
    kit::orient_rings(region);
    PLYDT::set_trace_files(false);
    region.region_tranglate();
    region.CoordinatesTrans(2, 20000, 60000, 0, 0, 10, -10, -1, 2);
    std::string notices;
    const message_box_handler former = set_message_box_handler([&](const char* text, unsigned) {
        notices += text;
        return IDOK;
    });
    TMOD3D by_library;
    by_library.create3dmode(region);
    set_message_box_handler(former);
    EXPECT_EQ(result.err, notices) << "the library's notice and nothing else";
    EXPECT_EQ(by_library.bodies[0].hue, 80);

    TMOD3D by_command;
    kit::read_model(kit::TextFile(path("m")), by_command);
    by_library.bodies[0].hue = by_command.bodies[0].hue;
    by_library.bodies[0].saturation = by_command.bodies[0].saturation;
    by_library.bodies[0].lightness = by_command.bodies[0].lightness;
    EXPECT_NE(by_command.bodies[0].hue, 80);
    kit::OutputFile out(path("library"));
    kit::write_model(by_library, out.stream());
    out.replace();
    EXPECT_EQ(read("m"), read("library"));
}

TEST_F(BodyCommand, SectionsHaveTheColoursOfTheirBodies) {
    // Two cubes side by side, red and blue.
    ASSERT_EQ(run("starter cube --size 4,4,4 -o a").status, 0);
    ASSERT_EQ(run("starter cube --size 4,4,4 --center 6,0,0 -o b").status, 0);
    ASSERT_EQ(run("merge a b -o m").status, 0);
    TMOD3D model;
    kit::read_model(kit::TextFile(path("m")), model);
    for (int b = 0; b < 2; ++b) {
        model.bodies[b].hue = b == 0 ? 360 : 240;
        model.bodies[b].saturation = 0.5;
        model.bodies[b].lightness = 0.25; // a section is painted at 0.6
    }
    kit::OutputFile out(path("m"));
    kit::write_model(model, out.stream());
    out.replace();
    const COLORREF colours[] = {RGB(204, 102, 102), RGB(102, 102, 204)};

    const Result cut = run("section m --plane 0,0,1,0.5 --picture p.png --size 500x300");
    EXPECT_THAT(cut.out, HasSubstr("     0         1                  16  #cc6666\n"
                                   "     1         1                  16  #6666cc\n"));
    // Each slice of a sweep is cut after the ones before.
    ASSERT_EQ(run("section m --plane 0,0,1,0 --sweep 3 --picture s.png --size 500x300").status, 0);
    for (const char* const picture : {"p.png", "s-001.png", "s-003.png"}) {
        const Pixels pixels(path(picture));
        int found[2] = {};
        for (int y = 0; y < pixels.height(); ++y) {
            for (int x = 0; x < pixels.width(); ++x) {
                found[0] += pixels.at(x, y) == colours[0] ? 1 : 0;
                found[1] += pixels.at(x, y) == colours[1] ? 1 : 0;
            }
        }
        EXPECT_GT(found[0], 5000) << picture;
        EXPECT_NEAR(found[0], found[1], 0.05 * found[0]) << picture;
    }
}

TEST_F(BodyCommand, FillsByTheChosenMethod) {
    // The front leaves a gap in the plate, the small region it covers.
    write("r", plate);
    EXPECT_THAT(run("solid r --levels 0,1 -o m").out, HasSubstr("1 by the front, 1 by Delaunay"));
    EXPECT_THAT(run("solid r --levels 0,1 -o m --fill delaunay").out, HasSubstr(" 0 by the front"));
    const Result front = run("solid r --levels 0,1 -o m --fill front");
    EXPECT_EQ(front.status, 0);
    EXPECT_EQ(front.err,
              "korvel: warning: r: 1 region left out: 1 that the front's triangles do not fit "
              "(--verbose names it)\n");
    const Result strict = run("solid r --levels 0,1 -o m --fill front --strict --verbose");
    EXPECT_EQ(strict.status, 3);
    EXPECT_THAT(strict.err,
                HasSubstr("korvel: warning: region 0 (0,0 to 10,8): left out, the front's "
                          "triangles do not fit its outline\n"));
    EXPECT_THAT(front.out, HasSubstr("\n1 body: "));
    // So far from 0,0 the file cannot hold a plate of this size, nor such levels anywhere.
    EXPECT_THAT(
        run("solid r --levels 0,1 -o m --origin -3000000,0 --unit 3 --level-unit 1").err,
        StartsWith("korvel: warning: the file holds six decimals and is read in single precision"));
    for (const char* const options : {"--levels 0,1 --origin -2000000000,0", "--levels 0,1e-7",
                                      "--levels 0,1 --unit 1e9,1 --level-unit 1"}) {
        const Result collapsed = run(std::string("solid r -o m ") + options);
        EXPECT_EQ(collapsed.status, 2) << options;
        EXPECT_THAT(collapsed.err, HasSubstr("would lose its area")) << options;
    }
}

TEST_F(BodyCommand, RaisesEachRegionToItsOwnHeight) {
    write("r", plate);
    write("h", "# the filling by a point inside\n3,3 1 4 # higher\n\n0 0 2\n");
    const Result solid = run("solid r --heights h -o m");
    EXPECT_EQ(solid.err, "");
    EXPECT_THAT(solid.out, HasSubstr("volume 152\n")); // 2 · 64 + 3 · 8
    EXPECT_THAT(solid.out, HasSubstr("8 walls split"));
    EXPECT_THAT(run("info m").out, HasSubstr("closed, shares faces with 1\n"));
    write("h", "1 1 4\n");
    EXPECT_THAT(run("solid r --heights h --levels 0,2 -o m").out, HasSubstr("volume 152\n"));
    const Result one = run("solid r --heights h -o m --strict");
    EXPECT_EQ(one.status, 3);
    EXPECT_THAT(one.err, HasSubstr("r: 1 region left out: 1 without levels"));
    EXPECT_THAT(one.out, HasSubstr("\n1 body: "));
    const std::vector<std::pair<std::string, std::string>> refused = {
        {"\n0 1 high", "h:2: 'high' is not a level"},
        {"0 1", "h:1: '0': a line needs a region, a lower and an upper level"},
        {"7 1 2", "h:1: '7': there is no such region, they go from 0 to 1"},
        {"1 2 1", "h:1: '2': the lower level is not below the upper one"},
        {"50,50 1 2", "h:1: '50,50': no region contains this point"},
        {"0 1 2\n1,1 1 2", "h:2: region 0 has levels from an earlier line"},
    };
    for (const auto& [text, message] : refused) {
        write("h", text);
        EXPECT_THAT(run("solid r --heights h -o m").err, StartsWith("korvel: " + message));
    }
}

TEST_F(BodyCommand, WeldsWhatWasRaisedSeparately) {
    write("r", plate);
    ASSERT_EQ(run("solid r --levels 0,5 -o m").status, 0);
    EXPECT_THAT(run("solid r --levels 0,5 -o s --separate --threads 2").out,
                HasSubstr("32 vertices, 96 edges, 64 faces, volume 360\n"));
    const Result welded = run("weld s -o w");
    EXPECT_EQ(welded.status, 0);
    EXPECT_THAT(welded.out, HasSubstr("welded: 8 vertices joined, 8 faces shared, "));
    EXPECT_THAT(welded.out, HasSubstr("now: 24 vertices, 80 edges, 56 faces, volume 360\n"));
    EXPECT_THAT(run("check w").out, HasSubstr("nothing wrong"));
    const Result thick = run("weld s -o w --tolerance 3");
    EXPECT_EQ(thick.status, 2);
    EXPECT_THAT(thick.err, StartsWith("korvel: s: body 0: two corners of its face "));
}

TEST_F(BodyCommand, StartsShapes) {
    struct Row {
        const char* arguments;
        const char* shown;
        const char* bounds;
    };
    for (const Row& row : std::vector<Row>{
             {"cube --size 4,2,1 --center 1,2,3",
              "14 vertices, 36 edges, 24 faces, volume 8, closed\n",
              "bounds x -1 to 3, y 1 to 3, z 2.5 to 3.5\n"},
             {"cube --size 2,2,2 --rounds 2",
              "194 vertices, 576 edges, 384 faces, volume 8, closed",
              "x -1 to 1, y -1 to 1, z -1 to 1\n"},
             {"ball --size 2", "12 vertices, 30 edges, 20 faces, volume 20.289", "x -1.70"},
             {"ball --size 1 --rounds 4", "2562 vertices, 7680 edges, 5120 faces, volume 4.179",
              "x -1 to 1, y -1 to 1, z -1 to 1\n"},
         }) {
        EXPECT_THAT(run(std::string("starter -o m ") + row.arguments).out, HasSubstr(row.shown));
        const std::string info = run("info m").out;
        EXPECT_THAT(info, HasSubstr("1 body, 0 of them open"));
        EXPECT_THAT(info, HasSubstr(row.bounds));
    }
}

TEST_F(BodyCommand, DetectsTheKindOfAFile) {
    write("c", "2 2 0 0 4 4 3 1 1 2 2 1 1");
    write("r", plate);
    write("m", tetrahedron());
    write("s", "3\n0 2\n0 0  10 0  0 10\n1\n3  0 1 2\n1\n1  0\n");
    write("damaged", "4\n0.5 0 0\n1 0 0\n0 1 0\n0 0 1\n4\n0 1 2\n0 1 3\n0 2 3\n1 2 3\n1\n4\n0.0 x");
    ASSERT_EQ(run("section m --x 1 -o w").status, 0);
    ASSERT_EQ(run("triangles r -o t").status, 0);
    const std::vector<std::pair<const char*, const char*>> table = {
        {"c", "c: curve file\n2 curves, 1 of them closed, 5 points\nbounds x 0 to 4, y 0 to 4\n"},
        {"r", "r: polygon-region file\n2 regions with 2 holes, 3 rings, 12 points, area 72\n"},
        {"m",
         "m: body model file\n1 body, 0 of them open, 4 vertices, 6 edges, 4 faces, volume 36"},
        {"s", "s: section file as readdate reads it\n3 vertices, 1 face, 1 group\n"
              "bounds x 0 to 10, y 0 to 0, z 0 to 10\n"},
        {"w", "w: section file as writedate writes it\n3 vertices, 1 face, 1 group\n"},
        {"t", "t: triangle file\n"},
    };
    for (const auto& [file, report] : table) {
        EXPECT_THAT(run(std::string("info ") + file).out, StartsWith(report));
        EXPECT_THAT(run(std::string("check ") + file).out, HasSubstr(", nothing wrong\n"));
    }
    EXPECT_THAT(run("check damaged").err,
                StartsWith("korvel: damaged: body model file with 2 problems"));
    EXPECT_THAT(run("check damaged --kind regions").err,
                StartsWith("korvel: damaged: polygon-region file"));
}

TEST_F(BodyCommand, ChecksReportEveryProblem) {
    const std::string vertices = "5\n0.0 0 0\n1 0 0\n0 1 0\n0 0 1\n0 0 1\n";
    const std::vector<std::pair<std::string, std::string>> table = {
        {vertices + "6\n0 1 2\n0 1 3\n0 2 x\n1 2 9\n1 1 3\n0 2 1\n3\n4\n0 0 0\n0 1 2 3\n0\n0 0 0\n"
                    "4\n0 0 0\n0 5 1 1\n",
         "f:10: 'x' is not an integer: expected the vertex of a face\n"
         "f:11: the vertex of a face is 9, out of range: they go from 0 to 4\n"
         "f:12: face 4 has vertex 1 twice\n"
         "f:13: face 5 has the vertices of face 0, both of body 2\n"
         "f:15: body 0 is open at 4 edges\n"
         "f:18: body 1 has no face\n"
         "f:20: body 2 lists face 1 twice\n"
         "f:6: note: vertex 4 belongs to no face\n"
         "f:12: note: face 4 belongs to no body\n"},
        {vertices + "8\n0 1 2\n0 1 3\n0 2 3\n1 2 3\n0 1 2\n0 1 4\n0 2 4\n1 2 4\n1\n8\n0 0 0\n"
                    "0 1 2 3 4 5 6 7\n",
         "f:12: face 4 has the vertices of face 0, both of body 0\n"
         "f:6: note: vertex 4 has the position of vertex 3, both of body 0\n"
         "f:17: note: body 0 is closed, more than two faces at 3 edges\n"},
        {"3\n0.0 0.0\n16777217.0 0.0\n1.0 1.0\n2\n2 0 1\n3 0 1 7\n1\n0\n",
         "f:6: ring 0 has 2 points, it encloses nothing\n"
         "f:7: the point of a ring is 7, out of range: they go from 0 to 2\n"
         "f:9: region 0 has no ring\n"
         "f:3: note: 16777217 becomes 16777216: coordinates are read in single precision\n"
         "f:4: note: point 2 belongs to no ring\n"
         "f:6: note: ring 0 and 1 more belong to no region\n"},
        {"2\n2 0 0 5\n1 7 7\n", "f:3: the file ends"},
    };
    for (const auto& [text, report] : table) {
        write("f", text);
        const Result check = run("check f");
        EXPECT_EQ(check.status, 2);
        EXPECT_THAT(check.out, StartsWith(report));
    }
}

// Others, which are refused before any output, are in bad_inputs/cases.
TEST_F(BodyCommand, BadInputLeavesWhatThereWas) {
    write("r", plate);
    write("m", tetrahedron());
    write("out", "former");
    write("crossed", "4\n0.0 0.0\n9.0 9.0\n9.0 0.0\n0.0 8.0\n1\n4 0 1 2 3\n1\n1 0\n");
    const std::vector<std::pair<std::string, std::string>> table = {
        {"solid r --levels 0,1 --select 50,50 -o out", "warning: 50,50: no region contains this"},
        {"solid crossed --levels 0,1 -o out",
         "crossed: no region can be raised; region 0 (0,0 to 9,9): the outer ring crosses itself"},
        {"section m --x 1 --picture out -o out", "out: the name of a picture ends in"},
    };
    for (const auto& [arguments, message] : table) {
        const Result result = run(arguments);
        EXPECT_EQ(result.status, 2) << arguments;
        EXPECT_THAT(result.err, StartsWith("korvel: " + message)) << arguments;
        EXPECT_EQ(read("out"), "former") << arguments;
        EXPECT_EQ(files(), 4) << arguments;
    }
}

} // namespace
} // namespace korvel::test
