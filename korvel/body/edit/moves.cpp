// Moves of many vertices in the view: what moves, by which weight, and how.

#include <algorithm>
#include <cmath>

#include "korvel/base/indices.h"
#include "korvel/body/edit/edit_state.h"
#include "korvel/body/edit/relation_lists.h"

using korvel::has_element;

namespace {

void save_view(TMOD3D& model);
void move_onto(TMOD3D& model, const double* p);
void shift_picked_onto(TMOD3D& model, const double* p);
void scale_body_box(TMOD3D& model, const double* p, const double* q);
void shift_by_weight(TMOD3D& model, const double* p, const double* q);
void shift_in_depth_with_weights(TMOD3D& model, const double* p);
void shift_in_depth(TMOD3D& model, const double* p);
double set_root_distances(TMOD3D& model);
const double* gathered_point(const TMOD3D& model, int k);
void count_up(CArray<int>& list, int size);

} // namespace

void TMOD3D::change_mut_points(int mode, double* p, double* q) {
    save_view(*this);
    switch (mode) {
    case korvel::move_onto_point:
        move_onto(*this, p);
        break;
    case korvel::move_picked_onto_point:
        shift_picked_onto(*this, p);
        break;
    case korvel::move_scale_box:
        scale_body_box(*this, p, q);
        break;
    case korvel::move_by_weight:
        shift_by_weight(*this, p, q);
        break;
    case korvel::move_in_depth_with_weights:
        shift_in_depth_with_weights(*this, p);
        break;
    case korvel::move_in_depth:
        shift_in_depth(*this, p);
        break;
    default:
        break;
    }
    rel_aux_parm();
    model_wrap_cuboid();
    get_body_span(edit_state[korvel::edit_picked_body]);
    roate_wrap_cuboid();
}

void TMOD3D::mut_weight() {
    if (mut_weights.GetSize() < relat_list_2.GetSize()) { // entries beyond the vertices stay
        mut_weights.SetSize(relat_list_2.GetSize());
    }
    const double farthest = set_root_distances(*this);
    const double levels = static_cast<double>(edit_state[korvel::edit_neighbourhood_depth]) + 1;
    for (int k = 0; k < relat_list_2.GetSize(); ++k) {
        const double level = has_element(relat_list_4, k) ? relat_list_4[k] : 0;
        mut_weights[k] = (1 - level / levels) * (1 - mut_weights[k] * 0.25 / farthest);
    }
}

void TMOD3D::set_body_as_relat(int i) {
    korvel::empty_relation_lists(*this);
    if (!has_element(bodies, i)) {
        return;
    }
    const BODY3D& body = bodies[i];
    relat_list_1.Copy(body.polys);
    // One weight for each face, until `mut_weight` makes them one for each vertex.
    mut_weights.SetSize(body.polys.GetSize());
    std::fill(begin(mut_weights), end(mut_weights), 1.0);
    relat_list_2.Copy(body.verts);
    relat_list_3.Copy(body.lines);
}

void TMOD3D::set_all_body_as_relat() {
    korvel::empty_relation_lists(*this);
    count_up(relat_list_1, polys.GetSize());
    count_up(relat_list_2, verts.GetSize());
    count_up(relat_list_3, lines.GetSize());
}

void TMOD3D::get_body_change_dirt(int i, double* p) {
    if (!has_element(bodies, i)) {
        return;
    }
    BODY3D& body = bodies[i];
    const bool is_right = p[0] >= body.view_mid[0];
    const bool is_top = p[1] >= body.view_mid[1];
    if (is_right) {
        body.change_dirt = is_top ? 1 : 2;
    } else {
        body.change_dirt = is_top ? 4 : 3;
    }
}

