// STL, binary and text. Each face has its own corners: those of equal coordinates become one point.

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "kit/files/byte_input.h"
#include "kit/files/byte_order.h"
#include "kit/files/equal_points.h"
#include "kit/files/mesh_builder.h"
#include "kit/files/mesh_readers.h"
#include "kit/files/text_file.h"
#include "kit/files/text_scan.h"

namespace korvel::kit {
namespace {

constexpr std::size_t stl_head_size = 84; // 80 bytes of any text, and the number of faces
constexpr std::size_t stl_face_size = 50; // normal and three corners in float, two bytes

/// Collects the corners of faces.
class StlFaces {
public:
    explicit StlFaces(Mesh& mesh, const ByteInput& input) : mesh_(mesh), growth_(input) {}

    void add(const Point3& corner);

private:
    Mesh& mesh_;
    EqualPoints equal_;
    ListGrowth growth_;
};

/// The text form.
class StlText {
public:
    explicit StlText(ByteInput& input) : scan_(input), faces_(mesh_, input) {}
    Mesh read();

private:
    void read_solid();
    void read_facet();
    void expect(const char* first, const char* second = "");
    void need_line(const char* what);

    Mesh mesh_;
    TextScan scan_;
    StlFaces faces_;
    std::string_view word_; // the first of the line
};

bool is_text_stl(ByteInput& input);
Mesh read_binary_stl(ByteInput& input);
std::size_t stl_face_count(ByteInput& input);

} // namespace

Mesh read_stl(ByteInput& input) {
    return is_text_stl(input) ? StlText(input).read() : read_binary_stl(input);
}

namespace {

// Heads of binary files may begin with "solid" too, but have bytes that no text contains soon
// after.
bool is_text_stl(ByteInput& input) {
    constexpr std::size_t enough = 1024;
    std::string_view start = input.peek(enough);
    constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
    if (start.starts_with(byte_order_mark)) {
        start.remove_prefix(byte_order_mark.size());
    }
    if (std::any_of(start.begin(), start.end(),
                    [](unsigned char c) { return c < 0x20 && !is_white_space(c); })) {
        return false;
    }
    start.remove_prefix(std::min(start.find_first_not_of(white_space), start.size()));
    return is_word(start.substr(0, 5), "solid");
}

Mesh read_binary_stl(ByteInput& input) {
    const std::size_t count = stl_face_count(input);
    Mesh mesh;
    mesh.corners.reserve(3 * count);
    mesh.points.reserve(count / 2 + count / 16 + 8); // of a closed surface
    StlFaces faces(mesh, input);
    std::array<char, stl_face_size> face = {};
    for (std::size_t i = 0; i < count; ++i) {
        input.read(face.data(), face.size(), "the faces");
        for (std::size_t corner = 0; corner < 3; ++corner) {
            Point3 point = {};
            for (std::size_t axis = 0; axis < 3; ++axis) {
                const std::size_t number = 3 + 3 * corner + axis; // after the normal
                point[axis] = number_at<float>(face.data() + 4 * number);
            }
            if (!std::isfinite(point[0]) || !std::isfinite(point[1]) || !std::isfinite(point[2])) {
                input.fail_at_byte("corner " + std::to_string(corner) + " of face " +
                                   std::to_string(i) + " has a coordinate that is no number");
            }
            faces.add(point);
        }
    }
    return mesh;
}

// Of a binary file, after its head.
std::size_t stl_face_count(ByteInput& input) {
    std::array<char, stl_head_size> head = {};
    const std::string_view start = input.peek(head.size());
    if (start.size() < head.size()) {
        input.fail_at_byte("neither text STL, which begins with 'solid', nor the " +
                           std::to_string(stl_head_size) + " bytes by which binary STL begins");
    }
    input.read(head.data(), head.size(), "the head");
    const std::size_t count = number_at<std::uint32_t>(head.data() + 80);
    const std::size_t most = std::min<std::size_t>(input.most_left() / stl_face_size,
                                                   std::numeric_limits<std::int32_t>::max() / 3);
    if (count > most) {
        const std::size_t turned = number_at<std::uint32_t>(head.data() + 80, std::endian::big);
        input.fail_at_byte("no text STL, and as binary STL of " + std::to_string(count) +
                           " faces it has bytes for " + std::to_string(most) + " only" +
                           (turned == most ? ": its bytes are in reversed order" : ""));
    }
    const std::size_t rest = input.most_left() - count * stl_face_size;
    if (input.knows_size() && rest >= stl_face_size) {
        input.fail_at_byte("binary STL of " + std::to_string(count) + " faces, which " +
                           std::to_string(rest) + " more bytes follow,");
    }
    return count;
}

void StlFaces::add(const Point3& corner) {
    const std::int32_t index = equal_.find_or_add(corner, mesh_.points);
    if (static_cast<std::size_t>(index) == mesh_.points.size()) {
        growth_.add(mesh_.points, corner);
    }
    growth_.add(mesh_.corners, index);
}

Mesh StlText::read() {
    while (scan_.next_line()) {
        word_ = scan_.word();
        read_solid();
    }
    return std::move(mesh_);
}

// A file may have several, each of its own name.
void StlText::read_solid() {
    expect("solid");
    MeshPart part;
    part.name = scan_.rest();
    for (need_line("'facet' or 'endsolid'"); !is_word(word_, "endsolid");
         need_line("'facet' or 'endsolid'")) {
        read_facet();
    }
    part.face_end = mesh_.face_count();
    mesh_.parts.push_back(std::move(part));
}

// What follows "facet normal" is often wrong or no number, and given by the corners.
void StlText::read_facet() {
    expect("facet");
    need_line("'outer loop'");
    expect("outer", "loop");
    for (int corner = 0; corner < 3; ++corner) {
        need_line("'vertex'");
        expect("vertex");
        const double x = scan_.number("the x of a corner");
        const double y = scan_.number("the y of a corner");
        faces_.add({x, y, scan_.number("the z of a corner")});
    }
    need_line("'endloop'");
    expect("endloop");
    need_line("'endfacet'");
    expect("endfacet");
}

void StlText::need_line(const char* what) {
    if (!scan_.next_line()) {
        scan_.input().fail(std::string("the file ends where ") + what + " is expected");
    }
    word_ = scan_.word();
}

void StlText::expect(const char* first, const char* second) {
    const std::string_view second_word = *second == '\0' ? "" : scan_.word();
    if (!is_word(word_, first) || !is_word(second_word, second)) {
        const std::string expected =
            std::string(first).append(*second == '\0' ? "" : " ").append(second);
        scan_.input().fail(quoted(word_) + ", where '" + expected + "' is expected", word_);
    }
}

} // namespace
} // namespace korvel::kit
