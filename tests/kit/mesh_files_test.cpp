#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "kit/base/error.h"
#include "kit/files/mesh_files.h"
#include "kit/files/text_file.h"
#include "tests/support/dice.h"
#include "tests/support/scratch.h"

namespace korvel::test {
namespace {

using kit::Colour;
using kit::Mesh;
using kit::MeshFormat;
using testing::HasSubstr;

constexpr Colour red = {255, 0, 0};
constexpr Colour grey = {10, 20, 30};

Mesh mesh_of_text(const std::string& text, std::optional<MeshFormat> format = {},
                  const kit::Context& context = {}) {
    return kit::read_mesh(kit::stream_of({"", text}).get(), "f", format, context);
}

std::string mesh_refusal(const std::string& text, std::optional<MeshFormat> format = {}) {
    try {
        mesh_of_text(text, format);
    } catch (const kit::Error& error) {
        EXPECT_EQ(error.kind(), kit::Error::Kind::input);
        return error.what();
    }
    return "no error";
}

template <class Number>
std::string bytes(Number number, bool turned = false) {
    std::string text(sizeof number, '\0');
    std::memcpy(text.data(), &number, sizeof number);
    const bool is_turned = turned == (std::endian::native == std::endian::little);
    return is_turned ? std::string(text.rbegin(), text.rend()) : text;
}

// A binary STL of these corners, nine coordinates for each face.
std::string stl(const std::vector<float>& corners, unsigned count, std::string head = "") {
    head.resize(80, ' ');
    std::string text = head + bytes(count);
    for (std::size_t i = 0; i < corners.size(); ++i) {
        text += i % 9 == 0 ? std::string(12, '\0') : "";
        text += bytes(corners[i]);
        text += i % 9 == 8 ? std::string(2, '\0') : "";
    }
    return text;
}

const std::vector<float> two_faces = {0, 0, 0, 1, 0, 0, 0, 1, 0, //
                                      0, 1, 0, 1, 0, 0, 1, 1, -0.0F};

// Two tetrahedra that share a point.
Mesh two_tetrahedra() {
    Mesh mesh;
    mesh.points = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {2, 0, 0}, {2, 0.5, 0}, {2, 0, 1}};
    mesh.corners = {0, 2, 1, 0, 1, 3, 1, 2, 3, 2, 0, 3, 1, 5, 4, 1, 4, 6, 4, 5, 6, 5, 1, 6};
    mesh.parts = {{"one", red, 4}, {"other \xC3\xA9", grey, 8}};
    mesh.parts_are_bodies = true;
    mesh.placement.reference = "EPSG:25832";
    return mesh;
}

class MeshFiles : public Scratch {
protected:
    Mesh rewritten(const Mesh& mesh, MeshFormat format) const {
        kit::write_mesh(mesh, path("w.mesh"), format);
        return kit::read_mesh(path("w.mesh"), format);
    }
};

TEST_F(MeshFiles, KeepBodiesColoursAndPlacementAsFarAsFormatsDo) {
    const Mesh mesh = two_tetrahedra();
    const struct {
        MeshFormat format;
        bool bodies, names, colours;
    } table[] = {
        {MeshFormat::stl, false, false, false}, {MeshFormat::stl_text, false, true, false},
        {MeshFormat::ply, true, false, true},   {MeshFormat::ply_text, true, false, true},
        {MeshFormat::off, false, false, true},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(static_cast<int>(row.format));
        const Mesh copy = rewritten(mesh, row.format);
        ASSERT_EQ(copy.face_count(), mesh.face_count());
        for (std::size_t i = 0; i < mesh.corners.size(); ++i) {
            EXPECT_EQ(copy.points[copy.corners[i]], mesh.points[mesh.corners[i]]) << i;
        }
        EXPECT_EQ(copy.points.size(), mesh.points.size());
        EXPECT_EQ(copy.parts_are_bodies, row.bodies);
        EXPECT_EQ(copy.parts.size(), row.bodies || row.names ? 2U : 0U);
        for (std::size_t part = 0; part < copy.parts.size(); ++part) {
            EXPECT_EQ(copy.parts[part].face_end, mesh.parts[part].face_end);
            EXPECT_EQ(copy.parts[part].name, row.names ? mesh.parts[part].name : "");
            EXPECT_EQ(copy.parts[part].colour,
                      row.colours ? mesh.parts[part].colour : std::nullopt);
        }
        if (row.colours && !row.bodies) {
            ASSERT_EQ(copy.face_colours.size(), 8U);
            EXPECT_EQ(copy.face_colours[3], red);
            EXPECT_EQ(copy.face_colours[4], grey);
        }
        EXPECT_EQ(copy.placement.reference, row.colours ? "EPSG:25832" : "");
    }
}

// Coordinates that single precision does not hold, polygons, and colours of points and faces.
TEST_F(MeshFiles, KeepEveryDigitWhereTheFormatHasThem) {
    Mesh mesh;
    Dice dice;
    for (int i = 0; i < 500; ++i) {
        mesh.points.push_back({dice.between(-1e6, 1e6), dice.up_to(1e-300), dice.up_to(0.1)});
        mesh.point_colours.push_back({static_cast<unsigned char>(i % 251), 7, 0});
    }
    for (int face = 0; face < 300; ++face) {
        const int corners = face == 77 ? 400 : dice(3, 6);
        for (int i = 0; i < corners; ++i) {
            mesh.corners.push_back(dice(0, 499));
        }
        mesh.face_ends.push_back(static_cast<std::uint32_t>(mesh.corners.size()));
        mesh.face_colours.push_back({0, static_cast<unsigned char>(face % 256), 255});
    }
    for (const MeshFormat format : {MeshFormat::ply, MeshFormat::ply_text, MeshFormat::off}) {
        const Mesh copy = rewritten(mesh, format);
        EXPECT_EQ(copy.points, mesh.points);
        EXPECT_EQ(copy.corners, mesh.corners);
        EXPECT_EQ(copy.face_ends, mesh.face_ends);
        EXPECT_EQ(copy.point_colours, mesh.point_colours);
        EXPECT_EQ(copy.face_colours, mesh.face_colours);
    }
    // STL has triangles: two fewer than a polygon has corners.
    EXPECT_EQ(rewritten(mesh, MeshFormat::stl).face_count(),
              mesh.corners.size() - 2 * mesh.face_count());
}

TEST(MeshFormats, AreRecognized) {
    EXPECT_EQ(kit::mesh_format("a/b.PLY"), MeshFormat::ply);
    EXPECT_EQ(kit::mesh_format("stl"), std::nullopt);
    EXPECT_EQ(kit::mesh_format_named("stl-TEXT"), MeshFormat::stl_text);
    const std::pair<std::string, std::size_t> table[] = {
        {stl(two_faces, 2), 4},
        {stl(two_faces, 2, "solid with facet in its head"), 4},
        {"\xEF\xBB\xBFSolid \xC3\xA9\nFACET normal nan 0 0\r\n outer loop\nvertex 0 0 0\nvertex 1 "
         "0 "
         "0\rvertex +1e0 1 0\nendloop\nendfacet\nendsolid",
         3},
        {"ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\nproperty "
         "float z\nelement face 1\nproperty list uchar int vertex_index\nend_header\n0 0 0\n1 0 "
         "0\n0 1 0\n3 0 1 2",
         3},
        {"OFF # of three\n#\n3 1\n\n0 0 0\n1 0 0 # x\n0 1 0\n3 0 1 2\n", 3},
        {"# of another program\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n", 3},
    };
    for (const auto& [text, points] : table) {
        const Mesh mesh = mesh_of_text(text);
        EXPECT_EQ(mesh.points.size(), points) << text;
        EXPECT_EQ(mesh.face_count(), text.size() == 184 ? 2U : 1U) << text;
    }
}

// By all of its types, an element and properties that are left out, and both byte orders.
TEST(MeshFormats, PlyHasAnyTypesAndByteOrder) {
    for (const bool turned : {false, true}) {
        const std::string head =
            std::string("ply\r\nformat binary_") + (turned ? "big" : "little") +
            "_endian 1.0\r\ncomment grid x\r\nelement extra 2\r\nproperty list ushort double a\r\n"
            "property int8 b\r\nelement vertex 3\r\nproperty short z\r\nproperty float32 nx\r\n"
            "property double x\r\nproperty uint y\r\nproperty float red\r\nproperty float green\r\n"
            "property float blue\r\nelement face 2\r\nproperty list int ushort vertex_indices\r\n"
            "end_header\r\n";
        const auto number = [&](auto value) { return bytes(value, turned); };
        std::string text = head + number(std::uint16_t{2}) + number(1.0) + number(2.0) + "b" +
                           number(std::uint16_t{0}) + "b";
        const auto nan = std::numeric_limits<float>::quiet_NaN();
        for (const int i : {0, 1, 2}) {
            text += number(static_cast<std::int16_t>(-i)) + number(nan) + number(0.1 * i) +
                    number(4000000000U) + number(1.0F) + number(0.5F) + number(nan);
        }
        for (const int corners : {2, 3}) {
            text += number(corners);
            for (int i = 0; i < corners; ++i) {
                text += number(static_cast<std::uint16_t>(i));
            }
        }
        std::vector<std::string> warnings;
        const kit::Context context = {
            .on_warning = [&](const std::string& line) { warnings.push_back(line); }};
        const Mesh mesh = mesh_of_text(text, {}, context);
        EXPECT_EQ(mesh.points[2], (kit::Point3{0.1 * 2, 4e9, -2}));
        EXPECT_EQ(mesh.point_colours[1], (Colour{255, 128, 0}));
        EXPECT_EQ(mesh.corners, (std::vector<std::int32_t>{0, 1, 2}));
        EXPECT_THAT(warnings, testing::ElementsAre(HasSubstr("1 faces with fewer than three")));
        EXPECT_THAT(mesh_refusal(text.substr(0, text.size() - 1)),
                    HasSubstr("the file ends within"));
    }
}

TEST(MeshFormats, OffColoursGoToOneOr255) {
    const auto colours_of = [](const std::string& one, const std::string& other) {
        return mesh_of_text("COFF\n3 2 0\n0 0 0 " + one + "\n1 0 0 " + one + "\n0 1 0 " + other +
                            "\n3 0 1 2 " + one + "\n3 0 2 1\n");
    };
    for (const auto& [one, other] :
         {std::pair("255 0 0 255", "10 20 30 255"), std::pair("1 0 0 1", "0.04 0.08 0.118 1")}) {
        const Mesh mesh = colours_of(one, other);
        EXPECT_EQ(mesh.point_colours, (std::vector<Colour>{red, red, grey}));
        EXPECT_EQ(mesh.face_colours, (std::vector<Colour>{red, {255, 255, 255}}));
    }
}

TEST(MeshFormats, RefuseWhatDoesNotFit) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    std::vector<float> no_number = two_faces;
    no_number[13] = nan;
    const std::string ply = "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty "
                            "float y\nproperty float z\nelement face 1\nproperty list uchar int "
                            "vertex_index\nend_header\n0 0 0\n1 0 0\n";
    const std::string wide =
        "ply\nformat binary_little_endian 1.0\nelement vertex 2000000000\n"
        "property double x\nproperty double y\nproperty double z\nend_header\n";
    const std::string facet = "solid a\nfacet normal 0 0 1\nouter loop\n";
    const struct {
        std::string text;
        const char* message;
    } table[] = {
        {"", "f: the file is empty"},
        {stl(two_faces, 3), "as binary STL of 3 faces it has bytes for 2 only at byte 84"},
        {stl(two_faces, 0x02000000), "bytes are in reversed order"},
        {stl(two_faces, 1), "1 faces, which 50 more bytes follow"},
        {stl(two_faces, 2).substr(0, 160), "bytes for 1 only"},
        {stl(no_number, 2), "corner 1 of face 1 has a coordinate that is no number at byte 184"},
        {stl({}, 0), "a mesh without faces"},
        {facet + "vertex 0 0 x\n", "f:4: 'x' is not a number: expected the z of a corner"},
        {facet + "vertex 0 0\n", "f:4: the line ends where the z of a corner is expected"},
        {facet + "vertex 0 0 inf\n", "f:4: 'inf' is not a finite number"},
        {facet + "vertex 0 0 1e999\n", "f:4: '1e999' is too large"},
        {facet + "vertex 0 0 0\nendloop\n", "f:5: 'endloop', where 'vertex' is expected"},
        {facet, "f:3: the file ends where 'vertex' is expected"},
        {ply + "0 1 0\n3 0 1 3\n", "f:13: the index of a point is 3, out of range"},
        {ply + "0 1 0\n3 0 1 0.5\n", "f:13: the index of a point is 0.5, out of range"},
        {ply + "0 1 0\n-1 0 1\n", "f:13: the length of a list is -1"},
        {ply + "0 1 0\n3 0 1 2\n7", "f:14: '7' follows the last element"},
        {ply + "0 nan 0\n3 0 1 2\n", "f:12: 'nan' is not a finite number"},
        {ply + "0     1", "f:12: the file ends where a coordinate is expected"},
        {wide, "2000000000 of element 'vertex', where the file has room for 0"},
        {"ply\nformat ascii 1.0\nelement tristrips 0\nend_header\n", "'tristrips', are not read"},
        {"ply\nformat ascii 1.0\nelement face 0\nelement face 0\nend_header\n",
         "'face' comes twice"},
        {"ply\nformat binary 1.0\n", "f:2: 'binary' is no format of PLY"},
        {"ply\nelement vertex 0\nproperty half x\n", "f:3: 'half' is no type of a property"},
        {"ply\nend_header\n", "the header has no line 'format'"},
        {"OFF\n3 1 0\n0 0 0\n1 0 0\n0 1 0\n3 0 1 3\n",
         "f:6: the index of a point is 3, out of range"},
        {"OFF\n3 1 0\n0 0 0\n1 0 0\n0 1 0\n9999999 0 1 2\n",
         "f:6: the number of corners is 9999999"},
        {"OFF\n3 1 0\n0 0 0 4\n1 0 0\n0 1 0\n", "f:3: 1 numbers after the coordinates"},
        {"OFF\n1000000000 1 0\n", "the number of points is 1000000000, where the file has room"},
        {"OFF BINARY\n", "'BINARY' is not an integer"},
        {"4OFF\n", "points of other than three dimensions"},
        {"OFF\n3 1 0\n0 0 0\n1 0 0\n0 1 0\n3 0 1 2\n3 0 1 2\n", "f:7: '3' follows the last face"},
    };
    for (const auto& [text, message] : table) {
        EXPECT_THAT(mesh_refusal(text), HasSubstr(message)) << text;
    }
    EXPECT_THAT(mesh_refusal("vertex", MeshFormat::stl), HasSubstr("neither text STL"));
    EXPECT_THAT(mesh_refusal("OFF", MeshFormat::ply), HasSubstr("no PLY"));
    EXPECT_THAT(mesh_refusal(std::string("OFF\n3 1\0", 8), MeshFormat::off),
                HasSubstr("a byte of value 0"));
}

} // namespace
} // namespace korvel::test
