#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "kit/base/error.h"
#include "kit/files/mesh_files.h"
#include "kit/files/text_file.h"
#include "tests/kit/meshes.h"
#include "tests/support/scratch.h"

namespace korvel::test {
namespace {

using kit::Colour;
using kit::Mesh;
using kit::MeshFormat;

Mesh mesh_of_obj(const std::string& text) {
    return kit::read_mesh(kit::stream_of({"", text}).get(), "f", MeshFormat::obj);
}

std::string refusal_of(const std::string& text) {
    try {
        mesh_of_obj(text);
    } catch (const kit::Error& error) {
        return error.what();
    }
    return "no error";
}

class Obj : public Scratch {};

TEST_F(Obj, BodiesComeBackWithNamesColoursAndEveryDigit) {
    const Mesh mesh = two_bodies();
    kit::write_mesh(mesh, path("m.obj"));
    EXPECT_EQ(files(), 2); // with the materials
    expect_same_mesh(kit::read_mesh(path("m.obj")), mesh);
    EXPECT_THAT(read("m.mtl"), testing::HasSubstr("newmtl colour_d19060\nKd 0.8"));
}

TEST_F(Obj, ColoursOfPointsAndFacesComeBack) {
    Mesh mesh = two_bodies();
    mesh.parts.clear();
    mesh.parts_are_bodies = false;
    mesh.placement = {};
    mesh.point_colours.assign(mesh.points.size(), {1, 2, 3});
    mesh.point_colours[2] = {254, 0, 127};
    kit::write_mesh(mesh, path("p.obj"));
    EXPECT_EQ(files(), 1);
    expect_same_mesh(kit::read_mesh(path("p.obj")), mesh);

    mesh.point_colours.clear();
    mesh.face_colours.assign(mesh.face_count(), {9, 8, 7});
    mesh.face_colours[1] = {0, 0, 0};
    kit::write_mesh(mesh, path("f.obj"));
    const Mesh again = kit::read_mesh(path("f.obj"));
    EXPECT_EQ(again.corners, mesh.corners);
    ASSERT_EQ(again.parts.size(), 3U); // one face, one of another colour, the others
    EXPECT_EQ(again.parts[1].colour, (Colour{0, 0, 0}));
    EXPECT_EQ(again.parts[1].face_end, 2U);
}

// Comments, the ends of lines, indices that count back, continued faces, points after their faces.
TEST_F(Obj, ReadsWhatOthersWrite) {
    const Mesh mesh =
        mesh_of_obj("\xEF\xBB\xBF# by hand\r\nmtllib none.mtl\r\n"
                    "v 0 0 0 1.0\r\nv +1 0 0\r\nv 1 1 -0.5e-1 # corner\r\nvn 0 0 1\r\n"
                    "g first one\r\ns off\r\nf 1/1/1 2//1 3/1\r\n"
                    "f -3 -2 -1 \\\r\n 4 # continued\r\nusemtl red\r\nf 1 2 4\r\n"
                    "l 1 2\r\ncurv 0 1 \\\r\n 1 2\r\nv 0 1 0");
    EXPECT_EQ(mesh.points[2], (kit::Point3{1, 1, -0.05}));
    EXPECT_THAT(mesh.corners, testing::ElementsAre(0, 1, 2, 0, 1, 2, 3, 0, 1, 3));
    EXPECT_THAT(mesh.face_ends, testing::ElementsAre(3U, 7U, 10U));
    ASSERT_EQ(mesh.parts.size(), 2U);
    EXPECT_EQ(mesh.parts[0].name, "first one");
    EXPECT_EQ(mesh.parts[1].face_end, 3U);
}

TEST_F(Obj, ReadsMaterialsBesideIt) {
    write("m.mtl", "newmtl a b\nNs 5\nKd 1 0.5 0\nmap_Kd x.png\nnewmtl grey\nKd 0.2\n"
                   "newmtl s\nKd spectral x.rfl 1\n");
    write("m.obj", "mtllib m.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl a b\nf 1 2 3\nusemtl grey\n"
                   "f 1 2 3\nusemtl s\nf 1 2 3\nusemtl unknown\nf 1 2 3\n");
    const Mesh mesh = kit::read_mesh(path("m.obj"));
    ASSERT_EQ(mesh.parts.size(), 4U);
    EXPECT_EQ(mesh.parts[0].colour, (Colour{255, 128, 0}));
    EXPECT_EQ(mesh.parts[1].colour, (Colour{51, 51, 51}));
    EXPECT_FALSE(mesh.parts[2].colour || mesh.parts[3].colour);

    std::string warning;
    write("m.obj", "mtllib gone.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    kit::read_mesh(path("m.obj"), {}, {.on_warning = [&](const std::string& w) { warning = w; }});
    EXPECT_THAT(warning, testing::HasSubstr("'gone.mtl' cannot be read"));
    write("gone.mtl", "newmtl a\nKd 1 x 0\n");
    EXPECT_THROW(kit::read_mesh(path("m.obj")), kit::Error);
}

TEST_F(Obj, BadInputIsNamed) {
    const std::string points = "v 0 0 0\nv 1 0 0\nv 0 1 0\n";
    const std::vector<std::pair<std::string, std::string>> inputs = {
        {points + "f 1 2 4\nf 1 2 3\n", "f:4: corner 4 of a face is not one of 3 points"},
        {points + "f 1 2 0\n", "f:4: corner 0 of a face is not one of 3 points"},
        {points + "f 1 2 -4\n", "f:4: corner -4 of a face is not one of 3 points"},
        {points + "f 1 2 99999999999999999999\n", "f:4: '99999999999999999999' is not a corner"},
        {points + "f 1 2 3x\n", "f:4: '3x' is not a corner"},
        {points + "f 1 2 3/a\n", "f:4: '3/a' is not a corner"},
        {points + "f\n", "f:4: a face without corners"},
        {points + "f 1 2 \\", "f:4: the file ends within a face"},
        {"v 0 nan 0\n", "f:1: 'nan' is not a finite number"},
        {"v 0 0\n", "f:1: the line ends where the z of a point"},
        {"v 0 0 1e999\n", "f:1: '1e999' is too large"},
        {"v 0 0 \1\n", "f:1: "},
        {std::string("v 0 0\0 0\n", 9), "f:1: a byte of value 0"},
        {"solid x\n", "f:1: 'solid' is no statement of OBJ"},
        {points, "f: a mesh without faces"},
        {"o " + std::string(2000, 'x') + "\n", "f:1: a name of more than 1000 bytes"},
    };
    for (const auto& [text, message] : inputs) {
        EXPECT_THAT(refusal_of(text), testing::StartsWith(message)) << text;
    }
}

TEST_F(Obj, BothFilesAreCompleteOrAbsent) {
    kit::MeshOutput::check(path("m.obj"));
    { const kit::MeshOutput dropped(two_bodies(), path("m.obj")); }
    EXPECT_EQ(files(), 0);
    EXPECT_THROW(kit::write_mesh(two_bodies(), path("no/m.obj")), kit::Error);
    EXPECT_THROW(kit::write_mesh(two_bodies(), path("m.unknown")), kit::Error);
    EXPECT_THROW(kit::write_mesh(two_bodies(), path("m.mtl"), MeshFormat::obj), kit::Error);
    std::filesystem::create_directory(path("d.mtl"));
    EXPECT_THROW(kit::MeshOutput::check(path("d.obj")), kit::Error);
    EXPECT_THROW(kit::write_mesh(two_bodies(), path("d.obj")), kit::Error);
    EXPECT_EQ(files(), 1);
}

} // namespace
} // namespace korvel::test
