#include "kit/solids/moving.h"

#include <algorithm>
#include <vector>

namespace korvel::kit {
namespace {

void add_faces_and_edges_at_vertices(TMOD3D& model);
int first_illegal_edge(TMOD3D& model);

} // namespace

void select_body(TMOD3D& model, int body) {
    model.set_body_as_relat(body);
    model.edit_state[edit_picked_vertex] = model.relat_list_2[0];
    model.edit_state[edit_picked_body] = body;
    add_faces_and_edges_at_vertices(model);
}

void select_vertex(TMOD3D& model, int vertex, int depth) {
    model.edit_state[edit_picked_vertex] = vertex;
    model.edit_state[edit_neighbourhood_depth] = depth;
    const CArray<int>& bodies = model.verts[vertex].bodies;
    model.edit_state[edit_picked_body] = bodies.IsEmpty() ? 0 : bodies[0];
    model.set_rel_triangle_vert();
}

bool is_faded(const TMOD3D& model) {
    return model.relat_list_4.GetSize() > 1; // a body has no levels
}

bool can_move(const TMOD3D& model) {
    const double* const first = model.verts[model.relat_list_2[0]].model_xyz;
    return !is_faded(model) ||
           std::any_of(model.relat_list_2.begin(), model.relat_list_2.end(), [&](int v) {
               return !std::equal(first, first + 3, model.verts[v].model_xyz);
           });
}

void move_selected(TMOD3D& model, const std::array<double, 3>& by) {
    double from[3] = {};
    double to[3] = {by[0], by[1], by[2]};
    if (is_faded(model)) {
        model.change_mut_points(move_by_weight, to, from);
    } else {
        const double* const at = model.verts[model.edit_state[edit_picked_vertex]].view_xyz;
        double onto[3] = {at[0] + by[0], at[1] + by[1], 0};
        model.change_mut_points(move_picked_onto_point, onto, from);
    }
    model.change_mut_points(move_in_depth, to, from);
}

std::optional<Collision> first_collision(TMOD3D& model) {
    if (model.legal_body_rel_side()) {
        return {};
    }
    const int e = first_illegal_edge(model);
    LINE3D& edge = model.lines[e];
    const auto is_met = [&](POLY3D& face) {
        return !face.is_composed_vert(edge.start_vert) && !face.is_composed_vert(edge.end_vert) &&
               edge.detect_line_cross_poly(face, model.verts);
    };
    int f = 0; // there is one
    while (f + 1 < model.polys.GetSize() && !is_met(model.polys[f])) {
        ++f;
    }
    return Collision{e, f};
}

namespace {

// Vertices may be shared with other bodies, whose faces and edges then move too.
void add_faces_and_edges_at_vertices(TMOD3D& model) {
    std::vector<bool> has_face(model.polys.GetSize(), false);
    std::vector<bool> has_edge(model.lines.GetSize(), false);
    const auto add = [](const CArray<int>& more, std::vector<bool>& has, CArray<int>& list) {
        for (const int i : more) {
            if (!has[i]) {
                has[i] = true;
                list.Add(i);
            }
        }
    };
    for (const int f : model.relat_list_1) {
        has_face[f] = true;
    }
    for (const int e : model.relat_list_3) {
        has_edge[e] = true;
    }
    for (const int v : model.relat_list_2) {
        add(model.verts[v].faces, has_face, model.relat_list_1);
        add(model.verts[v].lines, has_edge, model.relat_list_3);
    }
}

// Bisects the list of edges, since the library only reports whether all edges of a list are free.
int first_illegal_edge(TMOD3D& model) {
    CArray<int> all;
    all.Copy(model.relat_list_3);
    int first = 0;
    int count = all.GetSize();
    while (count > 1) {
        const int half = count / 2;
        model.relat_list_3.SetSize(half);
        std::copy_n(all.begin() + first, half, model.relat_list_3.begin());
        if (model.legal_body_rel_side()) {
            first += half;
            count -= half;
        } else {
            count = half;
        }
    }
    model.relat_list_3.Copy(all);
    return all[first];
}

} // namespace
} // namespace korvel::kit
