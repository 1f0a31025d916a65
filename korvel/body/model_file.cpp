// The body model file.

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "korvel/base/indices.h"
#include "korvel/base/text_reader.h"
#include "korvel/body/derive/derive_all.h"
#include "korvel/body/derive/edge_chains.h"
#include "korvel/body/derive/flat_model.h"
#include "korvel/body/derive/orientation.h"
#include "korvel/body/tmod3d.h"
#include "korvel/platform/check_point.h"

using korvel::FlatModel;
using korvel::PackedLists;
using korvel::Progress;
using korvel::TextReader;

namespace {

constexpr int growth_step = 64;

/// The numbers of the vertices and the faces as the stream contains them.
struct Numbers {
    std::vector<float> coordinates; ///< no wider than what is read
    std::vector<int> corners;
};

void store_vertices(const std::vector<float>& coordinates, TMOD3D& model);
void store_faces(const std::vector<int>& corners, TMOD3D& model);
Progress read_body(TextReader& reader, BODY3D& body);
bool make_at_once(const Numbers& numbers, TMOD3D& model);
bool is_sound(const TMOD3D& model);

void write_vertices(const TMOD3D& model, FILE* stream);
void write_faces(const TMOD3D& model, FILE* stream);
void write_body(const BODY3D& body, FILE* stream);

} // namespace

void TMOD3D::read_mode(FILE* stream) {
    mode_ok = 0;
    if (stream == nullptr) {
        return;
    }
    TextReader reader(stream);
    Numbers numbers;
    int count = 0;
    if (!reader.read(count) || count < 1) {
        return;
    }
    verts.SetSize(verts.GetSize(), growth_step);
    if (!reader.read(3LL * count, numbers.coordinates, "reading vertices") || !reader.read(count)) {
        store_vertices(numbers.coordinates, *this);
        return;
    }
    if (count < 1) {
        verts.RemoveAll();
        return;
    }
    polys.SetSize(polys.GetSize(), growth_step);
    if (!reader.read(3LL * count, numbers.corners, "reading faces") || !reader.read(count)) {
        store_vertices(numbers.coordinates, *this);
        store_faces(numbers.corners, *this);
        return;
    }
    if (count < 1) {
        verts.RemoveAll();
        polys.RemoveAll();
        return;
    }
    bodies.SetSize(bodies.GetSize(), growth_step);
    const bool is_complete = korvel::read_records(count, bodies, [&, b = 0](BODY3D& body) mutable {
        const Progress progress = read_body(reader, body);
        korvel::check_point_after(b++, count, 256, "reading bodies");
        return progress;
    });
    if (is_complete && make_at_once(numbers, *this)) {
        verts.SetSize(verts.GetSize(), growth_step);
        polys.SetSize(polys.GetSize(), growth_step);
        mode_ok = 1;
        return;
    }
    store_vertices(numbers.coordinates, *this);
    store_faces(numbers.corners, *this);
    if (!is_complete || !is_sound(*this)) {
        return;
    }
    // Each face comes to run against its first edge; the edge lists stay as they are.
    korvel::find_all_sides(*this, 0, korvel::Chains::of_verts);
    korvel::derive_all(*this);
    mode_ok = 1;
}

void TMOD3D::write_mode(FILE* stream) {
    if (stream == nullptr) {
        return;
    }
    std::fprintf(stream, "%d\n", korvel::size_of(verts));
    if (verts.IsEmpty()) {
        return;
    }
    write_vertices(*this, stream);
    std::fprintf(stream, "%d\n", korvel::size_of(polys));
    if (polys.IsEmpty()) {
        return;
    }
    write_faces(*this, stream);
    std::fprintf(stream, "%d\n", korvel::size_of(bodies));
    for (const BODY3D& body : bodies) {
        write_body(body, stream);
    }
}

