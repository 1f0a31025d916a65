// Formats of the module of GDAL: files made by ogr2ogr, and what we write read again by GDAL's
// ogr2ogr.

#include <cmath>
#include <cstdlib>

#include <gmock/gmock.h>

#include "kit/files/foreign_formats.h"
#include "kit/kit.h"
#include "tests/support/scratch.h"

namespace korvel::test {
namespace {

using kit::Features;
using kit::FieldValue;
using kit::Shape;
using testing::HasSubstr;

// Two polygons, one in two parts and one with a hole, with an attribute of each type.
const std::string lands = R"({"type": "FeatureCollection", "features": [
{"type": "Feature", "properties": {"a_name_too_long": "Łódź", "a_name_too_short": 1, "part": 0.1,
  "is_land": true, "count": 9007199254740993}, "geometry": {"type": "MultiPolygon", "coordinates":
  [[[[0, 0], [4, 0], [4, 4], [0, 4], [0, 0]], [[1, 1], [1, 2], [2, 2], [2, 1], [1, 1]]],
   [[[5, 0], [6, 0], [6, 1], [5, 0]]]]}},
{"type": "Feature", "properties": {"a_name_too_long": "São", "part": -2.5, "is_land": false},
  "geometry": {"type": "Polygon", "coordinates": [[[7, 0], [9, 0.125], [8, 2], [7, 0]]]}}]})";

class Formats : public Scratch {
protected:
    const kit::ForeignFormats& gdal() const { return *kit::foreign_library().formats; }

    std::string written(const std::string& name, const std::string& text) const {
        std::ofstream(path(name), std::ios::binary) << text;
        return path(name).string();
    }

    Features read(const std::string& name, const kit::ReadFeaturesOptions& options = {}) const {
        return gdal().read(path(name), options, {});
    }

    std::string error_of(const std::string& name,
                         const kit::ReadFeaturesOptions& options = {}) const {
        try {
            read(name, options);
        } catch (const kit::Error& error) { // from the module, as an error of the kit
            EXPECT_EQ(error.kind(), kit::Error::Kind::input);
            EXPECT_THAT(error.what(), testing::StartsWith(path(name).string() + ": "));
            return error.what();
        }
        return "no error";
    }

    void ogr2ogr(const std::string& options, const std::string& to, const std::string& from) const {
        const std::string command =
            "ogr2ogr -q " + options + " '" + path(to).string() + "' '" + path(from).string() + "'";
        ASSERT_EQ(std::system(command.c_str()), 0) << command;
    }
};

double area_of(const Features& features, std::size_t feature) {
    double area = 0; // of outer rings less that of holes, whatever their directions
    for (std::size_t i = features.first_path(feature); i < features.features[feature].path_end;
         ++i) {
        const auto ring = features.path(i);
        EXPECT_EQ(ring.front(), ring.back());
        double twice = 0;
        for (std::size_t k = 0; k + 1 < ring.size(); ++k) {
            twice += ring[k][0] * ring[k + 1][1] - ring[k + 1][0] * ring[k][1];
        }
        area += std::abs(twice / 2) * (features.paths[i].starts_polygon ? 1 : -1);
    }
    return area;
}

void expect_lands(const Features& features, bool is_table = false) {
    ASSERT_EQ(features.features.size(), 2U);
    EXPECT_EQ(features.reference, "EPSG:4326");
    // FlatGeobuf puts features into the order of their places.
    const std::size_t first = features.first_path(1) == 3 ? 0 : 1;
    const std::size_t second = 1 - first;
    EXPECT_EQ(area_of(features, first), 15.5);
    EXPECT_EQ(area_of(features, second), 1.9375);
    const auto value = [&](std::size_t feature, const std::string& field) {
        EXPECT_LT(features.field(field), features.fields.size()) << field;
        return features.value(feature, features.field(field));
    };
    EXPECT_EQ(value(first, is_table ? "a_name_too" : "a_name_too_long"), FieldValue("Łódź"));
    EXPECT_EQ(value(first, is_table ? "a_name_t_1" : "a_name_too_short"),
              FieldValue(std::int64_t{1}));
    EXPECT_EQ(value(second, is_table ? "a_name_t_1" : "a_name_too_short"), FieldValue());
    EXPECT_EQ(value(second, "part"), FieldValue(-2.5));
    EXPECT_EQ(value(first, "count"), FieldValue(std::int64_t{9007199254740993}));
    EXPECT_EQ(value(first, "is_land"), is_table ? FieldValue(std::int64_t{1}) : FieldValue(true));
}

