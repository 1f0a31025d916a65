// PLY, binary in either byte order and text: points and faces with their colours.

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <string>
#include <utility>

#include "kit/files/mesh_builder.h"
#include "kit/files/mesh_mark.h"
#include "kit/files/mesh_readers.h"
#include "kit/files/ply_values.h"
#include "kit/files/text_file.h"

namespace korvel::kit {
namespace {

/// What a property is for.
enum class PlyUse : std::size_t { x, y, z, red, green, blue, body, corners, none };

/// The properties of an element with their uses.
struct PlyColumns {
    explicit PlyColumns(const PlyElement& element);
    bool has(PlyUse use) const;
    bool have_colours() const {
        return has(PlyUse::red) && has(PlyUse::green) && has(PlyUse::blue);
    }

    std::vector<std::pair<const PlyProperty*, PlyUse>> columns;
};

class PlyReader {
public:
    PlyReader(ByteInput& input, Mesh& mesh, const PlyHeader& header)
        : input_(input), mesh_(mesh), header_(header), values_(input, header), faces_(mesh, input) {
    }
    void read();

private:
    void read_points(const PlyElement& element);
    void read_faces(const PlyElement& element);
    void read_row(const PlyColumns& columns);
    void read_corners(const PlyProperty& list);
    double colour_channel(PlyType type);
    Colour colour() const;
    void end_body(std::size_t face_end);
    void finish_bodies();

