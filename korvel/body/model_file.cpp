// The body model file.

#include <algorithm>
#include <cstddef>
#include <vector>

#include "korvel/body/body_geometry.h"
#include "korvel/body/edge_chains.h"
#include "korvel/body/tmod3d.h"
#include "korvel/geometry/list_index.h"
#include "korvel/geometry/text_reader.h"

using korvel::has_element;
using korvel::Progress;
using korvel::TextReader;

namespace {

constexpr int growth_step = 64;
constexpr int corners_read = 3; // a face in a file is a triangle, whatever was written
constexpr int indices_per_line = 20;

/// Reads up to `declared` times three numbers; false where the stream ends before.
template <class Numbers>
bool read_triples(TextReader& reader, int declared, Numbers& numbers) {
    return korvel::read_numbers(reader, 3LL * declared, numbers);
}

/// How many records of three numbers were begun.
template <class Numbers>
int begun_triples(const Numbers& numbers) {
    return static_cast<int>((numbers.size() + 2) / 3);
}

/// Vertices that stand there keep what the stream does not give.
bool read_vertices(TextReader& reader, int declared, TMOD3D& model) {
    std::vector<float> coordinates; // no wider than what is read
    const bool complete = read_triples(reader, declared, coordinates);
    model.verts.SetSize(begun_triples(coordinates));
    for (std::size_t i = 0; i < coordinates.size(); ++i) {
        model.verts[static_cast<int>(i / 3)].model_xyz[i % 3] = coordinates[i];
    }
    return complete;
}

/// Faces that stand there are added to. `is_sound` tells whether all name vertices that exist.
bool read_faces(TextReader& reader, int declared, TMOD3D& model, bool& is_sound) {
    std::vector<int> corners;
    const bool complete = read_triples(reader, declared, corners);
    const int faces = begun_triples(corners);
    model.polys.SetSize(faces);
    const int* next = corners.data();
    const int* const end = next + corners.size();
    for (POLY3D& face : model.polys) {
        CArray<int>& verts = face.verts;
        const int old_size = verts.GetSize();
        const int* const last = next + std::min<std::ptrdiff_t>(corners_read, end - next);
        verts.SetSize(old_size + static_cast<int>(last - next));
        std::copy(next, last, verts.begin() + old_size);
        next = last;
        is_sound = is_sound && std::all_of(verts.begin(), verts.end(),
                                           [&](int v) { return has_element(model.verts, v); });
    }
    return complete;
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
    const bool complete = korvel::read_numbers(reader, faces, listed);
    const int old_size = body.polys.GetSize();
    body.polys.SetSize(old_size + static_cast<int>(listed.size()));
    std::copy(listed.begin(), listed.end(), body.polys.begin() + old_size);
    return complete ? Progress::all : Progress::part;
}

bool names_only_faces(const TMOD3D& model, const BODY3D& body) {
    return std::all_of(body.polys.begin(), body.polys.end(),
                       [&](int f) { return has_element(model.polys, f); });
}

} // namespace

void TMOD3D::read_mode(FILE* stream) {
    mode_ok = 0;
    if (stream == nullptr) {
        return;
    }
    TextReader reader(stream);
    int count = 0;
    if (!reader.read(count) || count < 1) {
        return;
    }
    verts.SetSize(verts.GetSize(), growth_step);
    if (!read_vertices(reader, count, *this) || !reader.read(count)) {
        return;
    }
    if (count < 1) {
        verts.RemoveAll();
        return;
    }
    polys.SetSize(polys.GetSize(), growth_step);
    bool is_sound = true;
    if (!read_faces(reader, count, *this, is_sound) || !reader.read(count)) {
        return;
    }
    if (count < 1) {
        verts.RemoveAll();
        polys.RemoveAll();
        return;
    }
    bodies.SetSize(bodies.GetSize(), growth_step);
    if (!korvel::read_records(count, bodies,
                              [&](BODY3D& body) { return read_body(reader, body); }) ||
        !is_sound || !std::all_of(bodies.begin(), bodies.end(), [&](const BODY3D& body) {
            return names_only_faces(*this, body);
        })) {
        return;
    }

    // Turns each face against its first edge; the edge lists stay as they are.
    korvel::find_all_sides(*this, 0, korvel::Chains::of_verts);
    korvel::derive_all(*this);
    mode_ok = 1;
}

void TMOD3D::write_mode(FILE* stream) {
    if (stream == nullptr) {
        return;
    }
    std::fprintf(stream, "%d\n", verts.GetSize());
    if (verts.IsEmpty()) {
        return;
    }
    for (const VERT3D& vertex : verts) {
        for (int k = 0; k < 3; ++k) {
            std::fprintf(stream, "%f ", vertex.model_xyz[k] + orig[k]);
        }
        std::fprintf(stream, "\n");
    }
    std::fprintf(stream, "%d\n", polys.GetSize());
    if (polys.IsEmpty()) {
        return;
    }
    for (const POLY3D& face : polys) {
        for (const int v : face.verts) {
            std::fprintf(stream, "%d ", v);
        }
        std::fprintf(stream, "\n");
    }
    std::fprintf(stream, "%d\n", bodies.GetSize());
    for (const BODY3D& body : bodies) {
        std::fprintf(stream, "%d\n", body.polys.GetSize());
        std::fprintf(stream, "%f %f %f\n", body.param_1, body.param_2, body.param_3);
        for (int i = 0; i < body.polys.GetSize(); ++i) {
            std::fprintf(stream, "%d ", body.polys[i]);
            if ((i + 1) % indices_per_line == 0) {
                std::fprintf(stream, "\n");
            }
        }
        // After a full line of indices this leaves an empty one.
        std::fprintf(stream, "\n");
    }
}
