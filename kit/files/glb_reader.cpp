// Binary glTF: the triangles of all nodes of a scene, where their transforms place them, as parts.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "kit/files/byte_input.h"
#include "kit/files/glb_accessor.h"
#include "kit/files/glb_colour.h"
#include "kit/files/glb_json.h"
#include "kit/files/glb_transform.h"
#include "kit/files/mesh_mark.h"
#include "kit/files/mesh_readers.h"

namespace korvel::kit {
namespace {

/// The two chunks of a file.
struct GlbChunks {
    std::string text; // JSON
    std::vector<char> bytes;
};

class GlbReader {
public:
    GlbReader(const nlohmann::json& json, const std::vector<char>& bytes, const ByteInput& input);
    Mesh read();

private:
    /// Triangles as a node places them.
    struct Instance {
        GlbAccessor points;
        std::optional<GlbAccessor> corners; // absent: all points, three after three
        GlbTransform transform;
        MeshPart part;

        std::size_t corner_count() const { return corners ? corners->size() : points.size(); }
    };

    void refuse_features() const;
    void take_mark();
    void find_instances();
    std::vector<std::size_t> roots() const;
    void add_node(const GlbValue& node, const GlbTransform& transform);
    void add_primitive(const GlbValue& primitive, const GlbTransform& transform,
                       const std::string& name);
    std::optional<Colour> colour_of(const GlbValue& primitive) const;
    void reserve();
    void take(const Instance& instance);