struct {
    const char* file;
    const char* format;
    const char* options; // of ogr2ogr
} const round_trips[] = {
    {"lands.shp", "ESRI Shapefile", "-lco ENCODING=UTF-8"},
    {"lands.gpkg", "GPKG", ""},
    {"lands.fgb", "FlatGeobuf", "-nlt PROMOTE_TO_MULTI"},
};

TEST_F(Formats, ReadsWhatOthersWriteAndTheReverse) {
    written("lands.json", lands);
    const Features source = read("lands.json");
    expect_lands(source);
    for (const auto& [file, format, options] : round_trips) {
        SCOPED_TRACE(file);
        const bool is_table = std::string(format) == "ESRI Shapefile";
        ogr2ogr(std::string("-f '") + format + "' " + options, file, "lands.json");
        if (is_table) { // which has its own short names
            EXPECT_EQ(area_of(read(file), 0), 15.5);
        } else {
            expect_lands(read(file));
        }

        const std::string ours = std::string("our-") + file;
        gdal().write(source, path(ours), format, -1);
        expect_lands(read(ours), is_table);
        ogr2ogr("-f GeoJSON", ours + ".json", ours);
        expect_lands(read(ours + ".json"), is_table);
    }
    EXPECT_EQ(contents(path("our-lands.cpg")), "UTF-8");
    EXPECT_THAT(contents(path("our-lands.prj")), HasSubstr("GCS_WGS_1984"));
}

TEST_F(Formats, KeepsReferencesLinesPointsAndDecimals) {
    Features lines;
    lines.name = "ways";
    lines.reference = "EPSG:25832";
    lines.fields = {{"fid"}, {"Geom"}};
    lines.points = {{500000.123456, 5e6}, {500001, 5e6}, {500002, 5e6 + 1}};
    lines.paths = {{3, true}};
    lines.features = {{Shape::lines, 1, {"one", "a"}}, {Shape::none, 1, {"two", "b"}}};
    Features points = lines;
    points.paths = {{1, true}, {3, true}};
    points.features = {{Shape::points, 1, {"one"}}, {Shape::points, 2, {"two"}}};
    for (const auto& [file, format, options] : round_trips) {
        for (const Features& source : {lines, points}) {
            SCOPED_TRACE(file);
            const std::string ours = std::to_string(source.paths.size()) + file;
            gdal().write(source, path(ours), format, 2);
            const Features back = read(ours);
            EXPECT_EQ(back.reference, "EPSG:25832");
            EXPECT_EQ(back.points.size(), 3U);
            EXPECT_EQ(back.paths.size(), source.paths.size());
            // FlatGeobuf has no features without a shape.
            const bool lacks_one = std::string(format) == "FlatGeobuf" && back.paths.size() == 1;
            EXPECT_EQ(back.features.size(), lacks_one ? 1U : 2U);
            EXPECT_THAT(back.points, testing::Contains(kit::Point2{500000.12, 5e6}));
            EXPECT_NE(back.field("fid"), back.fields.size());
        }
    }
    // One file has one shape only in shapefiles.
    Features mixed = lines;
    mixed.paths = {{2, true}, {3, true}};
    mixed.features = {{Shape::lines, 1, {}}, {Shape::points, 2, {}}};
    gdal().write(mixed, path("mixed.gpkg"), "GPKG", -1);
    EXPECT_EQ(read("mixed.gpkg").features[1].shape, Shape::points);
    try {
        gdal().write(mixed, path("mixed.shp"), "ESRI Shapefile", -1);
        FAIL() << "no error";
    } catch (const kit::Error& error) {
        EXPECT_THAT(error.what(), HasSubstr("the layer has points and lines"));
    }
    EXPECT_FALSE(std::filesystem::exists(path("mixed.shp")));
}

