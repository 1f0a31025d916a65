// Binary glTF: one node for each part, under a root whose scale and translation lead from the
// numbers of the file, in single precision, to the user's coordinates.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "kit/base/error.h"
#include "kit/files/byte_order.h"
#include "kit/files/glb_colour.h"
#include "kit/files/json_text.h"
#include "kit/files/mesh_mark.h"
#include "kit/files/mesh_readers.h"
#include "kit/files/text_output.h"

namespace korvel::kit {
namespace {

using Float3 = std::array<float, 3>;

/// How the numbers of the file become the user's coordinates: as steps of the grid, from an origin.
class GlbFrame {
public:
    explicit GlbFrame(const Mesh& mesh);

    /// In the axes of glTF: x to the right, y up, z to the viewer.
    Float3 to_file(const Point3& user) const;

    double scale() const { return grid_.step(); }
    Point3 translation() const;

private:
    Point3 steps(const Point3& user) const;

    Grid grid_;
    Point3 origin_ = {}; // in steps
};

/// A part as it is in the file.
struct GlbPart {
    std::size_t part = 0;      // of the mesh
    std::size_t point_end = 0; // of its points among those of all
    std::size_t triangles = 0;
    int material = -1;
    Float3 least = {};
    Float3 greatest = {};
};

class GlbWriter {
public:
    GlbWriter(const Mesh& mesh, OutputFile& file);
    void write();

private:
    void collect(std::size_t part);
    int material_of(std::size_t part);
    std::size_t first_point(std::size_t part) const {
        return part == 0 ? 0 : parts_[part - 1].point_end;
    }
    std::string json() const;
    void append_nodes(std::string& text) const;
    void append_meshes(std::string& text) const;
    void append_materials(std::string& text) const;
    void append_accessors(std::string& text) const;
    void append_views(std::string& text) const;
    void put_points();
    void put_triangles();

