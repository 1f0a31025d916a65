#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
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
using kit::Point3;

std::string word_of(std::uint32_t value) {
    std::string bytes;
    for (unsigned shift = 0; shift < 32; shift += 8) {
        bytes += static_cast<char>(value >> shift & 0xFFU);
    }
    return bytes;
}

std::string glb(std::string json, const std::string& binary) {
    json.append((4 - json.size() % 4) % 4, ' ');
    const std::string text = word_of(static_cast<std::uint32_t>(json.size())) + "JSON" + json +
                             word_of(static_cast<std::uint32_t>(binary.size())) +
                             std::string("BIN\0", 4) + binary;
    return "glTF" + word_of(2) + word_of(static_cast<std::uint32_t>(12 + text.size())) + text;
}

// The points (0, 0, 0), (1, 0, 0), (0, 1, 0) and (0, 0, 1) in its axes, and the corners 0 1 2, 0 1
// 3 in 16 bits.
std::string binary() {
    std::string bytes;
    for (const float value : {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1}) {
        bytes += word_of(std::bit_cast<std::uint32_t>(static_cast<float>(value)));
    }
    for (const char corner : {0, 1, 2, 0, 1, 3}) {
        bytes += corner;
        bytes += '\0';
    }
    return bytes;
}

const std::string plain =
    R"({"asset":{"version":"2.0"},"scenes":[{"nodes":[0]}],"nodes":[{"mesh":0,"name":"n"}],)"
    R"("meshes":[{"primitives":[{"attributes":{"POSITION":0,"NORMAL":7},"indices":1}]}],)"
    R"("accessors":[{"bufferView":0,"componentType":5126,"count":4,"type":"VEC3"},)"
    R"({"bufferView":1,"componentType":5123,"count":6,"type":"SCALAR"}],)"
    R"("bufferViews":[{"buffer":0,"byteLength":48},{"buffer":0,"byteOffset":48,"byteLength":12}],)"
    R"("buffers":[{"byteLength":60}]})";

std::string replaced(const std::string& text, const std::string& what, const std::string& by) {
    const std::size_t at = text.find(what);
    EXPECT_NE(at, std::string::npos) << what;
    return std::string(text).replace(at, what.size(), by);
}

Mesh mesh_of_bytes(const std::string& bytes) {
    return kit::read_mesh(kit::stream_of({"", bytes}).get(), "f", kit::MeshFormat::glb);
}

std::string refusal_of_bytes(const std::string& bytes) {
    try {
        mesh_of_bytes(bytes);
    } catch (const kit::Error& error) {
        return error.what();
    }
    return "no error";
}

class Glb : public Scratch {};

// In millimetres 5500 km from the origin, where single precision alone has half metres.
TEST_F(Glb, BodiesComeBackWithNamesAndColours) {
    Mesh mesh = two_bodies();
    kit::write_mesh(mesh, path("m.glb"));
    expect_same_mesh(kit::read_mesh(path("m.glb")), mesh);
    mesh.placement.grid.turn_y_down();
    for (Point3& point : mesh.points) {
        point = mesh.placement.grid.to_user(two_bodies().placement.grid.to_grid(point));
    }
    kit::write_mesh(mesh, path("d.glb"));
    expect_same_mesh(kit::read_mesh(path("d.glb")), mesh);
}

TEST_F(Glb, EveryColourComesBack) {
    Mesh mesh = two_bodies();
    for (int channel = 0; channel < 256; ++channel) {
        const auto value = static_cast<unsigned char>(channel);
        mesh.parts[1].colour = Colour{value, static_cast<unsigned char>(255 - channel), value};
        kit::write_mesh(mesh, path("m.glb"));
        ASSERT_EQ(kit::read_mesh(path("m.glb")).parts[1].colour, mesh.parts[1].colour);
    }
}

