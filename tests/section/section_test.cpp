#include <cstdio>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "korvel/section/tmod2d.h"
#include "tests/support/lists.h"
#include "tests/support/recording_dc.h"
#include "tests/support/scratch.h"
#include "tests/support/streams.h"

namespace {

using namespace korvel::test;
using Calls = std::vector<std::string>;

TMOD2D read(const std::string& text, TMOD2D model = {}) {
    model.readdate(stream_of(text).get());
    return model;
}

std::string file_of(TMOD2D model) {
    return written([&](FILE* stream) { model.writedate(stream); });
}

struct SectionFile {
    std::string text;
    std::vector<Point> verts; ///< expected
    std::vector<Ints> faces = {{0}};
    std::vector<Ints> groups = {{0, 0}};
};

/// Reads the file into a copy of a model and compares the lists.
void expect_lists(const SectionFile& file, const TMOD2D& old) {
    const TMOD2D model = read(file.text, old);
    std::vector<Point> verts;
    for (const VERT3D& vertex : model.verts) {
        verts.push_back(point(vertex.model_xyz));
    }
    std::vector<Ints> faces;
    for (const POLY3D& face : model.polys) {
        faces.push_back(ints(face.verts));
    }
    std::vector<Ints> groups;
    for (const POLY3D_CPLX& group : model.groups) {
        groups.push_back(ints(group.polys));
    }
    EXPECT_EQ(verts, file.verts) << file.text;
    EXPECT_EQ(faces, file.faces) << file.text;
    EXPECT_EQ(groups, file.groups) << file.text;
}

// Read into a model with the vertex (0, 8, 9), the face 0 and the group 0 0.
TEST(SectionFile, Reading) {
    const TMOD2D old = read("1 1 2 8 9 1 1 0 1 2 0 0");
    const std::string triangle = "3 0 1 0 0 10 0 0 10 ";
    const std::vector<Point> corners = {{0, 0, 9}, {10, 0, 0}, {0, 10, 0}};
    const SectionFile files[] = {
        {triangle + "1 3 0 1 2 1 1 0", corners, {{0, 1, 2}}, {{0}}},
        {"2\n0 2\n1 2 3 4 2 0 1 6 0", {{1, 8, 2}, {3, 0, 4}}, {{}, {6}}},
        {"1 2 2 5 6 0 -1", {{0, 8, 6}}}, // the second real overwrites the first
        {"1 3 -1 5 6 0 0", {{0, 8, 9}}}, // there are no such axes
        {"0 0 1 0 0", {}},
        {"-1 0 1 5 6 0 0", {{0, 8, 9}}},
        {triangle + "2 -5 3 1 4 2", corners, {{}, {1, 4, 2}}},
    };
    for (const SectionFile& file : files) {
        expect_lists(file, old);
    }
    EXPECT_EQ(read("1 0 1 0.1 0").verts[0].model_xyz[0], 0.1F); // single precision
}

// Lists have the declared size. What is not read keeps its value, or is zero.
TEST(SectionFile, ReadingOfShortFiles) {
    const TMOD2D old = read("2 0 1 8 9 6 7 2 3 4 4 4 1 5 1 2 3 3");
    const std::vector<Point> kept = {{8, 9, 0}, {6, 7, 0}};
    const SectionFile files[] = {
        {"", kept, {{4, 4, 4}, {5}}, {{3, 3}}},
        {"3 0 1 5 x", {{5, 9, 0}, {6, 7, 0}, {0, 0, 0}}, {{4, 4, 4}, {5}}, {{3, 3}}},
        // The sign is skipped.
        {"2 0 1 1 2 - 3 4 -1", {{1, 2, 0}, {6, 3, 0}}, {{}, {5}, {}, {}}, {{3, 3}}},
        // There is no second axis.
        {"2 2 .5 1 2 3", {{1, 9, 0.5}, {3, 7, 2}}, {{4, 4, 4}, {5}}, {{3, 3}}},
        {"1 0 1 1 2 3 4 0 1", {{1, 2, 0}}, {{0, 1, 4, 0}, {5}, {}}, {{3, 3}}},
        {"1 0 1 1 2 1 1 0 3 1 7 2", {{1, 2, 0}}, {{0}}, {{7}, {0, 0}, {}}},
    };
    for (const SectionFile& file : files) {
        expect_lists(file, old);
    }
}

TEST(SectionFile, LimitsCountsBeyondTheFile) {
    TMOD2D model = read("2147483647 0 1 1 2");
    EXPECT_EQ(model.verts.GetSize(), 65536);
    EXPECT_EQ(model.verts[0].model_xyz[1], 2);
    model = read("1 0 1 1 2 65537 2147483647 1 3");
    EXPECT_EQ(model.polys.GetSize(), 65536);
    EXPECT_EQ(model.polys[0].verts.GetSize(), 65536);
    EXPECT_EQ(model.polys[0].verts[1], 3);
    EXPECT_EQ(model.polys[1].verts.GetSize(), 0);
}

TEST(SectionFile, WrittenBytes) {
    const std::pair<std::string, std::string> cases[] = {
        {"", "0\n0\n0\n"},
        {"2 0 2 0 0.5 -10 1e7 1 3 0 1 2 2 1 4 4 6 7 8 9",
         "2\n0.000000 0.000000 0.500000\n-10.000000 0.000000 10000000.000000\n"
         "1\n3\n0 1 2 0\n2\n3\n4 0 0 0\n3\n6 7 8 0\n"},
        {"0 0 1 2 3 5 6 7 1 8 1 2 3 4", "0\n2\n3\n5 6 7 0\n1\n8 0\n1\n1\n3 0\n"},
        {"0 0 1 0 1 1 3", "0\n0\n1\n0\n0\n"},
    };
    for (const auto& [text, bytes] : cases) {
        EXPECT_EQ(file_of(read(text)), bytes);
    }
}

TEST(FilledGroup, ColourAreaAndDrawing) {
    // Four faces, two of them with numbers that are no vertices; numbers that are no faces.
    TMOD2D model = read("2 0 2 1.25 -0.5 -1.29 3 4 2 0 1 0 2 0 2 1 -1 1 8 1 0 0 4 5 -1 2 3");
    POLY3D_CPLX& group = model.groups[0];
    const auto drawn = [&](int u, int v) {
        RecordingDC dc;
        group.draw_a_fill_poly(u, v, model.polys, model.verts, 100, 50, 0, 0, 1, 1, 10, &dc);
        return dc.calls;
    };
    EXPECT_EQ(drawn(0, 2), (Calls{"fill mode 1", "brush 0-0-0",
                                  "polygons; 112,45 88,80; 112,45 88,80;", "brush back"}));
    EXPECT_EQ(drawn(3, 0), Calls{});
    EXPECT_EQ(drawn(0, -1), Calls{});
    group.polys.RemoveAll();
    group.lightness = 0.1; // never used
    group.rgb_color();
    EXPECT_EQ(group.lightness, 0.60000002384185791015625);
    EXPECT_EQ(drawn(2, 0), (Calls{"fill mode 1", "brush 170-204-102", "polygons", "brush back"}));
    group.area = 100;
    model.polys[3].area = 4; // all faces count, listed or not
    group.cpgn_area(model.polys);
    EXPECT_EQ(group.area, 4);
}

// 1 / 49 · 49 is below 1 and truncates to 0; 1 · 49 / 49 and 1 · (49 / 49) would give 1.
TEST(FilledGroup, DividesByTheUnitBeforeItScales) {
    TMOD2D model = read("1 0 1 6 -6 1 1 0 1 1 0");
    RecordingDC dc;
    model.groups[0].draw_a_fill_poly(0, 1, model.polys, model.verts, 100, 50, 5, -5, 49, 49, 49,
                                     &dc);
    EXPECT_EQ(dc.calls, (Calls{"fill mode 1", "brush 0-0-0", "polygons 100,50;", "brush back"}));
}

class SectionModel : public ScratchAsCurrent {};

TEST_F(SectionModel, DefaultContentAndCopies) {
    TMOD2D model;
    model.set_poly_at_grow(); // no faces to dump
    model.intlmode();
    EXPECT_EQ(model.lines[1].end_vert, 3);
    EXPECT_EQ(model.lines[7].end_vert, 4);
    model.groups.SetSize(2);
    model.groups[1].polys.Add(1);
    model.groups[1].rgb_color();
    RecordingDC dc;
    model.draw_filled_model(0, 1, 1, 2, 1000, 0, 50, 100, 0.1, &dc);
    EXPECT_EQ(dc.calls,
              (Calls{"fill mode 1", "fill mode 1", "brush 0-0-0",
                     "polygons -5,0 3,0 3,4 -5,4; -3,1 1,1 1,3 -3,3;", "brush back", "fill mode 1",
                     "brush 170-204-102", "polygons -3,1 1,1 1,3 -3,3;", "brush back"}));
    const TMOD2D copy(model);
    model.polys[1].lines.SetSize(3); // a missing edge is left out of the dump
    model.set_poly_at_grow();
    EXPECT_EQ(lines_of("ttty"), "0 0\n1 1\n2 2\n3 3\n4 4\n5 5\n6 6\n7\n");
    model.intlmode();
    EXPECT_EQ(model.polys[3].verts[3], 7); // counts from 0 on a filled model, too
    model.set_poly_at_grow();              // of four faces the first two
    EXPECT_EQ(lines_of("ttty"), "0 0\n1 1\n2 2\n3 3\n4 4\n5 5\n6 6\n7\n");
    EXPECT_EQ(copy.verts.GetSize() + copy.lines.GetSize(), 16);
    EXPECT_EQ(copy.polys[1].lines.GetSize(), 4);
    EXPECT_EQ(copy.groups[1].rgb, 6737066);
}

} // namespace
