// PLY, binary in little-endian byte order and text: points in single precision if that holds them,
// bodies by number, colours of points and faces.

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "kit/files/byte_order.h"
#include "kit/files/mesh_colours.h"
#include "kit/files/mesh_mark.h"
#include "kit/files/mesh_readers.h"
#include "kit/files/text_output.h"

namespace korvel::kit {
namespace {

class PlyWriter {
public:
    PlyWriter(const Mesh& mesh, bool as_text, OutputFile& out);
    void write();

private:
    void put_header();
    void put_point(std::size_t index);
    void put_face(std::size_t index, std::size_t part);
    void put_colour(std::string& text, const Colour& colour);
    template <class Number>
    void put_number(std::string& text, Number number);
    void end_row(std::string& text);

    const Mesh& mesh_;
    bool is_text_;
    TextOutput out_;
    bool is_single_;     // precision
    bool is_short_list_; // of the corners of every face
    std::vector<Colour> point_colours_;
    std::vector<Colour> face_colours_;
};

bool fits_single_precision(const std::vector<Point3>& points);
std::size_t most_corners(const Mesh& mesh);

} // namespace

void write_ply(const Mesh& mesh, bool as_text, OutputFile& out) {
    PlyWriter(mesh, as_text, out).write();
}

namespace {

PlyWriter::PlyWriter(const Mesh& mesh, bool as_text, OutputFile& out)
    : mesh_(mesh), is_text_(as_text), out_(out), is_single_(fits_single_precision(mesh.points)),
      is_short_list_(most_corners(mesh) < 256), face_colours_(colours_of_faces(mesh)) {
    point_colours_ = colours_of_points(mesh, face_colours_);
}

void PlyWriter::write() {
    put_header();
    for (std::size_t i = 0; i < mesh_.points.size(); ++i) {
        put_point(i);
    }
    for (std::size_t part = 0; part < part_count(mesh_); ++part) {
        const FaceRange faces = part_faces(mesh_, part);
        for (std::size_t face = faces.begin; face < faces.end; ++face) {
            put_face(face, part);
        }
    }
}

void PlyWriter::put_header() {
    constexpr const char* colours =
        "property uchar red\nproperty uchar green\nproperty uchar blue\n";
    out_.put("ply\nformat ").put(is_text_ ? "ascii" : "binary_little_endian").put(" 1.0\n");
    for (const std::string& line : mesh_mark(mesh_)) {
        out_.put("comment ").put(line).put("\n");
    }
    out_.put("element vertex ").put_number(mesh_.points.size()).put("\n");
    for (const char* axis : {"x", "y", "z"}) {
        out_.put("property ").put(is_single_ ? "float " : "double ").put(axis).put("\n");
    }
    out_.put(point_colours_.empty() ? "" : colours);
    out_.put("element face ").put_number(mesh_.face_count());
    out_.put("\nproperty list ")
        .put(is_short_list_ ? "uchar" : "uint")
        .put(" int vertex_indices\n");
    out_.put(face_colours_.empty() ? "" : colours);
    out_.put(mesh_.parts_are_bodies ? "property int body\n" : "").put("end_header\n");
}

void PlyWriter::put_point(std::size_t index) {
    std::string& text = out_.text();
    for (const double coordinate : mesh_.points[index]) {
        if (is_single_) {
            put_number(text, static_cast<float>(coordinate));
        } else {
            put_number(text, coordinate);
        }
    }
    if (!point_colours_.empty()) {
        put_colour(text, point_colours_[index]);
    }
    end_row(text);
}

void PlyWriter::put_face(std::size_t index, std::size_t part) {
    std::string& text = out_.text();
    const auto corners = mesh_.face(index);
    if (is_short_list_) {
        put_number(text, static_cast<std::uint8_t>(corners.size()));
    } else {
        put_number(text, static_cast<std::uint32_t>(corners.size()));
    }
    for (const std::int32_t corner : corners) {
        put_number(text, corner);
    }
    if (!face_colours_.empty()) {
        put_colour(text, face_colours_[index]);
    }
    if (mesh_.parts_are_bodies) {
        put_number(text, static_cast<std::int32_t>(part));
    }
    end_row(text);
}

void PlyWriter::put_colour(std::string& text, const Colour& colour) {
    put_number(text, colour.red);
    put_number(text, colour.green);
    put_number(text, colour.blue);
}

template <class Number>
void PlyWriter::put_number(std::string& text, Number number) {
    if (is_text_) {
        append_digits(text, number);
        text += ' ';
    } else {
        append_bytes(text, number);
    }
}

void PlyWriter::end_row(std::string& text) {
    if (is_text_) {
        text.back() = '\n';
    }
}

bool fits_single_precision(const std::vector<Point3>& points) {
    return std::all_of(points.begin(), points.end(), [](const Point3& point) {
        return std::all_of(point.begin(), point.end(), [](double coordinate) {
            return static_cast<double>(static_cast<float>(coordinate)) == coordinate;
        });
    });
}

std::size_t most_corners(const Mesh& mesh) {
    std::size_t most = 3;
    for (std::size_t face = 0; face < mesh.face_ends.size(); ++face) {
        most = std::max(most, mesh.face(face).size());
    }
    return most;
}

} // namespace
} // namespace korvel::kit