// Without a grid, what is far away keeps the precision around its centre; a polygon is divided.
TEST_F(Glb, PlacesOtherMeshesAroundTheirCentre) {
    Mesh mesh;
    mesh.points = {{4e6 + 0.125, 5e6, 1}, // the corner that follows points inward
                   {4e6 + 0.25, 5e6 + 0.75, 1},
                   {4e6 + 1, 5e6 + 1, 1},
                   {4e6, 5e6 + 1, 1}};
    mesh.corners = {0, 1, 2, 3};
    mesh.face_ends = {4};
    kit::write_mesh(mesh, path("m.glb"));
    const Mesh again = kit::read_mesh(path("m.glb"));
    EXPECT_EQ(again.points, mesh.points);
    ASSERT_EQ(again.face_count(), 2U);
    for (const std::size_t face : {0U, 1U}) {
        EXPECT_THAT(again.face(face), testing::IsSupersetOf({1, 3}));
    }
    mesh.points[0][0] = 1e300;
    EXPECT_THROW(kit::write_mesh(mesh, path("n.glb")), kit::Error);
}

// y is up in glTF, z here.
TEST_F(Glb, NodesPlaceTheirMeshes) {
    const std::string with_nodes = replaced(
        plain, R"({"mesh":0,"name":"n"})",
        R"({"children":[1,2],"matrix":[2,0,0,0, 0,2,0,0, 0,0,2,0, 10,20,30,1]},)"
        R"({"mesh":0,"translation":[1,0,0],"rotation":[0,0,0.70710678,0.70710678],"scale":[1,3,1]},)"
        R"({"mesh":0,"scale":[-1,1,1]})");
    const Mesh mesh = mesh_of_bytes(glb(with_nodes, binary()));
    ASSERT_EQ(mesh.parts.size(), 2U);
    ASSERT_EQ(mesh.points.size(), 8U);
    const std::vector<Point3> placed = {{12, -30, 20}, {12, -30, 22}, {6, -30, 20}, {12, -32, 20}};
    for (std::size_t i = 0; i < placed.size(); ++i) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            EXPECT_NEAR(mesh.points[i][axis], placed[i][axis], 1e-7) << i;
        }
    }
    EXPECT_EQ(mesh.points[5], (Point3{8, -30, 20}));
    // What is mirrored is turned over.
    EXPECT_THAT(mesh.corners, testing::ElementsAre(0, 1, 2, 0, 1, 3, 4, 6, 5, 4, 7, 5));
}