    const Mesh& mesh_;
    OutputFile& file_;
    TextOutput out_;
    GlbFrame frame_;
    std::vector<GlbPart> parts_;
    std::vector<std::int32_t> points_;  // of all parts, one part after another
    std::vector<std::uint32_t> number_; // for each point that in the part which came last
    std::size_t triangles_ = 0;
    std::vector<Colour> materials_;
    std::map<std::string, int> material_numbers_; // of colours as text
};

constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();
constexpr std::size_t bytes_of_point = 12;
constexpr std::size_t bytes_of_triangle = 12;

bool is_in_single_precision(const Point3& point);
void append_triple(std::string& text, const Point3& values);
Point3 to_point(const Float3& point);

} // namespace

void write_glb(const Mesh& mesh, OutputFile& out) {
    GlbWriter(mesh, out).write();
}

namespace {

GlbWriter::GlbWriter(const Mesh& mesh, OutputFile& file)
    : mesh_(mesh), file_(file), out_(file), frame_(mesh), number_(mesh.points.size(), none) {}

void GlbWriter::write() {
    for (std::size_t part = 0; part < part_count(mesh_); ++part) {
        collect(part);
    }
    std::string text = json();
    text.append((4 - text.size() % 4) % 4, ' ');
    const std::size_t binary = points_.size() * bytes_of_point + triangles_ * bytes_of_triangle;
    const std::size_t chunks = triangles_ == 0 ? 1 : 2;
    const std::uint64_t length = 12 + 8 * std::uint64_t{chunks} + text.size() + binary;
    if (length > std::numeric_limits<std::uint32_t>::max()) {
        file_.fail("a file of binary glTF has at most 4 GiB, and this one would be larger");
    }
    out_.put("glTF");
    append_bytes(out_.text(), std::uint32_t{2});
    append_bytes(out_.text(), static_cast<std::uint32_t>(length));
    append_bytes(out_.text(), static_cast<std::uint32_t>(text.size()));
    out_.put("JSON");
    out_.put(text);
    if (triangles_ > 0) {
        append_bytes(out_.text(), static_cast<std::uint32_t>(binary));
        out_.put({"BIN\0", 4});
        put_points();
        put_triangles();
    }
}

// Lists the points of a part in their order. A part without triangles has no node.
void GlbWriter::collect(std::size_t part) {
    GlbPart found;
    found.part = part;
    const std::size_t first = points_.size();
    const FaceRange faces = part_faces(mesh_, part);
    found.triangles = faces.end - faces.begin;
    for (std::size_t face = faces.begin; face < faces.end; ++face) {
        for (const std::int32_t corner : mesh_.face(face)) {
            std::uint32_t& number = number_[static_cast<std::size_t>(corner)];
            if (number != static_cast<std::uint32_t>(part)) {
                number = static_cast<std::uint32_t>(part);
                points_.push_back(corner);
            }
        }
    }
    if (found.triangles == 0) {
        return;
    }
    std::sort(points_.begin() + static_cast<std::ptrdiff_t>(first), points_.end());
    found.least.fill(std::numeric_limits<float>::max());
    found.greatest.fill(std::numeric_limits<float>::lowest());
    for (std::size_t i = first; i < points_.size(); ++i) {
        const Float3 point = frame_.to_file(mesh_.points[static_cast<std::size_t>(points_[i])]);
        for (std::size_t axis = 0; axis < 3; ++axis) {
            found.least[axis] = std::min(found.least[axis], point[axis]);
            found.greatest[axis] = std::max(found.greatest[axis], point[axis]);
        }
    }
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (!std::isfinite(found.least[axis]) || !std::isfinite(found.greatest[axis])) {
            file_.fail("glTF has coordinates in single precision, and one here is larger");
        }
    }
    found.point_end = points_.size();
    found.material = material_of(part);
    triangles_ += found.triangles;
    parts_.push_back(found);
}

int GlbWriter::material_of(std::size_t part) {
    const std::optional<Colour> colour = part_colour(mesh_, part);
    if (!colour) {
        return -1;
    }
    const auto [known, is_new] =
        material_numbers_.try_emplace(colour_text(*colour), static_cast<int>(materials_.size()));
    if (is_new) {
        materials_.push_back(*colour);
    }
    return known->second;
}

std::string GlbWriter::json() const {
    std::string text = R"({"asset":{"version":"2.0","generator":"korvel")";
    if (const std::vector<std::string> mark = mesh_mark(mesh_); !mark.empty()) {
        text += R"(,"extras":{"korvel":{"model":true)";
        if (mark.size() > 1) {
            text += R"(,"placement":)";
            append_json_string(text, mark[1]);
        }
        text += "}}";
    }
    text += R"(},"scene":0,"scenes":[{"nodes":[0]}])";
    append_nodes(text);
    if (!parts_.empty()) {
        append_meshes(text);
        append_materials(text);
        append_accessors(text);
        append_views(text);
    }
    text += '}';
    return text;
}

void GlbWriter::append_nodes(std::string& text) const {
    text += R"(,"nodes":[{"name":"korvel")";
    if (frame_.scale() != 1) {
        text += R"(,"scale":)";
        append_triple(text, {frame_.scale(), frame_.scale(), frame_.scale()});
    }
    if (frame_.translation() != space_origin) {
        text += R"(,"translation":)";
        append_triple(text, frame_.translation());
    }
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        text.append(i == 0 ? R"(,"children":[)" : ",").append(std::to_string(i + 1));
    }
    text += parts_.empty() ? "}" : "]}";
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        text.append(R"(,{"mesh":)").append(std::to_string(i));
        if (!mesh_.parts.empty() && !mesh_.parts[parts_[i].part].name.empty()) {
            text += R"(,"name":)";
            append_json_string(text, mesh_.parts[parts_[i].part].name);
        }
        text += '}';
    }
    text += ']';
}

void GlbWriter::append_meshes(std::string& text) const {
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        text.append(i == 0 ? R"(,"meshes":[)" : ",");
        text.append(R"({"primitives":[{"attributes":{"POSITION":)").append(std::to_string(2 * i));
        text.append(R"(},"indices":)").append(std::to_string(2 * i + 1));
        if (parts_[i].material >= 0) {
            text.append(R"(,"material":)").append(std::to_string(parts_[i].material));
        }
        text += "}]}";
    }
    text += ']';
}

void GlbWriter::append_materials(std::string& text) const {
    for (std::size_t i = 0; i < materials_.size(); ++i) {
        text.append(i == 0 ? R"(,"materials":[)" : ",").append(R"({"name":)");
        append_json_string(text, colour_text(materials_[i]));
        text += R"(,"pbrMetallicRoughness":{"metallicFactor":0,"baseColorFactor":[)";
        for (const unsigned char channel :
             {materials_[i].red, materials_[i].green, materials_[i].blue}) {
            append_json_number(text, linear_light(channel));
            text += ',';
        }
        text += "1]}}";
    }
    text += materials_.empty() ? "" : "]";
}

