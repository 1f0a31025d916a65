#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "kit/base/error.h"
#include "kit/files/feature_files.h"
#include "kit/files/json_text.h"
#include "kit/files/text_file.h"
#include "tests/support/scratch.h"

namespace korvel::test {
namespace {

using kit::Features;
using kit::Field;
using kit::Shape;

Features features_of(const std::string& text) {
    return kit::read_geojson_features(kit::stream_of({"", text}).get(), "f");
}

// A layer of one feature.
std::string feature(const std::string& geometry, const std::string& properties = "{}") {
    return R"({"type":"FeatureCollection","features":[{"type":"Feature","properties":)" +
           properties + R"(,"geometry":)" + geometry + "}]}";
}

std::string refusal(const std::string& text) {
    try {
        features_of(text);
    } catch (const kit::Error& error) {
        EXPECT_EQ(error.kind(), kit::Error::Kind::input);
        return error.what();
    }
    return "no error";
}

class GeoJson : public Scratch {
protected:
    // What is written for a layer, without the lines around the features.
    std::string written(const Features& features, int decimals = -1) const {
        kit::write_features(features, path("w.geojson"), {.decimals = decimals});
        const std::string text = read("w.geojson");
        const std::size_t begin = text.find("\"features\": [\n") + 14;
        return text.substr(begin, text.rfind("\n]\n}") - begin);
    }
    std::string rewritten(const std::string& text, int decimals = -1) const {
        return written(features_of(text), decimals);
    }
};

// Of each kind of geometry, in the form in which it is written again.
TEST_F(GeoJson, KeepsEveryDigitAndMember) {
    const std::vector<std::string> geometries = {
        R"("Point", "coordinates": [0.1, -179.99999999999997])",
        R"("MultiPoint", "coordinates": [[1e+300, 5e-324], [3, 4]])",
        R"("LineString", "coordinates": [[0, 0], [1.5, 2.25]])",
        R"("MultiLineString", "coordinates": [[[0, 0], [1, 1]], [[2, 2], [3, 3]]])",
        R"("Polygon", "coordinates": [[[0, 0], [9, 0], [0, 9], [0, 0]], [[1, 1], [1, 2], [2, 1], [1, 1]]])",
        R"("MultiPolygon", "coordinates": [[[[0, 0], [9, 0], [0, 9], [0, 0]]], [[[5, 5], [9, 5], [5, 9], [5, 5]]]])",
        R"("MultiPolygon", "coordinates": [])",
    };
    std::string lines;
    for (const std::string& geometry : geometries) {
        lines.append(lines.empty() ? "" : ",\n")
            .append(R"({"type": "Feature", "properties": {"n": 3, "a\"b": "\u0001\nä", "r": 2.0, )")
            .append(R"("t": true, "j": "[1,{\"k\":null}]", "z": null}, "geometry": {"type": )")
            .append(geometry + "}}");
    }
    const std::string text =
        "{\n\"type\": \"FeatureCollection\",\n\"name\": \"l\",\n\"crs\": {\"type\": \"name\", "
        "\"properties\": {\"name\": \"urn:ogc:def:crs:EPSG::25832\"}},\n\"features\": [\n" +
        lines + "\n]\n}\n";
    const Features features = features_of(text);
    EXPECT_EQ(features.reference, "EPSG:25832");
    EXPECT_EQ(features.name, "l");
    kit::write_features(features, path("w.geojson"));
    EXPECT_EQ(read("w.geojson"), text);
    EXPECT_EQ(kit::read_features(path("w.geojson"), {.layer = "l"}).points, features.points);
}

// Each is written as the other.
TEST_F(GeoJson, IsReadInEveryForm) {
    const std::string ring = "[[0,0],[9,0],[0,9]";
    const std::string polygon = R"({"type": "Polygon", "coordinates": )"
                                "[[[0, 0], [9, 0], [0, 9], [0, 0]]]}";
    const std::string point = R"({"type": "Point", "coordinates": [1, 2]})";
    const std::vector<std::pair<std::string, std::string>> forms = {
        {R"({"coordinates":[1,2],"x":[{}],"type":"Point"})", point},
        {"\xEF\xBB\xBF{\"type\":\"Point\",\r\n\"bbox\":[1,[2]],\"coordinates\":[1,2]}", point},
        {R"({"geometry":{"coordinates":[1,2,3],"type":"Point"},"type":"Feature"})", point},
        {R"({"type":"Polygon","coordinates":[)" + ring + "]]}", polygon},
        {R"({"coordinates":[)" + ring + R"(]],"type":"Polygon"})", polygon},
        {R"({"type":"Polygon","coordinates":[[[0,0],[0,9],[9,0],[0,0]]]})",
         R"({"type": "Polygon", "coordinates": [[[0, 0], [9, 0], [0, 9], [0, 0]]]})"},
        {R"({"type":"Polygon","coordinates":[[],[[5,5]]]})",
         R"({"type": "Polygon", "coordinates": [[[5, 5]]]})"},
        {feature("null"), "null"},
        {R"({"type":"GeometryCollection","geometries":[]})", "null"},
    };
    for (const auto& [form, geometry] : forms) {
        EXPECT_EQ(rewritten(form),
                  R"({"type": "Feature", "properties": {}, "geometry": )" + geometry + "}")
            << form;
    }
}

TEST_F(GeoJson, CollectionsBecomeAFeatureForEachShape) {
    const Features features = features_of(feature(
        R"({"type":"GeometryCollection","geometries":[{"type":"Point","coordinates":[1,2]},)"
        R"({"type":"GeometryCollection","geometries":[{"type":"LineString","coordinates":[[0,0],[1,1]]},)"
        R"({"type":"MultiPoint","coordinates":[[3,4],[5,6]]}]},)"
        R"({"type":"LineString","coordinates":[[7,7],[8,8,8]]}]})",
        R"({"a":1})"));
    EXPECT_EQ(
        written(features),
        R"({"type": "Feature", "properties": {"a": 1}, "geometry": )"
        R"({"type": "MultiPoint", "coordinates": [[1, 2], [3, 4], [5, 6]]}},)"
        "\n"
        R"({"type": "Feature", "properties": {"a": 1}, "geometry": )"
        R"({"type": "MultiLineString", "coordinates": [[[0, 0], [1, 1]], [[7, 7], [8, 8]]]}})");
    EXPECT_EQ(features.heights, 1U);
}

TEST_F(GeoJson, FieldsHaveTheTypeThatHoldsAllValues) {
    const std::string start = R"({"type":"Feature","geometry":null,)";
    const Features features = features_of(
        R"({"features":[)" + start +
        R"("id":7,"properties":{"i":1,"r":1,"t":1,"b":true,"big":9223372036854775808,"o":{"x":[]}}},)" +
        start + R"("properties":{"new":null,"r":0.5,"t":"a","id":"own"},"id":"x"},)" + start +
        R"("properties":null}],"properties":{"foreign":1},"type":"FeatureCollection","crs":null})");
    std::string types;
    for (const Field& field : features.fields) {
        types += field.name + "tirb"[static_cast<int>(field.type)] + " ";
    }
    EXPECT_EQ(types, "ii rr tt bb bigr ot idt newt ");
    EXPECT_EQ(features.reference, "");
    EXPECT_EQ(kit::text_of_value(features.value(0, features.field("id"))), "7");
    EXPECT_EQ(kit::text_of_value(features.value(1, features.field("id"))), "own");
    EXPECT_EQ(std::get<double>(features.value(0, features.field("r"))), 1);
    EXPECT_EQ(std::get<std::string>(features.value(0, features.field("t"))), "1");
    EXPECT_EQ(std::get<std::string>(features.value(0, features.field("o"))), "{\"x\":[]}");
    EXPECT_EQ(std::get<double>(features.value(0, features.field("big"))), 9223372036854775808.0);
    EXPECT_EQ(features.value(2, 0).index(), 0U);
}

TEST_F(GeoJson, NamesWhatDoesNotFit) {
    const std::string deep(100000, '[');
    const std::vector<std::pair<std::string, std::string>> refused = {
        {"", "f:1: the file is empty"},
        {"hello", "f:1: no valid JSON: invalid literal at 'hello'"},
        {"{\"type\":\"Point\",\n\"coordinates\":[1,\nNaN]}",
         "f:3: no valid JSON: invalid literal at 'NaN'"},
        {"{\"type\":\"Point\",\"coordinates\":[1,\n-Infinity]}",
         "f:2: no valid JSON: invalid number"},
        {"{\"type\":\"Point\",\"coordinates\":[1e999\n,0]}", "f:1: '1e999' is too large"},
        {R"({"type":"Point","coordinates":[1,2)", "f:1: the file ends where GeoJSON goes on"},
        {R"({"type":"Point","coordinates":[1,2]} x)", "f:1: no valid JSON: "},
        {R"({"type":"Point","a":")"
         "\xFF\"}",
         "f:1: no valid JSON: invalid string: ill-formed UTF-8"},
        {"\xFF\xFE{", "f:1: the text is UTF-16"},
        {std::string("{\0\"\0", 4), "f:1: the text is UTF-16"},
        {"\x1F\x8B\b", "f:1: the file is compressed by gzip"},
        {R"({"type":"Point","a":)" + deep, "f:1: objects and arrays nested more than 1000 deep"},
        {R"({"type":"Topology","arcs":[]})", "f: TopoJSON"},
        {"[]", "f:1: an array where the object of GeoJSON is expected"},
        {"7", "f:1: '7' where the object of GeoJSON is expected"},
        {R"({"coordinates":[1,2]})", "f:1: an object without a type of GeoJSON"},
        {R"({"type":"Circle"})", "f:1: 'Circle' where a type of GeoJSON is expected"},
        {R"({"type":"FeatureCollection"})", "f:1: a FeatureCollection without features"},
        {R"({"type":"FeatureCollection","features":{}})",
         "f:1: an object where an array of features"},
        {R"({"type":"FeatureCollection","features":[null]})", "f:1: null where a feature"},
        {R"({"features":[],"type":"Point"})", "f:1: a Point with the member 'features'"},
        {R"({"type":"Feature","properties":3})", "f:1: '3' where an object of properties"},
        {R"({"type":"Polygon"})", "f:1: a Polygon without coordinates"},
        {R"({"type":"Point","coordinates":null})", "f:1: null where an array of positions"},
        {R"({"type":"Point","coordinates":[1,2],"coordinates":[1,2]})", "f:1: an object with two"},
        {feature(R"({"coordinates":[1,2]})"), "f:1: feature 0: a geometry without a type"},
        {feature(R"({"type":"Feature"})"),
         "f:1: feature 0: 'Feature' where the type of a geometry"},
        {feature(R"({"type":"Point","coordinates":["a",1]})"),
         "f:1: feature 0: 'a' where a number is expected"},
        {feature(R"({"type":"Point","coordinates":[1]})"),
         "f:1: feature 0: a position of one number"},
        {feature(R"({"type":"Point","coordinates":[1,[2]]})"), "f:1: feature 0: an array among"},
        {feature(R"({"type":"Polygon","coordinates":[[1,2]]})"),
         "f:1: feature 0: a position nested 2 deep in the coordinates, where 3 is expected"},
        {feature(R"({"coordinates":[[[[]]]],"type":"LineString"})"),
         "f:1: feature 0: a position nested 4 deep in the coordinates, where 2 is expected"},
    };
    for (const auto& [text, message] : refused) {
        EXPECT_THAT(refusal(text), testing::StartsWith(message)) << text.substr(0, 200);
    }
}

TEST_F(GeoJson, IsWrittenWithSoManyDecimals) {
    const Features features = features_of(R"({"type":"MultiPoint","coordinates":)"
                                          R"([[1.23456,10],[-0.001,1e-7],[0.995,-0.0]]})");
    EXPECT_THAT(written(features, 2), testing::HasSubstr("[[1.23, 10], [0, 0], [0.99, 0]]"));
    EXPECT_THAT(written(features, 0), testing::HasSubstr("[[1, 10], [0, 0], [1, 0]]"));
}

TEST_F(GeoJson, StringsAreUtf8) {
    std::string text;
    kit::append_json_string(text,
                            "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80|\xC0\x80|\xED\xA0\x80|\xE2\x82");
    const std::string no = "\xEF\xBF\xBD";
    EXPECT_EQ(text, "\"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80|" + no + no + "|" + no + no + no + "|" +
                        no + no + "\"");
}

TEST_F(GeoJson, FilesAreRecognized) {
    write("plain", " \n{\"type\"");
    write("curves", "1 2 0 0 1 1");
    EXPECT_TRUE(kit::holds_features(path("plain")));
    EXPECT_FALSE(kit::holds_features(path("curves")));
    EXPECT_TRUE(kit::holds_features(path("a.SHP")));
    EXPECT_EQ(kit::feature_format(path("a.JSON")), "GeoJSON");
    EXPECT_EQ(kit::feature_format(path("a.curves")), "");
    EXPECT_THROW(kit::FeatureOutput::check(path("a.nothing")), kit::Error);
    EXPECT_THROW(kit::read_features(path("none.geojson")), kit::Error);
    // Without `replace` nothing is left.
    { const kit::FeatureOutput dropped(features_of(feature("null")), path("w.geojson")); }
    EXPECT_EQ(files(), 2);
}

} // namespace
} // namespace korvel::test