    const std::vector<char>& bytes_;
    const ByteInput& input_;
    GlbValue root_;
    std::vector<Instance> instances_;
    Mesh mesh_;
};

GlbChunks read_chunks(ByteInput& input);
std::uint32_t read_word(ByteInput& input, const char* what);
void refuse_attributes(const GlbValue& attributes);

} // namespace

Mesh read_glb(ByteInput& input) {
    const GlbChunks chunks = read_chunks(input);
    const nlohmann::json json = parse_glb_json(chunks.text, input);
    return GlbReader(json, chunks.bytes, input).read();
}

namespace {

GlbChunks read_chunks(ByteInput& input) {
    if (input.peek(1) == "{") {
        input.fail_at_byte("glTF as text is not read, only the binary form (.glb)");
    }
    if (input.peek(4) != "glTF") {
        input.fail_at_byte("no binary glTF, which begins with 'glTF',");
    }
    read_word(input, "its head");
    const std::uint32_t version = read_word(input, "its head");
    if (version != 2) {
        input.fail_at_byte("version " + std::to_string(version) +
                           " of glTF is not read, only version 2,");
    }
    const std::uint32_t length_of_file = read_word(input, "its head");
    if (input.knows_size() &&
        length_of_file > static_cast<std::size_t>(input.position()) + input.most_left()) {
        input.fail_at_byte("the head states " + std::to_string(length_of_file) +
                           " bytes, and the file ends before: only " +
                           std::to_string(input.most_left()) + " follow");
    }
    constexpr std::uint32_t json_chunk = 0x4E4F534A;
    constexpr std::uint32_t binary_chunk = 0x004E4942;
    GlbChunks chunks;
    for (bool is_first = true;
         is_first || (chunks.bytes.empty() && input.position() < std::int64_t{length_of_file});
         is_first = false) {
        const std::uint32_t length = read_word(input, "the head of a chunk");
        const std::uint32_t type = read_word(input, "the head of a chunk");
        if (is_first != (type == json_chunk)) {
            input.fail_at_byte(is_first ? "the first chunk is not the JSON text"
                                        : "a second chunk of JSON text");
        }
        if (length > input.most_left()) {
            input.fail_at_byte("a chunk of " + std::to_string(length) +
                               " bytes, which are more than the file contains,");
        }
        std::vector<char> chunk(length);
        input.read(chunk.data(), length, "a chunk");
        if (is_first) {
            chunks.text.assign(chunk.begin(), chunk.end());
        } else if (type == binary_chunk) {
            chunks.bytes = std::move(chunk);
        }
    }
    return chunks;
}

std::uint32_t read_word(ByteInput& input, const char* what) {
    std::array<unsigned char, 4> bytes = {};
    input.read(bytes.data(), bytes.size(), what);
    return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8U |
           static_cast<std::uint32_t>(bytes[2]) << 16U |
           static_cast<std::uint32_t>(bytes[3]) << 24U;
}

GlbReader::GlbReader(const nlohmann::json& json, const std::vector<char>& bytes,
                     const ByteInput& input)
    : bytes_(bytes), input_(input), root_(json, input.name()) {}

Mesh GlbReader::read() {
    refuse_features();
    take_mark();
    find_instances();
    reserve();
    for (const Instance& instance : instances_) {
        input_.context().stop_if_requested("reading a mesh");
        take(instance);
    }
    if (const Grid& grid = mesh_.placement.grid; mesh_.parts_are_bodies && !grid.is_identity()) {
        for (Point3& point : mesh_.points) {
            point =
                grid.to_user(grid.to_grid(point)); // without the rounding errors of the transform
        }
    }
    return std::move(mesh_);
}

void GlbReader::refuse_features() const {
    if (const GlbValue version = root_.member("asset").member("version");
        !version.text().starts_with("2.")) {
        version.fail("'" + version.text() + "', where version 2 is read");
    }
    if (root_.size("extensionsRequired") > 0) {
        const GlbValue extension = root_.member("extensionsRequired").element(0);
        extension.fail("the extension '" + extension.text() + "' is not read");
    }
    for (const char* const feature : {"animations", "skins", "cameras", "textures", "images"}) {
        if (root_.size(feature) > 0) {
            root_.fail(std::string(feature) +
                       " are not read, only triangles with colours of their materials");
        }
    }
    for (std::size_t i = 0; i < root_.size("buffers"); ++i) {
        const GlbValue buffer = root_.member("buffers").element(i);
        if (i > 0 || buffer.find("uri")) {
            buffer.fail("a buffer outside the file is not read");
        }
        if (buffer.member("byteLength").whole() > bytes_.size()) {
            buffer.fail("the buffer is longer than the binary chunk of " +
                        std::to_string(bytes_.size()) + " bytes");
        }
    }
}

void GlbReader::take_mark() {
    const auto extras = root_.member("asset").find("extras");
    if (!extras || !extras->json().is_object() || !extras->json().contains("korvel") ||
        !extras->json()["korvel"].is_object()) {
        return;
    }
    const nlohmann::json& mark = extras->json()["korvel"];
    const auto model = mark.find("model");
    mesh_.parts_are_bodies = model != mark.end() && *model == true;
    if (const auto placement = mark.find("placement");
        placement != mark.end() && placement->is_string()) {
        take_mesh_mark(placement->get<std::string>(), mesh_);
    }
}

// In the order of the file, each node before its children.
void GlbReader::find_instances() {
    struct Visit {
        std::size_t node;
        GlbTransform transform;
    };
    const std::size_t count = root_.size("nodes");
    std::vector<bool> is_visited(count, false);
    std::vector<Visit> open;
    for (const std::size_t node : roots()) {
        open.push_back({node, {}});
    }
    std::reverse(open.begin(), open.end());
    while (!open.empty()) {
        const Visit visit = open.back();
        open.pop_back();
        const GlbValue node = root_.member("nodes").element(visit.node);
        if (is_visited[visit.node]) {
            node.fail("the node is the child of several, or of itself");
        }
        is_visited[visit.node] = true;
        const GlbTransform transform = visit.transform.after(glb_transform(node));
        add_node(node, transform);
        for (std::size_t i = node.size("children"); i-- > 0;) {
            open.push_back({node.member("children").element(i).whole(), transform});
        }
    }
}

// Of the scene that the file selects, or of its first one; without scenes all that have no parents.
std::vector<std::size_t> GlbReader::roots() const {
    std::vector<std::size_t> found;
    if (root_.size("scenes") > 0) {
        const GlbValue scene = root_.member("scenes").element(root_.whole("scene", 0));
        found.reserve(scene.size("nodes"));
        for (std::size_t i = 0; i < scene.size("nodes"); ++i) {
            found.push_back(scene.member("nodes").element(i).whole());
        }
        return found;
    }
    std::vector<bool> has_parent(root_.size("nodes"), false);
    for (std::size_t i = 0; i < has_parent.size(); ++i) {
        const GlbValue node = root_.member("nodes").element(i);
        for (std::size_t k = 0; k < node.size("children"); ++k) {
            if (const std::size_t child = node.member("children").element(k).whole();
                child < has_parent.size()) {
                has_parent[child] = true;
            }
        }
    }
    for (std::size_t i = 0; i < has_parent.size(); ++i) {
        if (!has_parent[i]) {
            found.push_back(i);
        }
    }
    return found;
}

void GlbReader::add_node(const GlbValue& node, const GlbTransform& transform) {
    if (const auto extensions = node.find("extensions");
        extensions && extensions->find("EXT_mesh_gpu_instancing")) {
        extensions->fail("the extension 'EXT_mesh_gpu_instancing' is not read");
    }
    const auto number = node.find("mesh");
    if (!number) {
        return;
    }
    const GlbValue mesh = root_.member("meshes").element(number->whole());
    const auto own_name = node.find("name");
    const auto name = own_name ? own_name : mesh.find("name");
    const GlbValue primitives = mesh.member("primitives");
    for (std::size_t i = 0; i < primitives.size(); ++i) {
        add_primitive(primitives.element(i), transform, name ? name->text() : "");
    }
}

void GlbReader::add_primitive(const GlbValue& primitive, const GlbTransform& transform,
                              const std::string& name) {
    constexpr std::size_t triangles = 4;
    if (const std::size_t mode = primitive.whole("mode", triangles); mode != triangles) {
        constexpr std::array modes = {"points", "lines",          "a line loop",   "a line strip",
                                      "",       "triangle strip", "a triangle fan"};
        primitive.fail("mode " + std::to_string(mode) +
                       (mode < modes.size() ? std::string(" (") + modes[mode] + ")" : "") +
                       " is not read, only mode 4 (triangles)");
    }
    if (primitive.find("targets")) {
        primitive.fail("morph targets are not read");
    }
    const GlbValue attributes = primitive.member("attributes");
    refuse_attributes(attributes);
    Instance instance = {GlbAccessor(root_, attributes.member("POSITION").whole(), bytes_, true),
                         {},
                         transform,
                         {.name = name, .colour = colour_of(primitive)}};
    if (const auto indices = primitive.find("indices")) {
        instance.corners.emplace(root_, indices->whole(), bytes_, false);
    }
    if (instance.corner_count() % 3 != 0) {
        primitive.fail(std::to_string(instance.corner_count()) +
                       " corners, which is no multiple of 3");
    }
    instances_.push_back(std::move(instance));
}

void refuse_attributes(const GlbValue& attributes) {
    for (const auto& [name, value] : attributes.json().items()) {
        if (name.starts_with("JOINTS_") || name.starts_with("WEIGHTS_")) {
            attributes.fail("the skin's attribute '" + name + "' is not read");
        }
    }
}

// White, with which glTF begins, if the material states no colour.
std::optional<Colour> GlbReader::colour_of(const GlbValue& primitive) const {
    const auto number = primitive.find("material");
    if (!number) {
        return {};
    }
    const GlbValue material = root_.member("materials").element(number->whole());
    const auto surface = material.find("pbrMetallicRoughness");
    const auto factor = surface ? surface->find("baseColorFactor") : std::nullopt;
    if (!factor) {
        return Colour{255, 255, 255};
    }
    const std::vector<double> light = factor->numbers(4);
    return Colour{screen_channel(light[0]), screen_channel(light[1]), screen_channel(light[2])};
}

// Nodes may share what they contain: their copies are limited by the size of the file.
void GlbReader::reserve() {
    std::uint64_t points = 0;
    std::uint64_t corners = 0;
    for (const Instance& instance : instances_) {
        points += instance.points.size();
        corners += instance.corner_count();
    }
    constexpr std::uint64_t most_copies = 256;
    constexpr std::uint64_t always_allowed = 1U << 28U;
    const std::uint64_t most = most_copies * static_cast<std::uint64_t>(input_.position());
    const std::uint64_t needed = points * sizeof(Point3) + corners * sizeof(std::int32_t);
    constexpr std::uint64_t largest = std::numeric_limits<std::int32_t>::max();
    if (points > largest || corners > largest || needed > std::max(most, always_allowed)) {
        root_.fail("the nodes make " + std::to_string(corners / 3) +
                   " triangles, too many for a file of " + std::to_string(input_.position()) +
                   " bytes");
    }
    mesh_.points.reserve(points);
    mesh_.corners.reserve(corners);
    mesh_.parts.reserve(instances_.size());
}

void GlbReader::take(const Instance& instance) {
    const auto first = static_cast<std::int32_t>(mesh_.points.size());
    for (std::size_t i = 0; i < instance.points.size(); ++i) {
        const Point3 at = instance.transform(instance.points.point(i));
        // y is up in glTF, z here.
        const Point3 point = {at[0], -at[2] + 0.0, at[1]};
        if (!std::all_of(point.begin(), point.end(), [](double c) { return std::isfinite(c); })) {
            instance.points.fail("the coordinates of point " + std::to_string(i) +
                                 " are no finite numbers");
        }
        mesh_.points.push_back(point);
    }
    for (std::size_t i = 0; i < instance.corner_count(); ++i) {
        const std::size_t corner = instance.corners ? instance.corners->index(i) : i;
        if (corner >= instance.points.size()) {
            instance.corners->fail("index " + std::to_string(corner) + " is not one of " +
                                   std::to_string(instance.points.size()) + " points");
        }
        mesh_.corners.push_back(first + static_cast<std::int32_t>(corner));
    }
    if (instance.transform.is_mirroring()) {
        const auto begin =
            static_cast<std::ptrdiff_t>(mesh_.corners.size() - instance.corner_count());
        for (auto face = mesh_.corners.begin() + begin; face != mesh_.corners.end(); face += 3) {
            std::swap(face[1], face[2]);
        }
    }
    mesh_.parts.push_back(instance.part);
    mesh_.parts.back().face_end = mesh_.corners.size() / 3;
}

} // namespace
} // namespace korvel::kit
