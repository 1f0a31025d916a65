// Merging of models, removal of bodies, and of what no body uses.

#include <vector>

#include "korvel/base/indices.h"
#include "korvel/body/derive/derivation.h"
#include "korvel/body/derive/edge_chains.h"

using korvel::has_element;

namespace {

void shift_indices(CArray<int>& list, int by) {
    for (int& index : list) {
        index = korvel::shifted_index(index, by);
    }
}

/// The new number of each record that is used, in the old order, and −1 for the others.
/// `each_use(use)` calls `use(index)` for whatever is used.
template <class EachUse>
std::vector<int> number_used(int records, EachUse each_use) {
    std::vector<int> numbers(static_cast<std::size_t>(records), -1);
    each_use([&](int index) {
        if (index >= 0 && index < records) {
            numbers[index] = 0;
        }
    });
    int next = 0;
    for (int& number : numbers) {
        if (number >= 0) {
            number = next++;
        }
    }
    return numbers;
}

/// Removes the records without a number.
template <class Records>
void keep_numbered(Records& records, const std::vector<int>& numbers) {
    std::size_t index = 0;
    korvel::remove_elements(records, [&](const auto&) { return numbers[index++] < 0; });
}

void renumber(CArray<int>& list, const std::vector<int>& numbers) {
    for (int& index : list) {
        if (index >= 0 && static_cast<std::size_t>(index) < numbers.size()) {
            index = numbers[index];
        }
    }
}

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
    }
    bodies.SetSize(first_body + new_bodies);
    for (int k = 0; k < new_bodies; ++k) {
        bodies[first_body + k] = m.bodies[k];
        shift_indices(bodies[first_body + k].polys, first_face);
    }

    korvel::find_all_sides(*this, first_face, korvel::Chains::of_both);
    // On their own first, which decides how faces are turned that bodies share.
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
    const std::vector<int> face_numbers = number_used(polys.GetSize(), [&](auto use) {
        for (const BODY3D& body : bodies) {
            std::for_each(body.polys.begin(), body.polys.end(), use);
        }
    });
    keep_numbered(polys, face_numbers);
    for (BODY3D& body : bodies) {
        renumber(body.polys, face_numbers);
    }

    const std::vector<int> vertex_numbers = number_used(verts.GetSize(), [&](auto use) {
        for (const POLY3D& face : polys) {
            std::for_each(face.verts.begin(), face.verts.end(), use);
        }
    });
    keep_numbered(verts, vertex_numbers);
    for (POLY3D& face : polys) {
        renumber(face.verts, vertex_numbers);
    }

    lines.RemoveAll();
    korvel::find_all_sides(*this, 0, korvel::Chains::of_both);
    korvel::derive_all(*this);
}
