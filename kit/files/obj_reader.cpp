// OBJ: points and faces; objects, groups and materials begin parts.

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "kit/base/error.h"
#include "kit/files/mesh_builder.h"
#include "kit/files/mesh_mark.h"
#include "kit/files/mesh_readers.h"
#include "kit/files/mtl_reader.h"
#include "kit/files/text_file.h"
#include "kit/files/text_scan.h"

namespace korvel::kit {
namespace {

class ObjReader {
public:
    ObjReader(ByteInput& input, const std::filesystem::path& folder);
    Mesh read();

private:
    void read_statement(std::string_view word);
    void take_comment(std::string_view word);
    void take_point();
    void take_face();
    void take_corner(std::string_view word);
    void end_part();
    void skip(std::string_view word);
    void finish();
    std::string rest_as_name();

    ByteInput& input_;
    const std::filesystem::path& folder_;
    TextScan scan_;
    Mesh mesh_;
    FaceBuilder faces_;
    ListGrowth growth_;
    std::string name_;                     // of the part that is being read
    std::string material_;                 // in use
    std::vector<std::string> material_of_; // of the parts
    Materials materials_;
    std::int64_t greatest_index_ = -1; // of those beyond the points before the face
    int greatest_line_ = 0;
    bool has_other_elements_ = false;
};

// What is not part of a surface of faces, and can be skipped: normals and textures, how the surface
// looks, and curves.
constexpr std::array<std::string_view, 36> skipped = {
    "vn",       "vt",         "vp",        "s",     "mg",    "lod",    "bevel",  "c_interp",
    "d_interp", "shadow_obj", "trace_obj", "ctech", "stech", "usemap", "maplib", "cstype",
    "deg",      "bmat",       "step",      "parm",  "trim",  "hole",   "scrv",   "sp",
    "end",      "con",        "l",         "p",     "curv",  "curv2",  "surf",   "call",
    "csh",      "bsp",        "bzp",       "cdc"};
constexpr std::array<std::string_view, 5> elements = {"l", "p", "curv", "curv2", "surf"};

} // namespace

Mesh read_obj(ByteInput& input, const std::filesystem::path& folder) {
    return ObjReader(input, folder).read();
}

namespace {

ObjReader::ObjReader(ByteInput& input, const std::filesystem::path& folder)
    : input_(input), folder_(folder), scan_(input), faces_(mesh_, input), growth_(input) {}

Mesh ObjReader::read() {
    if (std::array<char, 3> byte_order_mark = {}; input_.peek(3) == "\xEF\xBB\xBF") {
        input_.read(byte_order_mark.data(), byte_order_mark.size(), "");
    }
    while (scan_.next_line()) {
        read_statement(scan_.word());
    }
    finish();
    return std::move(mesh_);
}

void ObjReader::read_statement(std::string_view word) {
    if (word == "v") {
        take_point();
    } else if (word == "f" || word == "fo") { // an old name of faces
        take_face();
    } else if (word.front() == '#') {
        take_comment(word);
    } else if (word == "o" || word == "g") {
        end_part();
        name_ = rest_as_name();
    } else if (word == "usemtl") {
        if (std::string name = rest_as_name(); name != material_) {
            end_part();
            material_ = std::move(name);
        }
    } else if (word == "mtllib") {
        const std::string library(scan_.rest());
        if (!folder_.empty()) {
            read_materials(library, folder_, input_.name(), input_.context(), materials_);
        }
    } else {
        skip(word);
    }
}

// The writer marks bodies whose names are only those that other programs need.
void ObjReader::take_comment(std::string_view word) {
    std::string comment(word.substr(1));
    comment.append(" ").append(scan_.rest());
    take_mesh_mark(comment, mesh_);
    if (comment == " unnamed" && mesh_.parts_are_bodies) {
        name_.clear();
    }
}

// Three coordinates, of which a weight may follow, or a colour.
void ObjReader::take_point() {
    if (mesh_.points.size() == std::numeric_limits<std::int32_t>::max()) {
        input_.fail("more than 2147483647 points");
    }
    Point3 point = {};
    point[0] = scan_.number("the x of a point");
    point[1] = scan_.number("the y of a point");
    point[2] = scan_.number("the z of a point");
    growth_.add(mesh_.points, point);
    if (scan_.at_line_end()) {
        return;
    }
    std::array<double, 3> shares = {};
    std::size_t count = 0;
    for (; !scan_.at_line_end() && count < shares.size(); ++count) {
        TextScan ahead = scan_;
        if (ahead.word().front() == '#') {
            break;
        }
        shares[count] = scan_.number("the colour of a point");
    }
    if (count == shares.size() && mesh_.point_colours.size() + 1 == mesh_.points.size()) {
        growth_.add(mesh_.point_colours,
                    Colour{colour_channel(shares[0]), colour_channel(shares[1]),
                           colour_channel(shares[2])});
    }
}

// A backslash continues the face in the next line.
void ObjReader::take_face() {
    int corners = 0;
    for (;;) {
        const std::string_view word = scan_.word();
        if (word == "\\") {
            if (!scan_.next_line()) {
                input_.fail("the file ends within a face");
            }
        } else if (word.empty() || word.front() == '#') {
            break;
        } else {
            take_corner(word);
            ++corners;
        }
    }
    if (corners == 0) {
        input_.fail("a face without corners");
    }
    faces_.end_face();
}

// "7", "7/1", "7/1/2" or "7//2": the number of a point from 1, or from the last one back if it is
// negative; those of its texture and normal are not used.
void ObjReader::take_corner(std::string_view word) {
    constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
    const char* const end = word.data() + word.size();
    std::int64_t number = 0;
    const auto [stop, error] = std::from_chars(word.data(), end, number);
    const bool has_more = stop != end;
    if (error != std::errc() || (has_more && *stop != '/') ||
        (has_more &&
         std::string_view(stop, end).find_first_not_of("0123456789/-") != std::string_view::npos)) {
        input_.fail(quoted(word) + " is not a corner of a face", word);
    }
    const auto points = static_cast<std::int64_t>(mesh_.points.size());
    const std::int64_t index = number < 0 ? points + number : number - 1;
    if (number == 0 || index < 0 || index >= most) {
        input_.fail("corner " + std::string(word) + " of a face is not one of " +
                        std::to_string(points) + " points",
                    word);
    }
    // The point may follow.
    if (index >= points && index > greatest_index_) {
        greatest_index_ = index;
        greatest_line_ = input_.line();
    }
    faces_.add_corner(static_cast<std::int32_t>(index));
}

void ObjReader::end_part() {
    const std::size_t before = mesh_.parts.empty() ? 0 : mesh_.parts.back().face_end;
    if (mesh_.face_count() > before) {
        mesh_.parts.push_back({.name = name_, .face_end = mesh_.face_count()});
        material_of_.push_back(material_);
    }
}

void ObjReader::skip(std::string_view word) {
    if (std::find(skipped.begin(), skipped.end(), word) == skipped.end()) {
        input_.fail(quoted(word) + " is no statement of OBJ", word);
    }
    has_other_elements_ =
        has_other_elements_ || std::find(elements.begin(), elements.end(), word) != elements.end();
    while (scan_.rest().ends_with('\\') && scan_.next_line()) {
    }
}

void ObjReader::finish() {
    end_part();
    faces_.finish(input_);
    const std::string& file = input_.name();
    if (greatest_index_ >= static_cast<std::int64_t>(mesh_.points.size())) {
        const std::string value = std::to_string(greatest_index_ + 1);
        throw input_error(file + ":" + std::to_string(greatest_line_) + ": corner " + value +
                              " of a face is not one of " + std::to_string(mesh_.points.size()) +
                              " points",
                          {.file = file, .line = greatest_line_, .value = value});
    }
    if (has_other_elements_) {
        input_.context().warn(file + ": points, lines, curves and surfaces that are no faces are "
                                     "left out");
    }
    if (mesh_.point_colours.size() != mesh_.points.size()) {
        if (!mesh_.point_colours.empty()) {
            input_.context().warn(file + ": colours that only some points have are left out");
        }
        mesh_.point_colours.clear();
    }
    for (std::size_t part = 0; part < mesh_.parts.size(); ++part) {
        if (const auto found = materials_.find(material_of_[part]); found != materials_.end()) {
            mesh_.parts[part].colour = found->second;
        }
    }
    if (mesh_.parts.size() == 1 && !mesh_.parts_are_bodies && mesh_.parts[0].name.empty() &&
        !mesh_.parts[0].colour) {
        mesh_.parts.clear();
    }
}

// Each part has its own copy.
std::string ObjReader::rest_as_name() {
    constexpr std::size_t longest = 1000;
    const std::string_view name = scan_.rest();
    if (name.size() > longest) {
        input_.fail("a name of more than 1000 bytes");
    }
    return std::string(name);
}

} // namespace
} // namespace korvel::kit
