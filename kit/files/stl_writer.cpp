// STL, binary and text: triangles with their normals.

#include <array>
#include <cmath>
#include <limits>
#include <string>

#include "kit/base/error.h"
#include "kit/files/byte_order.h"
#include "kit/files/mesh_mark.h"
#include "kit/files/mesh_readers.h"
#include "kit/files/text_output.h"

namespace korvel::kit {
namespace {

using Triangle = std::array<Point3, 3>;

void write_binary_stl(const Mesh& mesh, OutputFile& out);
void write_text_stl(const Mesh& mesh, OutputFile& out);
void check_stl(const Mesh& mesh, bool as_text, const OutputFile& out);
Triangle triangle_of(const Mesh& mesh, std::size_t face);
std::array<float, 3> unit_normal(const Triangle& triangle);
std::string on_one_line_of_stl(const std::string& name);

} // namespace

void write_stl(const Mesh& mesh, bool as_text, OutputFile& out) {
    check_stl(mesh, as_text, out);
    if (as_text) {
        write_text_stl(mesh, out);
    } else {
        write_binary_stl(mesh, out);
    }
}

namespace {

// Of what the format cannot hold.
void check_stl(const Mesh& mesh, bool as_text, const OutputFile& out) {
    for (std::size_t face = 0; face < mesh.face_count() && !mesh.face_ends.empty(); ++face) {
        if (mesh.face(face).size() != 3) {
            out.fail("face " + std::to_string(face) + " has " +
                     std::to_string(mesh.face(face).size()) + " corners, where STL has triangles");
        }
    }
    constexpr double most = std::numeric_limits<float>::max();
    for (const Point3& point : mesh.points) {
        for (const double coordinate : point) {
            if (!as_text && !(std::abs(coordinate) <= most)) {
                out.fail("a coordinate beyond single precision, which binary STL has");
            }
        }
    }
}

void write_binary_stl(const Mesh& mesh, OutputFile& out) {
    TextOutput output(out);
    std::string head = "korvel";
    head.resize(80, ' ');
    append_bytes(output.put(head).text(), static_cast<std::uint32_t>(mesh.face_count()));
    for (std::size_t face = 0; face < mesh.face_count(); ++face) {
        std::string& bytes = output.text();
        const Triangle triangle = triangle_of(mesh, face);
        for (const float component : unit_normal(triangle)) {
            append_bytes(bytes, component);
        }
        for (const Point3& corner : triangle) {
            for (const double coordinate : corner) {
                append_bytes(bytes, static_cast<float>(coordinate));
            }
        }
        append_bytes(bytes, std::uint16_t{0});
    }
}

void write_text_stl(const Mesh& mesh, OutputFile& out) {
    TextOutput output(out);
    const auto put_three = [&](const char* words, const auto& numbers) {
        output.put(words).put_number(numbers[0]).put(" ");
        output.put_number(numbers[1]).put(" ").put_number(numbers[2]).put("\n");
    };
    for (std::size_t part = 0; part < part_count(mesh); ++part) {
        const std::string name =
            mesh.parts.empty() ? "" : on_one_line_of_stl(mesh.parts[part].name);
        output.put("solid ").put(name).put("\n");
        const FaceRange faces = part_faces(mesh, part);
        for (std::size_t face = faces.begin; face < faces.end; ++face) {
            const Triangle triangle = triangle_of(mesh, face);
            put_three("facet normal ", unit_normal(triangle));
            output.put("outer loop\n");
            for (const Point3& corner : triangle) {
                put_three("vertex ", corner);
            }
            output.put("endloop\nendfacet\n");
        }
        output.put("endsolid ").put(name).put("\n");
    }
}

Triangle triangle_of(const Mesh& mesh, std::size_t face) {
    const auto corners = mesh.face(face);
    const auto corner = [&](std::size_t i) {
        return mesh.points[static_cast<std::size_t>(corners[i])];
    };
    return {corner(0), corner(1), corner(2)};
}

// 0 for a triangle without an area.
std::array<float, 3> unit_normal(const Triangle& triangle) {
    Point3 one = {};
    Point3 other = {};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        one[axis] = triangle[1][axis] - triangle[0][axis];
        other[axis] = triangle[2][axis] - triangle[0][axis];
    }
    const Point3 normal = {one[1] * other[2] - one[2] * other[1],
                           one[2] * other[0] - one[0] * other[2],
                           one[0] * other[1] - one[1] * other[0]};
    const double length =
        std::sqrt(normal[0] * normal[0] + normal[1] * normal[1] + normal[2] * normal[2]);
    if (!(length > 0) || !std::isfinite(length)) {
        return {};
    }
    return {static_cast<float>(normal[0] / length), static_cast<float>(normal[1] / length),
            static_cast<float>(normal[2] / length)};
}

std::string on_one_line_of_stl(const std::string& name) {
    std::string line = name;
    for (char& c : line) {
        c = static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
    }
    return line;
}

} // namespace
} // namespace korvel::kit