TEST_F(Formats, WritesTrianglesAsSurfaces) {
    Features triangles;
    triangles.is_tin = true;
    triangles.points = {{0, 0}, {1, 0}, {0, 1}, {0, 0}, {1, 0}, {1, 1}, {0, 1}, {1, 0}};
    triangles.paths = {{4, true}, {8, true}};
    triangles.features = {{Shape::polygons, 2, {}}};
    gdal().write(triangles, path("ground.gpkg"), "GPKG", -1);
    EXPECT_THAT(contents(path("ground.gpkg")), HasSubstr("gpkg_geom_TIN"));
    const Features back = read("ground.gpkg");
    EXPECT_EQ(back.points, triangles.points);
    EXPECT_EQ(back.paths.size(), 2U);
    EXPECT_EQ(back.reference, "");
}

TEST_F(Formats, SplitsCollectionsLinearisesCurvesAndDropsHeights) {
    written("all.csv", "WKT,name\n"
                       "\"GEOMETRYCOLLECTION(POINT Z(1 2 3),LINESTRING(0 0,1 1),"
                       "MULTIPOINT(5 5,6 6))\",x\n"
                       "\"CURVEPOLYGON(CIRCULARSTRING(0 0,1 1,2 0,1 -1,0 0))\",y\n"
                       ",z\n");
    const Features all = read("all.csv");
    ASSERT_EQ(all.features.size(), 4U);
    EXPECT_EQ(all.features[0].shape, Shape::points);
    EXPECT_EQ(all.path(0).size(), 3U);
    EXPECT_EQ(all.features[1].shape, Shape::lines);
    EXPECT_EQ(all.value(1, all.field("name")), FieldValue("x"));
    EXPECT_NEAR(area_of(all, 2), 3.1416, 0.01);
    EXPECT_EQ(all.features[3].shape, Shape::none);
    EXPECT_EQ(all.heights, 5U); // which the others of a collection have too, as 0
}

TEST_F(Formats, ReadsLayersAndConditions) {
    written("lands.json", lands);
    ogr2ogr("-f GPKG -nln first", "two.gpkg", "lands.json");
    ogr2ogr("-f GPKG -update -nln second -where 'part > 0'", "two.gpkg", "lands.json");
    EXPECT_EQ(read("two.gpkg").name, "first");
    EXPECT_EQ(read("two.gpkg").layers, (std::vector<std::string>{"first", "second"}));
    EXPECT_EQ(read("two.gpkg", {.layer = "second"}).features.size(), 1U);
    EXPECT_EQ(read("two.gpkg", {.where = "part < 0"}).features.size(), 1U);
    EXPECT_THAT(error_of("two.gpkg", {.layer = "third"}),
                HasSubstr("no layer \"third\"; it has: first, second"));
    EXPECT_THAT(error_of("two.gpkg", {.where = "height = 3"}),
                testing::AllOf(HasSubstr("\"height = 3\" cannot be used"), HasSubstr("height")));
    EXPECT_THAT(error_of("two.gpkg", {.where = "part = ("}), HasSubstr("cannot be used"));

    std::stop_source stop;
    stop.request_stop();
    try {
        gdal().read(path("two.gpkg"), {}, {.stop = stop.get_token()});
        FAIL() << "not stopped";
    } catch (const kit::Error& error) {
        EXPECT_EQ(error.kind(), kit::Error::Kind::cancelled);
    }
}

