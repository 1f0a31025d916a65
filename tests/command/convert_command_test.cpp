#include <string>

#include "tests/support/command_scratch.h"

namespace korvel::test {
namespace {

using testing::HasSubstr;

class ConvertCommand : public CommandScratch {};

TEST_F(ConvertCommand, ReportsWhatItConverts) {
    write("f", R"({"type": "LineString", "name": "l", "coordinates": [[0.126, 1, 2], [1, 0]]})");
    const Result text = run("convert f - --from GeoJSON --layer l --decimals 2 --verbose");
    EXPECT_THAT(text.out, HasSubstr("[[0.13, 1], [1, 0]]"));
    EXPECT_THAT(text.err, HasSubstr("f: 1 feature, 2 points\n1 height of points left out\n"));
    const Result json = run("convert f out.geojson --project none --json");
    EXPECT_THAT(json.out, HasSubstr("\"heights\": 1,\n  \"reference\": \"EPSG:4326\""));
    EXPECT_THAT(read("out.geojson"), HasSubstr("[[0.126, 1], [1, 0]]"));
}

TEST_F(ConvertCommand, ListsTheFormats) {
    const std::string line = "GeoJSON           read, written  GeoJSON (.geojson, .json)\n";
    EXPECT_THAT(run("formats --quiet").out, HasSubstr(line));
    EXPECT_THAT(run("formats --verbose").out, HasSubstr(line));
    EXPECT_THAT(run("formats --json").out, HasSubstr("\"name\": \"GeoJSON\""));
}

} // namespace
} // namespace korvel::test