TEST_F(Glb, BadInputIsNamed) {
    struct Case {
        const char* what;
        const char* by;
        const char* message;
    };
    const std::vector<Case> cases = {
        {R"("scenes")", R"("extensionsRequired":["KHR_draco_mesh_compression"],"scenes")",
         "extensionsRequired[0]: the extension 'KHR_draco_mesh_compression' is not read"},
        {R"("scenes")", R"("animations":[{}],"scenes")", "animations are not read"},
        {R"("scenes")", R"("textures":[{}],"scenes")", "textures are not read"},
        {"2.0", "1.0", "asset.version: '1.0', where version 2 is read"},
        {R"("indices":1)", R"("indices":1,"mode":1)", "mode 1 (lines) is not read"},
        {R"("indices":1)", R"("indices":1,"targets":[])", "morph targets are not read"},
        {R"("indices":1)", R"("indices":9)", "accessors: no element 9 among 2"},
        {R"("indices":1)", R"("indices":0)", "accessors[0].type: 'VEC3', where SCALAR is expected"},
        {R"("NORMAL")", R"("JOINTS_0")", "the skin's attribute 'JOINTS_0' is not read"},
        {R"("count":4)", R"("count":5)",
         "accessors[0]: 5 values are more than its view of 48 bytes"},
        {R"("count":4)", R"("count":3)", "accessors[1]: index 3 is not one of 3 points"},
        {R"("count":4)", R"("count":4294967295)", "accessors[0]: 4294967295 values"},
        {R"("count":4)", R"("count":-1)", "accessors[0].count: an integer from 0"},
        {R"("count":6)", R"("count":5)", "5 corners, which is no multiple of 3"},
        {R"("count":6)", R"("count":6,"sparse":{})", "sparse accessors are not read"},
        {"5126", "5123", "component type 5123 is not read for coordinates"},
        {R"("byteLength":48)", R"("byteLength":4294967295)", "bufferViews[0]: the view ends after"},
        {R"("byteLength":48)", R"("byteLength":48,"byteStride":4)", "a stride of 4 bytes"},
        {R"("byteLength":60)", R"("byteLength":61)", "buffers[0]: the buffer is longer"},
        {R"("byteLength":60)", R"("byteLength":60,"uri":"x.bin")", "a buffer outside the file"},
        {R"("mesh":0,)", R"("mesh":0,"children":[0],)",
         "nodes[0]: the node is the child of several"},
        {R"("mesh":0,)", R"("mesh":0,"scale":[1,2],)", "nodes[0].scale: 3 numbers are expected"},
        {R"("mesh":0,)", R"("mesh":0,"scale":[1,1,"x"],)", "nodes[0].scale[2]: a number"},
        {R"("mesh":0,)",
         R"("mesh":0,"scale":[1e308,1,1],"matrix":[1e308,0,0,0,0,1,0,0,0,0,1,0,1e308,0,0,1],)",
         "accessors[0]: the coordinates of point 1 are no finite numbers"},
        {R"("mesh":0,)", R"("mesh":0,"matrix":[1,0,0,1,0,1,0,0,0,0,1,0,0,0,0,1],)", "the last row"},
        {R"("asset")", R"("asset":{"version":"2.0",},"x")", "no valid JSON: parse error at line 1"},
        {R"("nodes":[{)", R"("nodes":{"x":[{)", "no valid JSON"},
    };
    EXPECT_EQ(mesh_of_bytes(glb(plain, binary())).face_count(), 2U);
    for (const Case& one : cases) {
        const std::string refused =
            refusal_of_bytes(glb(replaced(plain, one.what, one.by), binary()));
        EXPECT_THAT(refused, testing::StartsWith("f: "));
        EXPECT_THAT(refused, testing::HasSubstr(one.message));
    }
    const std::string nested = R"({"asset":)" + std::string(200000, '[');
    EXPECT_THAT(refusal_of_bytes(glb(nested, "")), testing::HasSubstr("in more than 100 levels"));
    EXPECT_THAT(refusal_of_bytes(plain), testing::HasSubstr("glTF as text is not read"));
    EXPECT_THAT(refusal_of_bytes("glTF" + word_of(1) + word_of(99)),
                testing::HasSubstr("version 1"));
    // A point that is not a number.
    EXPECT_THAT(refusal_of_bytes(glb(plain, word_of(0x7FC00000) + binary().substr(4))),
                testing::HasSubstr("point 0 are no finite numbers"));
}

TEST_F(Glb, EveryTruncationIsRefused) {
    const std::string all = glb(plain, binary());
    for (std::size_t size = 0; size < all.size(); ++size) {
        EXPECT_NE(refusal_of_bytes(all.substr(0, size)), "no error") << size;
    }
}

// A few bytes cannot ask for many copies.
TEST_F(Glb, CopiesAreLimitedByTheSizeOfTheFile) {
    std::string nodes = R"({"mesh":0})";
    std::string children = "0";
    for (int i = 1; i < 20000; ++i) {
        nodes += R"(,{"mesh":0})";
        children.append(",").append(std::to_string(i));
    }
    std::string json = replaced(plain, R"({"mesh":0,"name":"n"})", nodes);
    json = replaced(json, R"({"nodes":[0]})", R"({"nodes":[)" + children + "]}");
    json = replaced(json, R"("byteLength":48)", R"("byteLength":120000)");
    json = replaced(json, R"("count":4)", R"("count":10000)");
    json = replaced(json, R"("byteLength":60)", R"("byteLength":120000)");
    EXPECT_THAT(refusal_of_bytes(glb(json, binary() + std::string(119940, '\0'))),
                testing::HasSubstr("too many for a file of"));
}

} // namespace
} // namespace korvel::test
