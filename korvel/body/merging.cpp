// Merging of models, removal of bodies, and of what no body uses.

#include <algorithm>

#include "korvel/base/indices.h"
#include "korvel/base/renumbering.h"
#include "korvel/body/derive/derive_all.h"
#include "korvel/body/derive/edge_chains.h"
#include "korvel/body/derive/orientation.h"
#include "korvel/platform/check_point.h"

using korvel::has_element;

namespace {

void shift_indices(CArray<int>& list, int by);

} // namespace

void TMOD3D::add_model(TMOD3D& m) {
    const int first_vertex = verts.GetSize();
    const int first_face = polys.GetSize();
    const int first_body = bodies.GetSize();
    const int new_verts = m.verts.GetSize();
    const int new_faces = m.polys.GetSize();
    const int new_bodies = m.bodies.GetSize();

    verts.SetSize(first_vertex + new_verts);
    for (int k = 0; k < new_verts; ++k) {
        std::copy_n(m.verts[k].model_xyz, 3, verts[first_vertex + k].model_xyz);
    }
    polys.SetSize(first_face + new_faces);
    for (int k = 0; k < new_faces; ++k) {
        polys[first_face + k] = m.polys[k];
        shift_indices(polys[first_face + k].verts, first_vertex);
        korvel::check_point_after(k, new_faces, 4096, "adding faces");
    }
    bodies.SetSize(first_body + new_bodies);
    for (int k = 0; k < new_bodies; ++k) {
        bodies[first_body + k] = m.bodies[k];
        shift_indices(bodies[first_body + k].polys, first_face);
    }

    korvel::find_all_sides(*this, first_face, korvel::Chains::of_both);
    // The added bodies alone first: it decides how faces end up that several bodies share.
    for (int b = first_body; b < bodies.GetSize(); ++b) {
        korvel::orient_body(*this, b);
    }
    korvel::derive_all(*this);
    mode_ok = 1;
}

void TMOD3D::deletet(int i) {
    if (!has_element(bodies, i)) {
        return;
    }
    bodies.RemoveAt(i);
    clear_no_use_ele();
    if (bodies.IsEmpty()) {
        mode_ok = 0;
    }
}

void TMOD3D::clear_no_use_ele() {
    korvel::Renumbering face_numbers(polys.GetSize());
    for (const BODY3D& body : bodies) {
        face_numbers.use_all(body.polys);
    }
    face_numbers.number();
    face_numbers.keep_used(polys);
    for (BODY3D& body : bodies) {
        face_numbers.renumber(body.polys);
    }

    korvel::Renumbering vertex_numbers(verts.GetSize());
    for (const POLY3D& face : polys) {
        vertex_numbers.use_all(face.verts);
    }
    vertex_numbers.number();
    vertex_numbers.keep_used(verts);
    for (POLY3D& face : polys) {
        vertex_numbers.renumber(face.verts);
    }

    lines.RemoveAll();
    korvel::find_all_sides(*this, 0, korvel::Chains::of_both);
    korvel::derive_all(*this);
}

namespace {

void shift_indices(CArray<int>& list, int by) {
    for (int& index : list) {
        index = korvel::shifted_index(index, by);
    }
}

} // namespace