void GlbWriter::append_accessors(std::string& text) const {
    std::size_t triangle = 0;
    text += R"(,"accessors":[)";
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        const GlbPart& part = parts_[i];
        text += i == 0 ? "" : ",";
        text.append(R"({"bufferView":0,"componentType":5126,"type":"VEC3","byteOffset":)");
        text.append(std::to_string(first_point(i) * bytes_of_point)).append(R"(,"count":)");
        text.append(std::to_string(part.point_end - first_point(i))).append(R"(,"min":)");
        append_triple(text, to_point(part.least));
        text += R"(,"max":)";
        append_triple(text, to_point(part.greatest));
        text.append(R"(},{"bufferView":1,"componentType":5125,"type":"SCALAR","byteOffset":)");
        text.append(std::to_string(triangle * bytes_of_triangle)).append(R"(,"count":)");
        text.append(std::to_string(3 * part.triangles)).append("}");
        triangle += part.triangles;
    }
    text += ']';
}

void GlbWriter::append_views(std::string& text) const {
    constexpr int array_buffer = 34962;
    constexpr int index_buffer = 34963;
    const std::string points = std::to_string(points_.size() * bytes_of_point);
    const std::string triangles = std::to_string(triangles_ * bytes_of_triangle);
    const std::size_t all = points_.size() * bytes_of_point + triangles_ * bytes_of_triangle;
    text.append(R"(,"bufferViews":[{"buffer":0,"byteLength":)").append(points);
    text.append(R"(,"target":)").append(std::to_string(array_buffer));
    text.append(R"(},{"buffer":0,"byteOffset":)").append(points);
    text.append(R"(,"byteLength":)").append(triangles);
    text.append(R"(,"target":)").append(std::to_string(index_buffer));
    text.append(R"(}],"buffers":[{"byteLength":)").append(std::to_string(all)).append("}]");
}

void GlbWriter::put_points() {
    for (const std::int32_t index : points_) {
        for (const float value : frame_.to_file(mesh_.points[static_cast<std::size_t>(index)])) {
            append_bytes(out_.text(), value);
        }
    }
}

void GlbWriter::put_triangles() {
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        for (std::size_t k = first_point(i); k < parts_[i].point_end; ++k) {
            number_[static_cast<std::size_t>(points_[k])] =
                static_cast<std::uint32_t>(k - first_point(i));
        }
        const FaceRange faces = part_faces(mesh_, parts_[i].part);
        for (std::size_t face = faces.begin; face < faces.end; ++face) {
            for (const std::int32_t corner : mesh_.face(face)) {
                append_bytes(out_.text(), number_[static_cast<std::size_t>(corner)]);
            }
        }
    }
}

// Coordinates that single precision cannot hold get an origin in their middle, of whole steps.
GlbFrame::GlbFrame(const Mesh& mesh) : grid_(mesh.placement.grid) {
    Point3 least = {};
    Point3 greatest = {};
    bool is_exact = true;
    for (std::size_t i = 0; i < mesh.points.size(); ++i) {
        const Point3 point = steps(mesh.points[i]);
        is_exact = is_exact && is_in_single_precision(point);
        for (std::size_t axis = 0; axis < 3; ++axis) {
            least[axis] = i == 0 ? point[axis] : std::min(least[axis], point[axis]);
            greatest[axis] = i == 0 ? point[axis] : std::max(greatest[axis], point[axis]);
        }
    }
    for (std::size_t axis = 0; axis < 3 && !is_exact; ++axis) {
        origin_[axis] = std::nearbyint(least[axis] / 2 + greatest[axis] / 2);
    }
}

Point3 GlbFrame::steps(const Point3& user) const {
    return grid_.is_identity() ? user : grid_.to_grid(user);
}

// Along y the numbers of the file grow as the user's, whatever the direction of the steps.
Float3 GlbFrame::to_file(const Point3& user) const {
    const Point3 from = steps(user);
    const double upward = grid_.is_y_down() ? -1 : 1;
    return {static_cast<float>(from[0] - origin_[0]), static_cast<float>(from[2] - origin_[2]),
            static_cast<float>(-upward * (from[1] - origin_[1])) + 0.0F};
}

Point3 GlbFrame::translation() const {
    const Point3 user = grid_.to_user(origin_);
    return {user[0], user[2], -user[1] + 0.0};
}

bool is_in_single_precision(const Point3& point) {
    return std::all_of(point.begin(), point.end(), [](double value) {
        return static_cast<double>(static_cast<float>(value)) == value;
    });
}

void append_triple(std::string& text, const Point3& values) {
    const char* between = "[";
    for (const double value : values) {
        text += between;
        append_json_number(text, value);
        between = ",";
    }
    text += ']';
}

Point3 to_point(const Float3& point) {
    return {point[0], point[1], point[2]};
}

} // namespace
} // namespace korvel::kit
