// Maps of other programs: GeoJSON in and out of the commands, attributes, projections.

#include <nlohmann/json.hpp>

#include <cmath>
#include <string>

#include "tests/support/command_scratch.h"

namespace korvel::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

/// Two neighbours of half a degree, the second with a hole.
const std::string borders = R"({"type": "FeatureCollection", "features": [
{"type": "Feature", "properties": {"name": "west", "thickness": 120}, "geometry": {"type": "Polygon",
 "coordinates": [[[10, 50], [10.5, 50], [10.5, 50.4004], [10, 50.4004], [10, 50]]]}},
{"type": "Feature", "properties": {"name": "east", "thickness": "80.5"}, "geometry": {"type": "Polygon",
 "coordinates": [[[10.5, 50], [11, 50], [11, 50.4004], [10.5, 50.4004], [10.5, 50]],
                 [[10.6, 50.1], [10.6, 50.2], [10.7, 50.2], [10.7, 50.1], [10.6, 50.1]]]}}]})";

class MapFilesCommand : public CommandScratch {
protected:
    MapFilesCommand() { write("b.geojson", borders); }

    json written(const std::string& file) const { return json::parse(read(directory_ / file)); }
};

TEST_F(MapFilesCommand, AttributesAndPlacesReturn) {
    const Result result = run("regions b.geojson --project none -o r.geojson --leftover l.geojson");
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(result.out, HasSubstr("grid 0.0001, no point moved, WGS 84"));
    EXPECT_THAT(result.out, HasSubstr("1 region between the polygons left out"));
    EXPECT_THAT(result.out, HasSubstr("area 0.3904 in all"));
    const json east = written("r.geojson")["features"][1];
    EXPECT_EQ(east["properties"]["name"], "east");
    EXPECT_EQ(east["properties"]["thickness"], "80.5");
    EXPECT_EQ(east["properties"]["neighbours"], "0");
    EXPECT_DOUBLE_EQ(east["properties"]["area"].get<double>(), 0.1902);
    EXPECT_EQ(east["geometry"]["coordinates"].size(), 2u);
    EXPECT_EQ(written("l.geojson")["features"].size(), 1u); // the border that is there twice
    EXPECT_THAT(run("regions b.geojson --keep-gaps --json").out, HasSubstr("\"regions\": 3"));
    // The same by a file of its own, and again.
    EXPECT_EQ(run("regions b.geojson -o a.regions").status, 0);
    EXPECT_THAT(read(directory_ / "a.regions"),
                HasSubstr("\ngrid 0.0001 origin 0 0 reference EPSG:4326\n"));
    EXPECT_EQ(run("locate a.regions 10.2,50.3 10.65,50.15").out, "10.2,50.3 0\n10.65,50.15 none\n");
    EXPECT_EQ(run("triangles a.regions --project none -o t.geojson").status, 0);
    double area = 0;
    const json triangles = written("t.geojson");
    for (const json& triangle : triangles["features"]) {
        const json& p = triangle["geometry"]["coordinates"][0];
        const auto at = [&](int corner, int axis) { return p[corner][axis].get<double>(); };
        area += std::abs((at(1, 0) - at(0, 0)) * (at(2, 1) - at(0, 1)) -
                         (at(2, 0) - at(0, 0)) * (at(1, 1) - at(0, 1))) /
                2;
    }
    EXPECT_NEAR(area, 0.3904, 1e-12);
}

TEST_F(MapFilesCommand, LinesAndLabelsMakeNamedRegions) {
    write("l.geojson", R"({"type": "GeometryCollection", "geometries": [
{"type": "LineString", "coordinates": [[0, 0], [4.5, 0], [4.5, 3], [0, 3], [0, 0]]},
{"type": "LineString", "coordinates": [[1.5, -1], [1.5, 4]]}]})");
    write("n.geojson", R"({"type": "Feature", "properties": {"name": "field", "soil": "clay"},
"geometry": {"type": "Point", "coordinates": [3, 1]}})");
    EXPECT_THAT(run("regions l.geojson --project none --labels n.geojson -o r.geojson").out,
                HasSubstr("1 label used, 0 outside all regions, 0 in regions that have one"));
    std::string named;
    const json regions = written("r.geojson");
    for (const json& region : regions["features"]) {
        named += region["properties"]["soil"].is_null() ? "-" : region["properties"]["name"];
    }
    EXPECT_TRUE(named == "-field" || named == "field-") << named;
}

TEST_F(MapFilesCommand, SolidsRiseByAnAttribute) {
    EXPECT_EQ(run("solid b.geojson --project none --unit 0.1 --level-unit 1 --height-field "
                  "thickness -o m")
                  .err,
              "");
    EXPECT_THAT(run("info m").out, HasSubstr("z 0 to 120"));
    EXPECT_EQ(run("solid b.geojson --project none --height-field depth -o n").err,
              "korvel: --height-field: 'depth' is not one of name, thickness\n");
    EXPECT_EQ(run("solid b.geojson --project none --height-field name -o n").err,
              "korvel: region 0: its name 'west' is no height\n");
}