namespace {

void save_view(TMOD3D& model) {
    for (const int v : model.relat_list_2) {
        if (has_element(model.verts, v)) {
            model.verts[v].backtempvert();
        }
    }
}

/// Calls `move(view_xyz, k)` for each gathered vertex, the k-th of the list, and computes its model
/// coordinates from the result.
template <class Move>
void move_each(TMOD3D& model, Move move) {
    for (int k = 0; k < model.relat_list_2.GetSize(); ++k) {
        const int v = model.relat_list_2[k];
        if (has_element(model.verts, v)) {
            move(model.verts[v].view_xyz, k);
            model.verts[v].ant_rotate(model.ant_matrix, model.view_center);
        }
    }
}

void move_onto(TMOD3D& model, const double* p) {
    move_each(model, [&](double* at, int) {
        at[0] = p[0];
        at[1] = p[1];
    });
}

void shift_picked_onto(TMOD3D& model, const double* p) {
    const int picked = model.edit_state[korvel::edit_picked_vertex];
    if (!has_element(model.verts, picked)) {
        return;
    }
    const double dx = model.verts[picked].view_xyz[0] - p[0];
    const double dy = model.verts[picked].view_xyz[1] - p[1];
    move_each(model, [&](double* at, int) {
        at[0] -= dx;
        at[1] -= dy;
    });
}

/// The grabbed sides of a body's view box follow the mouse, the opposite ones stay.
void scale_body_box(TMOD3D& model, const double* p, const double* q) {
    const int b = model.edit_state[korvel::edit_scaled_body];
    if (!has_element(model.bodies, b)) {
        return;
    }
    const BODY3D& body = model.bodies[b];
    const int quadrant = body.change_dirt;
    if (quadrant < 1 || quadrant > 4) {
        return;
    }
    const double sx = (p[0] - q[0]) / body.view_span[0];
    const double sy = (p[1] - q[1]) / body.view_span[1];
    const bool is_right = quadrant == 1 || quadrant == 2;
    const bool is_top = quadrant == 1 || quadrant == 4;
    move_each(model, [&](double* at, int) {
        if (is_right) {
            at[0] += (at[0] - body.view_min[0]) * sx;
        } else {
            at[0] -= (at[0] - body.view_max[0]) * sx;
        }
        if (is_top) {
            at[1] += (at[1] - body.view_min[1]) * sy;
        } else {
            at[1] -= (at[1] - body.view_max[1]) * sy;
        }
    });
}

void shift_by_weight(TMOD3D& model, const double* p, const double* q) {
    model.mut_weight();
    const double dx = p[0] - q[0];
    const double dy = p[1] - q[1];
    move_each(model, [&](double* at, int k) {
        at[0] += dx * model.mut_weights[k];
        at[1] += dy * model.mut_weights[k];
    });
}

/// The weights are computed, but the shift does not use them.
void shift_in_depth_with_weights(TMOD3D& model, const double* p) {
    model.mut_weight();
    shift_in_depth(model, p);
}

void shift_in_depth(TMOD3D& model, const double* p) {
    move_each(model, [&](double* at, int) { at[2] += p[2]; });
}

/// Sets each gathered vertex's weight to the root of its distance from the first one, and returns
/// the largest; 0 for a vertex that does not exist, and for all when the first one does not.
double set_root_distances(TMOD3D& model) {
    const int count = model.relat_list_2.GetSize();
    const double* const first = count > 0 ? gathered_point(model, 0) : nullptr;
    double farthest = 0;
    for (int k = 0; k < count; ++k) {
        const double* const at = gathered_point(model, k);
        double& root = model.mut_weights[k];
        if (first == nullptr || at == nullptr) {
            root = 0;
            continue;
        }
        const double dx = at[0] - first[0];
        const double dy = at[1] - first[1];
        const double dz = at[2] - first[2];
        // The root is taken twice: the weight falls with the root of the distance.
        root = std::sqrt(std::sqrt(dx * dx + dy * dy + dz * dz));
        if (farthest < root) {
            farthest = root;
        }
    }
    return farthest;
}

/// The model coordinates of the k-th gathered vertex, or null for one that does not exist.
const double* gathered_point(const TMOD3D& model, int k) {
    const int v = model.relat_list_2[k];
    return has_element(model.verts, v) ? model.verts[v].model_xyz : nullptr;
}

void count_up(CArray<int>& list, int size) {
    list.SetSize(size);
    for (int i = 0; i < size; ++i) {
        list[i] = i;
    }
}

} // namespace
