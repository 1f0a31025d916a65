#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "kit/base/error.h"
#include "kit/files/curve_file.h"
#include "kit/files/file_kind.h"
#include "kit/files/output_file.h"
#include "kit/files/point_file.h"
#include "kit/maps/map.h"
#include "kit/maps/network.h"
#include "kit/solids/solids.h"
#include "tests/support/scratch.h"

namespace korvel::test {
namespace {

using kit::FileKind;
using kit::TextFile;

std::string message_of(const auto& call) {
    try {
        call();
    } catch (const kit::Error& error) {
        return error.what();
    }
    return "no error";
}

TEST(CurveFile, MayContainComments) {
    const auto curves = kit::read_curves(
        TextFile("c", "# one\n1#curve\n\t# 7\n3 # points\n0 0#1 1\n2 2 3\n#\n3 # '#'\n# the end"));
    ASSERT_EQ(curves.pts.GetSize(), 3);
    EXPECT_EQ(curves.pts[1].x, 2);
    EXPECT_EQ(curves.pts[2].y, 3);
    EXPECT_EQ(message_of([] { kit::read_curves(TextFile("c", "1\n# 2\n1\n# 3\n0 #\nx 0")); }),
              "c:6: 'x' is not a number: expected the y of a point");
    EXPECT_EQ(message_of([] { kit::Map::read(TextFile("r", "1\n0.5 # 2\n1.5\n0\n0\n")); }),
              "r:2: '#' is not a number: expected the y of a point");
}

TEST(PointFile, HasAPointInEachLine) {
    const TextFile file("p", "# places\n1 2\n\n -1.50,+2e1 # a\r\n\t3 , 4\n\n#\n5\t6");
    const kit::PointList points = kit::read_points(file, 2);
    ASSERT_EQ(points.size(), 4U);
    EXPECT_EQ(points.at(1, 0), -1.5);
    EXPECT_EQ(points.at(1, 1), 20);
    EXPECT_EQ(points.text(1), "-1.50,+2e1");
    EXPECT_EQ(points.text(2), "3,4");
    EXPECT_EQ(points.text(3), "5,6");
    EXPECT_EQ(kit::read_points(TextFile("p", "1,2,3"), 3).at(0, 2), 3);
    EXPECT_EQ(kit::read_points(TextFile("p", "#\n\n"), 3).size(), 0U);
    const std::vector<std::pair<const char*, const char*>> refused = {
        {"1 2\n3\n4", "p:2: 1 of 2 coordinates of a point"},
        {"1 2 3", "p:1: '3' follows the 2 coordinates of a point"},
        {"1,2,", "p:1: ',' follows the 2 coordinates of a point"},
        {"1,,2", "p:1: '' is not a finite number: expected the y of a point"},
        {"1,", "p:1: 1 of 2 coordinates of a point"},
        {"\nx 2", "p:2: 'x' is not a finite number: expected the x of a point"},
        {"1 nan", "p:1: 'nan' is not a finite number: expected the y of a point"},
        {"1 1e999", "p:1: '1e999' is not a finite number: expected the y of a point"},
        {"+-1 0", "p:1: '+-1' is not a finite number: expected the x of a point"},
    };
    for (const auto& row : refused) {
        EXPECT_EQ(message_of([&] { kit::read_points(TextFile("p", row.first), 2); }), row.second)
            << row.first;
    }
}

TEST(FileKinds, AreDistinguishedAsFarAsTheFileAllows) {
    struct Row {
        const char* text;
        FileKind kind;
        bool holds_regions;
    };
    const std::string tetrahedron = "4\n0 0 0\n6 0 0\n0 6 0\n0 0 6\n4\n0 1 2\n0 1 3\n0 2 3\n"
                                    "1 2 3\n1\n4\n1 1 1\n0 1 2 3\n";
    const std::vector<Row> rows = {
        {"1\n3\n0 0 5 0 0 5\n", FileKind::curves, false},
        {"# 1.5\n1\n1\n0 0\n", FileKind::curves, false},
        {"3\n0 0\n5 0\n0 5\n1\n3\n0 1 2\n1\n1\n0\n", FileKind::regions, true},
        {"3\n0.0 0\n5 0\n0 5\n1\n3\n0 1 2\n1\n1\n0\n", FileKind::regions, true},
        {"3\n0 0\n5 0\n0 5\n1\n3\n0 1 9\n1\n1\n0\n", FileKind::regions, true},
        {"0\n", FileKind::curves, false},
        {"1\n0\n", FileKind::curves, false},
        {tetrahedron.c_str(), FileKind::model, false},
        {"1\n3\n0 0 5 0 0 x\n", FileKind::curves, false},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(kind_of(TextFile("f", row.text)), row.kind) << row.text;
        EXPECT_EQ(holds_regions(TextFile("f", row.text)), row.holds_regions) << row.text;
    }
}

TEST(FileKinds, AreNamedWhereAnotherIsExpected) {
    const TextFile curves("f", "1\n3\n0 0 5 0 0 5\n");
    const TextFile regions("f", "3\n0 0\n5 0\n0 5\n1\n3\n0 1 2\n1\n1\n0\n");
    const TextFile damaged("f", "1\n3\n0 0 5 0 0 x\n");
    EXPECT_EQ(message_of([&] { kit::Solids::read(curves); }),
              "f: a curve file, where a body model file is expected");
    EXPECT_EQ(message_of([&] { kit::Map::read(curves); }),
              "f: a curve file, where a polygon-region file is expected");
    EXPECT_EQ(message_of([&] { kit::Network::read(regions); }),
              "f: a polygon-region file, where a curve file is expected");
    EXPECT_EQ(message_of([&] { kit::Network::read(damaged); }),
              "f:3: 'x' is not a number: expected the y of a point");
    EXPECT_EQ(message_of([&] { kit::Solids::read(TextFile("f", "0\n")); }),
              "f:1: the number of vertices is 0, a model needs at least one");
    EXPECT_EQ(message_of([&] {
                  kit::read_expecting({FileKind::model, FileKind::regions}, curves,
                                      [&] { return kit::Map::read(curves).size(); });
              }),
              "f: a curve file, where a body model file or a polygon-region file is expected");
}

} // namespace
} // namespace korvel::test