TEST_F(MapFilesCommand, DecimalsInCurveFilesTakeAGrid) {
    write("d.curves", "1\n4 0.5 0.25 10.5 0.25 0.5 10.25 0.5 0.25\n");
    EXPECT_THAT(run("regions d.curves -o d.regions").out, HasSubstr("grid 0.01, no point moved\n"));
    EXPECT_THAT(run("regions d.curves --grid 1 -o e.geojson").out,
                HasSubstr("grid 1, points moved by up to 0.5\n"));
    EXPECT_EQ(written("e.geojson")["features"][0]["properties"]["area"], 50.0);
    EXPECT_EQ(run("regions d.curves --grid 0").err,
              "korvel: --grid: '0' is not a step above 0, such as 0.001 or 1/3600\n");
    EXPECT_THAT(run("solid d.regions --levels 0,2 -o d.model").out,
                HasSubstr("bounds x 0.5 to 10.5, y 0.25 to 10.25, z 0 to 2\n"));
    EXPECT_THAT(run("section d.model --plane x=3.25").out, HasSubstr("x = 3.25\n"));
}

TEST_F(MapFilesCommand, EveryCommandTakesTheOptionsOfCoordinates) {
    write("n.geojson", R"({"type": "Feature", "properties": {"soil": "clay"},
"geometry": {"type": "Point", "coordinates": [10.2, 50.1]}})");
    for (const std::string command : {"regions", "triangles", "solid --levels 0,1"}) {
        const Result placed =
            run(command + " b.geojson --grid 0.001 --grid-origin 10,50 --reference "
                          "EPSG:4326 --project none --labels n.geojson "
                          "--keep-gaps -o x.out");
        EXPECT_EQ(placed.status, 0) << placed.err;
        EXPECT_THAT(placed.out,
                    HasSubstr("grid 0.001, origin 10,50, points moved by up to 0.00039"));
        EXPECT_THAT(placed.out, HasSubstr("1 label used"));
        EXPECT_THAT(run(command + " b.geojson --layer roads -o x.out").err, HasSubstr("roads"));
    }
    // Conditions are GDAL's.
    for (const std::string command : {"regions", "triangles", "solid --levels 0,1"}) {
        const Result some =
            run(command + " b.geojson --project none --where \"name = 'east'\" -o x.out");
        EXPECT_THAT(some.out + some.err,
                    testing::AnyOf(HasSubstr("2 curves, 10 points"), HasSubstr("GDAL")));
    }
}

TEST_F(MapFilesCommand, ConvertsKorvelsOwnFiles) {
    EXPECT_EQ(run("convert b.geojson b.curves").err, "");
    EXPECT_THAT(read(directory_ / "b.curves"), testing::StartsWith("3\n5\n10 50\n10.5 50\n"));
    EXPECT_EQ(run("convert b.curves b.regions --verbose").err, "");
    EXPECT_EQ(run("convert b.regions c.geojson --from regions").status, 2);
    const json report = json::parse(run("convert b.regions c.geojson --json").out);
    EXPECT_EQ(report["features"], 3);
    EXPECT_EQ(run("starter cube --size 1,1,1 -o m.model").status, 0);
    EXPECT_THAT(run("convert m.model c.geojson").err, HasSubstr("a body model file"));
    EXPECT_EQ(run("convert b.geojson d.geojson --from GeoJSON --layer roads").status, 2);
    const Result some = run("convert b.geojson d.geojson --where \"name = 'east'\"");
    EXPECT_THAT(some.out + some.err, testing::AnyOf(HasSubstr("1 feature"), HasSubstr("GDAL")));
    EXPECT_EQ(json::parse(run("formats --json").out)["formats"][0]["name"], "curves");
    EXPECT_THAT(run("formats --verbose").out, HasSubstr("GeoJSON"));
    EXPECT_EQ(run("formats --quiet").status, 0);
}

TEST_F(MapFilesCommand, AreasOfLongitudeAndLatitudeAreInSquareMetres) {
    if (run("regions b.geojson --project EPSG:3035").err.find("PROJ") != std::string::npos) {
        GTEST_SKIP() << "without PROJ";
    }
    const json report = json::parse(run("regions b.geojson --json").out);
    EXPECT_NEAR(report["area"].get<double>(), 3.10037e9, 1e6);
    const json projected =
        json::parse(run("regions b.geojson --project EPSG:3035 -o r.geojson --json").out);
    EXPECT_NEAR(projected["area"].get<double>(), 3.10037e9, 1e6);
    // Written where the input was.
    const json corner = written("r.geojson")["features"][0]["geometry"]["coordinates"][0][0];
    EXPECT_NEAR(corner[0].get<double>(), std::round(2 * corner[0].get<double>()) / 2, 1e-6);
    EXPECT_THAT(run("solid b.geojson --levels 0,100 -o m").out, HasSubstr("azimuthal equal-area"));
    EXPECT_NEAR(json::parse(run("info m --json").out)["model"]["volume"].get<double>(), 3.10034e11,
                1e8);
    EXPECT_THAT(run("regions b.geojson --project EPSG:999999").err, HasSubstr("EPSG:999999"));
    // The grid is one of metres, not of the degrees before.
    write("d.curves", "1\n4 7.25 50 7.5 50 7.25 50.125 7.25 50\n");
    const json metres = json::parse(
        run("regions d.curves --reference EPSG:4326 --project EPSG:32632 --grid 1 --json").out);
    EXPECT_EQ(metres["grid"]["step"], "1");
    EXPECT_NEAR(metres["area"].get<double>(), 1.2455e8, 1e5);
}

} // namespace
} // namespace korvel::test
