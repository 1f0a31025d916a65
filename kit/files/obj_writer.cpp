// OBJ: all points, then a group for each part; its colours are the materials of a file beside it.

#include <algorithm>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "kit/files/mesh_mark.h"
#include "kit/files/mesh_readers.h"
#include "kit/files/text_output.h"

namespace korvel::kit {
namespace {

class ObjWriter {
public:
    ObjWriter(const Mesh& mesh, bool has_materials, OutputFile& out)
        : mesh_(mesh), has_materials_(has_materials), out_(out) {}

    void write(const std::string& materials);

private:
    void put_line(std::string_view word, std::string_view text);
    void put_points();
    void put_channels(const Colour& colour);
    void put_name(std::size_t part);
    void put_faces(std::size_t part);
    void use_material(const std::optional<Colour>& colour);

    const Mesh& mesh_;
    bool has_materials_;
    TextOutput out_;
    std::string material_; // in use
};

// Of what has no colour, after something that has one.
constexpr std::string_view no_colour = "uncoloured";

std::string material_name(const std::optional<Colour>& colour);
std::string on_a_line(std::string text);
void put_share(TextOutput& out, unsigned char channel);

} // namespace

void write_obj(const Mesh& mesh, const std::string& materials, OutputFile& out) {
    ObjWriter(mesh, !materials.empty(), out).write(materials);
}

void write_mtl(const Mesh& mesh, OutputFile& out) {
    const auto is_before = [](const Colour& a, const Colour& b) {
        return colour_text(a) < colour_text(b);
    };
    std::set<Colour, decltype(is_before)> colours(is_before);
    for (const MeshPart& part : mesh.parts) {
        if (part.colour) {
            colours.insert(*part.colour);
        }
    }
    for (std::size_t face = 0; face < mesh.face_colours.size(); ++face) {
        if (face == 0 || mesh.face_colours[face] != mesh.face_colours[face - 1]) {
            colours.insert(mesh.face_colours[face]);
        }
    }
    TextOutput text(out);
    text.put("newmtl ");
    text.put(no_colour);
    text.put("\n");
    for (const Colour& colour : colours) {
        text.put("\nnewmtl ");
        text.put(material_name(colour));
        text.put("\nKd");
        for (const unsigned char channel : {colour.red, colour.green, colour.blue}) {
            put_share(text, channel);
        }
        text.put("\n");
    }
}

bool has_materials(const Mesh& mesh) {
    return !mesh.face_colours.empty() ||
           std::any_of(mesh.parts.begin(), mesh.parts.end(),
                       [](const MeshPart& part) { return part.colour.has_value(); });
}

namespace {

void ObjWriter::write(const std::string& materials) {
    for (const std::string& line : mesh_mark(mesh_)) {
        put_line("# ", line);
    }
    if (has_materials_) {
        put_line("mtllib ", on_a_line(materials));
    }
    put_points();
    for (std::size_t part = 0; part < part_count(mesh_); ++part) {
        put_name(part);
        put_faces(part);
    }
}

void ObjWriter::put_line(std::string_view word, std::string_view text) {
    out_.put(word);
    out_.put(text);
    out_.put("\n");
}

void ObjWriter::put_points() {
    for (std::size_t i = 0; i < mesh_.points.size(); ++i) {
        out_.put("v");
        for (const double coordinate : mesh_.points[i]) {
            out_.put(" ");
            out_.put_number(coordinate);
        }
        if (!mesh_.point_colours.empty()) {
            const Colour& colour = mesh_.point_colours[i];
            put_share(out_, colour.red);
            put_share(out_, colour.green);
            put_share(out_, colour.blue);
        }
        out_.put("\n");
    }
}

// Other programs expect a name: a body without one gets a name that the next line takes back.
void ObjWriter::put_name(std::size_t part) {
    if (mesh_.parts.empty()) {
        return;
    }
    const std::string name = on_a_line(mesh_.parts[part].name);
    if (!name.empty()) {
        put_line("o ", name);
    } else {
        put_line("o part_", std::to_string(part + 1));
        put_line("# ", "unnamed");
    }
}

// Bodies have one colour, so that their faces stay together.
void ObjWriter::put_faces(std::size_t part) {
    const FaceRange faces = part_faces(mesh_, part);
    const bool has_own = !mesh_.parts.empty() && mesh_.parts[part].colour;
    const bool by_face = !has_own && !mesh_.parts_are_bodies && !mesh_.face_colours.empty();
    if (has_materials_ && !by_face) {
        use_material(has_own                      ? mesh_.parts[part].colour
                     : mesh_.face_colours.empty() ? std::nullopt
                                                  : part_colour(mesh_, part));
    }
    for (std::size_t face = faces.begin; face < faces.end; ++face) {
        if (has_materials_ && by_face &&
            (face == faces.begin || mesh_.face_colours[face] != mesh_.face_colours[face - 1])) {
            use_material(mesh_.face_colours[face]);
        }
        out_.put("f");
        for (const std::int32_t corner : mesh_.face(face)) {
            out_.put(" ");
            out_.put_number(std::int64_t{corner} + 1);
        }
        out_.put("\n");
    }
}

void ObjWriter::use_material(const std::optional<Colour>& colour) {
    std::string name = material_name(colour);
    if (name != material_) {
        put_line("usemtl ", name);
        material_ = std::move(name);
    }
}

std::string material_name(const std::optional<Colour>& colour) {
    return colour ? "colour_" + colour_text(*colour).substr(1) : std::string(no_colour);
}

void put_share(TextOutput& out, unsigned char channel) {
    out.put(" ");
    out.put_number(channel / 255.0);
}

// A backslash at the end would continue the line.
std::string on_a_line(std::string text) {
    const auto is_control = [](char c) { return static_cast<unsigned char>(c) < ' '; };
    std::replace_if(text.begin(), text.end(), is_control, ' ');
    text.erase(text.find_last_not_of(" \\") + 1);
    text.erase(0, std::min(text.find_first_not_of(' '), text.size()));
    return text;
}

} // namespace
} // namespace korvel::kit