    ByteInput& input_;
    Mesh& mesh_;
    const PlyHeader& header_;
    PlyValues values_;
    FaceBuilder faces_;
    std::size_t point_count_ = 0;
    std::array<double, 7> row_ = {}; // the last one that was read, by use
    std::vector<double> bodies_;     // their numbers, in the order of the faces
};

PlyUse ply_use(const PlyProperty& property);

} // namespace

Mesh read_ply(ByteInput& input) {
    Mesh mesh;
    const PlyHeader header = read_ply_header(input, mesh);
    PlyReader(input, mesh, header).read();
    return mesh;
}

namespace {

void PlyReader::read() {
    for (const PlyElement& element : header_.elements) {
        point_count_ += element.name == "vertex" ? element.count : 0;
    }
    for (const PlyElement& element : header_.elements) {
        values_.need_room(element);
        if (element.name == "vertex") {
            read_points(element);
        } else if (element.name == "face") {
            read_faces(element);
        } else if (element.name == "tristrips") {
            values_.fail("strips of triangles, element 'tristrips', are not read");
        } else if (!element.properties.empty()) {
            for (std::size_t i = 0; i < element.count; ++i) {
                for (const PlyProperty& property : element.properties) {
                    values_.skip(property);
                }
            }
        }
    }
    values_.finish();
    finish_bodies();
}

void PlyReader::read_points(const PlyElement& element) {
    const PlyColumns columns(element);
    if (!columns.has(PlyUse::x) || !columns.has(PlyUse::y) || !columns.has(PlyUse::z)) {
        values_.fail("element 'vertex' lacks a property x, y or z");
    }
    mesh_.points.reserve(mesh_.points.size() + element.count);
    if (columns.have_colours()) {
        mesh_.point_colours.reserve(mesh_.points.capacity());
    }
    for (std::size_t i = 0; i < element.count; ++i) {
        read_row(columns);
        const Point3 point = {row_[0], row_[1], row_[2]};
        if (!std::isfinite(point[0]) || !std::isfinite(point[1]) || !std::isfinite(point[2])) {
            values_.fail("point " + std::to_string(i) +
                         " has a coordinate that is not a finite number");
        }
        mesh_.points.push_back(point);
        if (columns.have_colours()) {
            mesh_.point_colours.push_back(colour());
        }
    }
}

void PlyReader::read_faces(const PlyElement& element) {
    const PlyColumns columns(element);
    if (!columns.has(PlyUse::corners)) {
        values_.fail("element 'face' lacks a list 'vertex_indices'");
    }
    mesh_.corners.reserve(std::min(3 * element.count, input_.most_left()));
    if (columns.have_colours()) {
        mesh_.face_colours.reserve(element.count);
    }
    const bool have_bodies = mesh_.parts_are_bodies && columns.has(PlyUse::body);
    constexpr auto body = static_cast<std::size_t>(PlyUse::body);
    for (std::size_t i = 0; i < element.count; ++i) {
        read_row(columns);
        if (have_bodies && (bodies_.empty() || row_[body] != bodies_.back())) {
            end_body(faces_.count());
            bodies_.push_back(row_[body]);
        }
        if (faces_.end_face() && columns.have_colours()) {
            mesh_.face_colours.push_back(colour());
        }
    }
    end_body(mesh_.face_count());
    faces_.finish(input_);
}

void PlyReader::read_row(const PlyColumns& columns) {
    for (const auto& [property, use] : columns.columns) {
        const auto place = static_cast<std::size_t>(use);
        switch (use) {
        case PlyUse::none:
            values_.skip(*property);
            break;
        case PlyUse::corners:
            read_corners(*property);
            break;
        case PlyUse::red:
        case PlyUse::green:
        case PlyUse::blue:
            row_[place] = colour_channel(property->type);
            break;
        default:
            row_[place] = values_.next(property->type, "a coordinate");
        }
    }
}

void PlyReader::read_corners(const PlyProperty& list) {
    const std::size_t length = values_.next_length(list);
    for (std::size_t i = 0; i < length; ++i) {
        const double index = values_.next(list.type, "the index of a point");
        if (!(index >= 0) || index >= static_cast<double>(point_count_) ||
            index != std::floor(index)) {
            values_.fail("the index of a point is " + shortest_digits(index) +
                         ", out of range: there are " + std::to_string(point_count_) + " points");
        }
        faces_.add_corner(static_cast<std::int32_t>(index));
    }
}

// From 0 to 255. Colours in floating point go to 1.
double PlyReader::colour_channel(PlyType type) {
    const double value = values_.next(type, "a colour");
    const double scale = is_integer(type) ? (size_of(type) == 2 ? 1.0 / 257 : 1.0) : 255.0;
    return value >= 0 ? std::min(std::round(value * scale), 255.0) : 0;
}

Colour PlyReader::colour() const {
    const auto channel = [&](PlyUse use) {
        return static_cast<unsigned char>(row_[static_cast<std::size_t>(use)]);
    };
    return {channel(PlyUse::red), channel(PlyUse::green), channel(PlyUse::blue)};
}

// A body whose faces were all dropped is none.
void PlyReader::end_body(std::size_t face_end) {
    if (face_end > (mesh_.parts.empty() ? 0 : mesh_.parts.back().face_end) && !bodies_.empty()) {
        mesh_.parts.push_back({.face_end = face_end});
    }
}

// Bodies whose faces are not together, as another program may leave them, are none. One whose faces
// have one colour has it itself.
void PlyReader::finish_bodies() {
    const std::set<double> different(bodies_.begin(), bodies_.end());
    if (bodies_.empty() || different.size() < bodies_.size()) {
        mesh_.parts.clear();
        mesh_.parts_are_bodies = false;
        return;
    }
    if (mesh_.face_colours.empty()) {
        return;
    }
    bool have_one = true;
    for (std::size_t part = 0; part < mesh_.parts.size(); ++part) {
        const FaceRange faces = part_faces(mesh_, part);
        const auto first = mesh_.face_colours.begin() + static_cast<std::ptrdiff_t>(faces.begin);
        const auto end = mesh_.face_colours.begin() + static_cast<std::ptrdiff_t>(faces.end);
        if (first != end && std::all_of(first, end, [&](const Colour& c) { return c == *first; })) {
            mesh_.parts[part].colour = *first;
        } else {
            have_one = false;
        }
    }
    mesh_.point_colours = {}; // which repeat those of the faces
    if (have_one) {
        mesh_.face_colours = {};
    }
}

PlyColumns::PlyColumns(const PlyElement& element) {
    columns.reserve(element.properties.size());
    for (const PlyProperty& property : element.properties) {
        const PlyUse use = ply_use(property);
        const bool fits = use != PlyUse::corners || element.name == "face";
        columns.emplace_back(&property, fits && !has(use) ? use : PlyUse::none);
    }
}

bool PlyColumns::has(PlyUse use) const {
    return std::any_of(columns.begin(), columns.end(),
                       [&](const auto& column) { return column.second == use; });
}

PlyUse ply_use(const PlyProperty& property) {
    constexpr std::pair<std::string_view, PlyUse> uses[] = {
        {"x", PlyUse::x},
        {"y", PlyUse::y},
        {"z", PlyUse::z},
        {"red", PlyUse::red},
        {"green", PlyUse::green},
        {"blue", PlyUse::blue},
        {"diffuse_red", PlyUse::red},
        {"diffuse_green", PlyUse::green},
        {"diffuse_blue", PlyUse::blue},
        {"body", PlyUse::body},
        {"vertex_indices", PlyUse::corners},
        {"vertex_index", PlyUse::corners},
    };
    for (const auto& [name, use] : uses) {
        const bool is_list = property.count_type.has_value();
        if (property.name == name && is_list == (use == PlyUse::corners) &&
            (is_integer(property.type) || use != PlyUse::body)) {
            return use;
        }
    }
    return PlyUse::none;
}

} // namespace
} // namespace korvel::kit