namespace {

/// The number of records of three numbers that the stream contains at least in part.
template <class Values>
int begun_triples(const Values& values) {
    return static_cast<int>((values.size() + 2) / 3);
}

/// A vertex that was there before keeps coordinates that the stream does not contain.
void store_vertices(const std::vector<float>& coordinates, TMOD3D& model) {
    model.verts.SetSize(begun_triples(coordinates));
    for (std::size_t i = 0; i < coordinates.size(); ++i) {
        model.verts[static_cast<int>(i / 3)].model_xyz[i % 3] = coordinates[i];
    }
}

/// A face that was there before keeps its vertices, and the new ones are appended.
void store_faces(const std::vector<int>& corners, TMOD3D& model) {
    model.polys.SetSize(begun_triples(corners));
    constexpr int corners_read = 3; // a face in a file is a triangle, whatever was written
    const int* next = corners.data();
    const int* const end = next + corners.size();
    for (POLY3D& face : model.polys) {
        CArray<int>& verts = face.verts;
        const int old_size = verts.GetSize();
        const int* const last = next + std::min<std::ptrdiff_t>(corners_read, end - next);
        verts.SetSize(old_size + static_cast<int>(last - next));
        std::copy(next, last, begin(verts) + old_size);
        next = last;
    }
}

Progress read_body(TextReader& reader, BODY3D& body) {
    int faces = 0;
    if (!reader.read(faces)) {
        return Progress::nothing;
    }
    if (!reader.read(body.param_1) || !reader.read(body.param_2) || !reader.read(body.param_3)) {
        return Progress::part;
    }
    std::vector<int> listed;
    const bool complete = reader.read(faces, listed, "reading a body");
    const int old_size = body.polys.GetSize();
    body.polys.SetSize(old_size + static_cast<int>(listed.size()));
    std::copy(listed.begin(), listed.end(), begin(body.polys) + old_size);
    return complete ? Progress::all : Progress::part;
}

/// Makes the records of an empty model and all that is derived in one visit to each. False, with
/// nothing done, where a face lacks three different vertices or an index names nothing.
bool make_at_once(const Numbers& numbers, TMOD3D& model) {
    const int vertices = begun_triples(numbers.coordinates);
    const int faces = begun_triples(numbers.corners);
    const auto is_face = [=](int f) { return f >= 0 && f < faces; };
    const auto lists_faces = [=](const BODY3D& body) {
        return std::all_of(begin(body.polys), end(body.polys), is_face);
    };
    if (!model.verts.IsEmpty() || !model.lines.IsEmpty() || !model.polys.IsEmpty() ||
        !std::all_of(begin(model.bodies), end(model.bodies), lists_faces)) {
        return false;
    }
    auto chains = korvel::chain_triangles(numbers.corners, vertices);
    if (!chains) {
        return false;
    }
    FlatModel flat;
    flat.points.resize(static_cast<std::size_t>(vertices));
    for (std::size_t i = 0; i < numbers.coordinates.size(); ++i) {
        flat.points[i / 3].model[i % 3] = numbers.coordinates[i];
    }
    flat.edges = std::move(chains->edges);
    flat.face_verts = PackedLists(std::move(chains->verts));
    flat.face_lines = PackedLists(std::move(chains->lines));
    flat.body_faces = korvel::faces_of_bodies(model, faces);
    korvel::orient_bodies(model, flat, chains->side_lines);
    chains.reset();
    korvel::make_records_from(std::move(flat), model);
    return true;
}

/// Whether every index that faces and bodies list names something.
bool is_sound(const TMOD3D& model) {
    return std::all_of(
               begin(model.polys), end(model.polys),
               [&](const POLY3D& face) { return korvel::has_elements(model.verts, face.verts); }) &&
           std::all_of(begin(model.bodies), end(model.bodies), [&](const BODY3D& body) {
               return korvel::has_elements(model.polys, body.polys);
           });
}

void write_vertices(const TMOD3D& model, FILE* stream) {
    for (const VERT3D& vertex : model.verts) {
        for (int k = 0; k < 3; ++k) {
            std::fprintf(stream, "%f ", vertex.model_xyz[k] + model.orig[k]);
        }
        std::fprintf(stream, "\n");
    }
}

void write_faces(const TMOD3D& model, FILE* stream) {
    for (const POLY3D& face : model.polys) {
        for (const int v : face.verts) {
            std::fprintf(stream, "%d ", v);
        }
        std::fprintf(stream, "\n");
    }
}

void write_body(const BODY3D& body, FILE* stream) {
    constexpr int indices_per_line = 20;
    std::fprintf(stream, "%d\n", korvel::size_of(body.polys));
    std::fprintf(stream, "%f %f %f\n", body.param_1, body.param_2, body.param_3);
    for (int i = 0; i < body.polys.GetSize(); ++i) {
        std::fprintf(stream, "%d ", body.polys[i]);
        if ((i + 1) % indices_per_line == 0) {
            std::fprintf(stream, "\n");
        }
    }
    // After a full line of indices this writes an empty one.
    std::fprintf(stream, "\n");
}

} // namespace