TEST_F(Formats, ReadsEncodingsLabelsAndTopologies) {
    written("lands.json", lands);
    ogr2ogr("-lco ENCODING=ISO-8859-1 -where \"a_name_too_long = 'São'\"", "west.shp",
            "lands.json");
    std::filesystem::remove(path("west.cpg"));
    const Features west = read("west.shp");
    EXPECT_EQ(west.value(0, 0), FieldValue("São"));

    written("labels.dxf", "0\nSECTION\n2\nENTITIES\n0\nTEXT\n8\n0\n10\n1.5\n20\n2.5\n40\n1\n1\n"
                          "Lake\n0\nENDSEC\n0\nEOF\n");
    const Features labels = read("labels.dxf");
    ASSERT_EQ(labels.features.size(), 1U);
    EXPECT_EQ(labels.features[0].shape, Shape::points);
    EXPECT_EQ(labels.value(0, labels.field("name")), FieldValue("Lake"));

    written("square.topojson",
            R"({"type":"Topology","objects":{"land":{"type":"GeometryCollection","geometries":[)"
            R"({"type":"Polygon","arcs":[[0]]}]}},"arcs":[[[0,0],[2,0],[2,2],[0,2],[0,0]]]})");
    EXPECT_EQ(read("square.topojson").name, "land");
    EXPECT_EQ(area_of(read("square.topojson"), 0), 4);
}

TEST_F(Formats, RefusesBadFiles) {
    written("lands.json", lands);
    ogr2ogr("-f GPKG", "good.gpkg", "lands.json");
    ogr2ogr("", "good.shp", "lands.json");
    ogr2ogr("-f FlatGeobuf -nlt PROMOTE_TO_MULTI", "good.fgb", "lands.json");
    written("cut.gpkg", contents(path("good.gpkg")).substr(0, 50000));
    written("cut.fgb", contents(path("good.fgb")).substr(0, 700));
    written("alone.shp", contents(path("good.shp")));
    written("text.gpkg", "not a database");
    written("text.shp", "not a shapefile");
    written("empty.kml", "");
    written("infinite.csv", "WKT,id\n\"LINESTRING(0 0,1e999 1)\",3\n");
    written("half.topojson", R"({"type":"Topology","objects":{"a":{"type":"Polyg)");
    for (const char* name : {"cut.gpkg", "cut.fgb", "alone.shp", "text.gpkg", "text.shp",
                             "empty.kml", "infinite.csv", "half.topojson", "missing.gpkg"}) {
        EXPECT_NE(error_of(name), "no error") << name;
    }
    EXPECT_THAT(error_of("infinite.csv"), HasSubstr("feature 1: the point inf 1 is not finite"));
    for (const char* name : {"http://localhost/a.json", "/vsicurl/http://localhost/a.json",
                             "PG:dbname=x", "/vsimem/x.json"}) {
        EXPECT_THROW(gdal().read(name, {}, {}), kit::Error) << name;
    }
    EXPECT_THAT(error_of("good.shp", {.format = "PostgreSQL"}), HasSubstr("format PostgreSQL"));
}

TEST_F(Formats, LimitsWhatCompressedFilesExpandTo) {
    std::string text = "WKT,id\n";
    for (int i = 0; i < 20000; ++i) {
        text += "\"LINESTRING(0 0,1 1,2 2,3 3)\",7\n";
    }
    written("many.csv", text);
    ASSERT_EQ(std::system(("gzip -k '" + path("many.csv").string() + "'").c_str()), 0);
    EXPECT_EQ(read("many.csv.gz").features.size(), 20000U);
    EXPECT_THAT(error_of("many.csv.gz", {.memory = 1000000}),
                HasSubstr("expands to more than 125000 bytes: unpack it first"));
    EXPECT_THAT(error_of("many.csv", {.memory = 1000000}),
                HasSubstr("the features up to here take more than 1000000 bytes"));
}

TEST_F(Formats, AreListed) {
    const auto formats = gdal().formats();
    const auto has = [&](const char* name, bool can_write) {
        return std::any_of(formats.begin(), formats.end(), [&](const kit::FeatureFormat& format) {
            return format.name == name && format.can_write == can_write;
        });
    };
    EXPECT_TRUE(has("ESRI Shapefile", true));
    EXPECT_TRUE(has("GPKG", true));
    EXPECT_TRUE(has("TopoJSON", false));
    EXPECT_FALSE(has("PostgreSQL", true) || has("WFS", false) || has("OGR_VRT", false));
}

} // namespace
} // namespace korvel::test
