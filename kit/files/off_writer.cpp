// OFF, as text, with the colours of points and faces.

#include <string>
#include <vector>

#include "kit/files/mesh_colours.h"
#include "kit/files/mesh_mark.h"
#include "kit/files/mesh_readers.h"
#include "kit/files/text_output.h"

namespace korvel::kit {
namespace {

void append_off_colour(std::string& text, const Colour& colour);

} // namespace

void write_off(const Mesh& mesh, OutputFile& out) {
    TextOutput output(out);
    const std::vector<Colour> face_colours = colours_of_faces(mesh);
    output.put(mesh.point_colours.empty() ? "OFF\n" : "COFF\n");
    output.put_number(mesh.points.size()).put(" ").put_number(mesh.face_count()).put(" 0\n");
    for (std::size_t i = 0; i < mesh.points.size(); ++i) {
        std::string& text = output.text();
        for (const double coordinate : mesh.points[i]) {
            append_digits(text, coordinate);
            text += ' ';
        }
        if (!mesh.point_colours.empty()) {
            append_off_colour(text, mesh.point_colours[i]);
            text += ' ';
        }
        text.back() = '\n';
    }
    for (std::size_t face = 0; face < mesh.face_count(); ++face) {
        std::string& text = output.text();
        append_digits(text, mesh.face(face).size());
        for (const std::int32_t corner : mesh.face(face)) {
            text += ' ';
            append_digits(text, corner);
        }
        if (!face_colours.empty()) {
            text += ' ';
            append_off_colour(text, face_colours[face]);
        }
        text += '\n';
    }
    // Some readers take no comments before the faces.
    for (const std::string& line : mesh_mark(mesh)) {
        output.put("# ").put(line).put("\n");
    }
}

namespace {

// The opacity shows that the others do not go to 1 even if none of them is above it.
void append_off_colour(std::string& text, const Colour& colour) {
    append_digits(text, colour.red);
    text += ' ';
    append_digits(text, colour.green);
    text += ' ';
    append_digits(text, colour.blue);
    text += " 255";
}

} // namespace
} // namespace korvel::kit
