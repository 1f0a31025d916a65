// The body model file.

#include <algorithm>

#include "korvel/body/edge_chains.h"
#include "korvel/body/tmod3d.h"
#include "korvel/geometry/list_index.h"
#include "korvel/geometry/text_reader.h"

using korvel::has_element;
using korvel::Progress;
using korvel::read_int;
using korvel::read_real;

namespace {

constexpr int growth_step = 64;
constexpr int corners_read = 3; // a face in a file is a triangle, whatever was written
constexpr int indices_per_line = 20;

Progress read_vertex(FILE* stream, VERT3D& vertex) {
    for (int k = 0; k < 3; ++k) {
        if (!read_real(stream, vertex.model_xyz[k])) {
            return k == 0 ? Progress::nothing : Progress::part;
        }
    }
    return Progress::all;
}

Progress read_face(FILE* stream, POLY3D& face) {
    for (int k = 0; k < corners_read; ++k) {
        int corner = 0;
        if (!read_int(stream, corner)) {
            return k == 0 ? Progress::nothing : Progress::part;
        }
        if (k == 0) {
            face.verts.SetSize(face.verts.GetSize(), corners_read);
        }
        face.add_a_vert(corner);
    }
    return Progress::all;
}

Progress read_body(FILE* stream, BODY3D& body) {
    int faces = 0;
    if (!read_int(stream, faces)) {
        return Progress::nothing;
    }
    if (!read_real(stream, body.param_1) || !read_real(stream, body.param_2) ||
        !read_real(stream, body.param_3)) {
        return Progress::part;
    }
    CArray<int> listed;
    const bool complete = korvel::read_records(std::max(faces, 0), listed, [&](int& face) {
        return read_int(stream, face) ? Progress::all : Progress::nothing;
    });
    body.polys.Append(listed);
    return complete ? Progress::all : Progress::part;
}

/// Whether every face names vertices, and every body faces, that exist.
bool has_sound_indices(const TMOD3D& model) {
    const auto names_vertex = [&](int v) { return has_element(model.verts, v); };
    const auto names_face = [&](int f) { return has_element(model.polys, f); };
    return std::all_of(model.polys.begin(), model.polys.end(),
                       [&](const POLY3D& face) {
                           return std::all_of(face.verts.begin(), face.verts.end(), names_vertex);
                       }) &&
           std::all_of(model.bodies.begin(), model.bodies.end(), [&](const BODY3D& body) {
               return std::all_of(body.polys.begin(), body.polys.end(), names_face);
           });
}

} // namespace

void TMOD3D::read_mode(FILE* stream) {
    mode_ok = 0;
    int count = 0;
    if (stream == nullptr || !read_int(stream, count) || count < 1) {
        return;
    }
    verts.SetSize(verts.GetSize(), growth_step);
    if (!korvel::read_records(count, verts,
                              [&](VERT3D& vertex) { return read_vertex(stream, vertex); }) ||
        !read_int(stream, count)) {
        return;
    }
    if (count < 1) {
        verts.RemoveAll();
        return;
    }
    polys.SetSize(polys.GetSize(), growth_step);
    if (!korvel::read_records(count, polys,
                              [&](POLY3D& face) { return read_face(stream, face); }) ||
        !read_int(stream, count)) {
        return;
    }
    if (count < 1) {
        verts.RemoveAll();
        polys.RemoveAll();
        return;
    }
    bodies.SetSize(bodies.GetSize(), growth_step);
    if (!korvel::read_records(count, bodies,
                              [&](BODY3D& body) { return read_body(stream, body); }) ||
        !has_sound_indices(*this)) {
        return;
    }

    korvel::find_all_sides(*this, 0);
    // Turns each face against its first edge; the edge lists stay as they are.
    korvel::chain_verts(*this, 0);
    comput_mode_aux_parm();
    model_wrap_cuboid();
    rotate_model();
    mode_ok = 1;
    found_top_rel();
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
