#include "kit/files/model_file.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "kit/base/error.h"
#include "kit/files/body_names.h"
#include "kit/files/placement_line.h"

namespace korvel::kit {
namespace {

bool reads_without_doubt(const TextFile& file, TMOD3D& out);
bool has_exact_coordinates(const TMOD3D& model);
int read_model_count(WordReader& words, const char* what);
void read_vertices(WordReader& words, TMOD3D& out, RecordLines& lines);
void read_faces(WordReader& words, TMOD3D& out, RecordLines& lines);
void read_bodies(WordReader& words, TMOD3D& out, RecordLines& lines);

} // namespace

// The words are checked one by one only where the library's own reading leaves a doubt, because
// that takes as long as the reading.
std::optional<std::string> read_model(const TextFile& file, TMOD3D& out) {
    std::optional<std::string> change;
    if (!reads_without_doubt(file, out)) {
        out.RemoveAll();
        TMOD3D checked;
        WordReader words(file);
        const RecordLines lines = read_model(words, checked);
        change = message(file, first_change(checked, lines));
        out.read_mode(stream_of(file).get());
    }
    if (out.mode_ok == 0) {
        throw input_error(file.name + ": the library does not read this model");
    }
    colours_from_parameters(out);
    return change;
}

RecordLines read_model(WordReader& words, TMOD3D& out) {
    RecordLines lines;
    words.end_before_body_names();
    read_vertices(words, out, lines);
    read_faces(words, out, lines);
    read_bodies(words, out, lines);
    words.need_end("the end of the bodies");
    return lines;
}

std::optional<Finding> first_change(const TMOD3D& model, const RecordLines& lines) {
    for (int i = 0; i < model.verts.GetSize(); ++i) {
        for (const double coordinate : model.verts[i].model_xyz) {
            if (auto change = change_by_reading(coordinate, lines.points[i])) {
                return change;
            }
        }
    }
    return {};
}

void write_model(TMOD3D& model, FILE* out) {
    for (BODY3D& body : model.bodies) {
        body.param_1 = body.hue;
        body.param_2 = body.saturation;
        body.param_3 = body.lightness;
    }
    model.write_mode(out);
}

void colours_from_parameters(TMOD3D& model) {
    const auto is_part = [](double v) { return v >= 0 && v <= 1; };
    for (BODY3D& body : model.bodies) {
        if (body.param_1 > 0 && body.param_1 <= 360 && is_part(body.param_2) &&
            is_part(body.param_3)) {
            body.hue = body.param_1;
            body.saturation = body.param_2;
            body.lightness = body.param_3;
        }
    }
}

namespace {

// Whether the library has read a model, each number from a word of its own, and has left no word
// but those of names and a placement.
bool reads_without_doubt(const TextFile& file, TMOD3D& out) {
    const std::size_t end = without_body_names(without_placement(file.text)).size();
    const auto stream = stream_of(file);
    const PlainReading reading;
    out.read_mode(stream.get());
    if (out.mode_ok == 0 || !reading.is_plain() || !has_exact_coordinates(out)) {
        return false;
    }
    int last = std::getc(stream.get());
    while (is_white_space(last)) {
        last = std::getc(stream.get());
    }
    return last == EOF || std::ftell(stream.get()) - 1 == static_cast<long>(end);
}

// Whether single precision holds every whole number of the size of the coordinates.
bool has_exact_coordinates(const TMOD3D& model) {
    constexpr double first_inexact = 1 << 24;
    const auto is_small = [](double value) { return std::abs(value) < first_inexact; };
    return std::all_of(model.verts.begin(), model.verts.end(),
                       [&](const VERT3D& vertex) {
                           return std::all_of(vertex.model_xyz, vertex.model_xyz + 3, is_small);
                       }) &&
           std::all_of(model.bodies.begin(), model.bodies.end(), [&](const BODY3D& body) {
               return std::isfinite(body.param_1) && std::isfinite(body.param_2) &&
                      std::isfinite(body.param_3);
           });
}

// The library reads no model without vertices, faces or bodies.
int read_model_count(WordReader& words, const char* what) {
    const int count = words.next_count(what);
    if (count == 0) {
        words.fail(std::string(what) + " is 0, a model needs at least one");
    }
    return count;
}

void read_vertices(WordReader& words, TMOD3D& out, RecordLines& lines) {
    const int vertices = read_model_count(words, "the number of vertices");
    for (int i = 0; i < vertices; ++i) {
        if (words.at_end()) {
            words.fail_short(i, vertices, "vertices");
        }
        VERT3D& vertex = next_record(out.verts, i, vertices);
        vertex.model_xyz[0] = words.next_real("the x of a vertex");
        lines.points.push_back(words.line());
        vertex.model_xyz[1] = words.next_real("the y of a vertex");
        vertex.model_xyz[2] = words.next_real("the z of a vertex");
    }
}

void read_faces(WordReader& words, TMOD3D& out, RecordLines& lines) {
    constexpr int corners = 3; // whatever a model held, the library reads triangles
    const int faces = read_model_count(words, "the number of faces");
    bool is_remarked = false;
    for (int i = 0; i < faces; ++i) {
        if (words.at_end()) {
            words.fail_short(i, faces, "faces");
        }
        if (i > 0 && !is_remarked && words.next_line() == lines.parts.back()) {
            is_remarked = true;
            words.set_remark(" (line " + std::to_string(lines.parts.back()) +
                             " holds more than the three vertices of a face)");
        }
        read_indices(words, corners, "the vertex of a face", out.verts.GetSize(),
                     next_record(out.polys, i, faces).verts);
        lines.parts.push_back(words.line());
    }
}

void read_bodies(WordReader& words, TMOD3D& out, RecordLines& lines) {
    const int bodies = read_model_count(words, "the number of bodies");
    for (int i = 0; i < bodies; ++i) {
        if (words.at_end()) {
            words.fail_short(i, bodies, "bodies");
        }
        const int faces = words.next_count("the number of faces of a body");
        lines.wholes.push_back(words.line());
        BODY3D& body = next_record(out.bodies, i, bodies);
        body.param_1 = words.next_real("the first parameter of a body");
        body.param_2 = words.next_real("the second parameter of a body");
        body.param_3 = words.next_real("the third parameter of a body");
        read_indices(words, faces, "the face of a body", out.polys.GetSize(), body.polys);
    }
}

} // namespace
} // namespace korvel::kit
