// Moves of many vertices in the view: what moves, by which weight, and how.

#include <algorithm>
#include <cmath>

#include "korvel/base/indices.h"
#include "korvel/body/edit/edit_state.h"
#include "korvel/body/tmod3d.h"

using korvel::has_element;

namespace {

// Kinds of move.
constexpr int onto_point = 1;
constexpr int picked_onto_point = 2;
constexpr int scale_box = 3;
constexpr int by_weight = 4;
constexpr int in_depth_with_weights = 5;
constexpr int in_depth = 6;

/// Calls `move(view_xyz, entry)` for each gathered vertex and brings its model coordinates along.
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

void shift_picked_onto(TMOD3D& model, const double* p) {
    const int picked = model.edit_state[korvel::picked_vertex];
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
    const int b = model.edit_state[korvel::scaled_body];
    if (!has_element(model.bodies, b)) {
        return;
    }
    const BODY3D& body = model.bodies[b];
    const double sx = (p[0] - q[0]) / body.view_span[0];
    const double sy = (p[1] - q[1]) / body.view_span[1];
    const int quadrant = body.change_dirt;
    if (quadrant < 1 || quadrant > 4) {
        return;
    }
    const bool right = quadrant == 1 || quadrant == 2;
    const bool top = quadrant == 1 || quadrant == 4;
    move_each(model, [&](double* at, int) {
        if (right) {
            at[0] += (at[0] - body.view_min[0]) * sx;
        } else {
            at[0] -= (at[0] - body.view_max[0]) * sx;
        }
        if (top) {
            at[1] += (at[1] - body.view_min[1]) * sy;
        } else {
            at[1] -= (at[1] - body.view_max[1]) * sy;
        }
    });
}

} // namespace

void TMOD3D::change_mut_points(int mode, double* p, double* q) {
    for (const int v : relat_list_2) {
        if (has_element(verts, v)) {
            verts[v].backtempvert();
        }
    }
    switch (mode) {
    case onto_point:
        move_each(*this, [&](double* at, int) {
            at[0] = p[0];
            at[1] = p[1];
        });
        break;
    case picked_onto_point:
        shift_picked_onto(*this, p);
        break;
    case scale_box:
        scale_body_box(*this, p, q);
        break;
    case by_weight: {
        mut_weight();
        const double dx = p[0] - q[0];
        const double dy = p[1] - q[1];
        move_each(*this, [&](double* at, int k) {
            at[0] += dx * mut_weights[k];
            at[1] += dy * mut_weights[k];
        });
        break;
    }
    case in_depth_with_weights:
        mut_weight(); // computed, but the depth move does not use them
        [[fallthrough]];
    case in_depth:
        move_each(*this, [&](double* at, int) { at[2] += p[2]; });
        break;
    default:
        break;
    }
    rel_aux_parm();
    model_wrap_cuboid();
    get_body_span(edit_state[korvel::picked_body]);
    roate_wrap_cuboid();
}

void TMOD3D::mut_weight() {
    const int count = relat_list_2.GetSize();
    if (mut_weights.GetSize() < count) {
        mut_weights.SetSize(count);
    }
    const auto point = [&](int k) -> const double* {
        return has_element(verts, relat_list_2[k]) ? verts[relat_list_2[k]].model_xyz : nullptr;
    };
    const double* const first = count > 0 ? point(0) : nullptr;
    double farthest = 0;
    for (int k = 0; k < count; ++k) {
        const double* const at = point(k);
        if (first == nullptr || at == nullptr) {
            mut_weights[k] = 0;
            continue;
        }
        const double dx = at[0] - first[0];
        const double dy = at[1] - first[1];
        const double dz = at[2] - first[2];
        // The root is taken twice: the weight falls with the root of the distance.
        mut_weights[k] = std::sqrt(std::sqrt(dx * dx + dy * dy + dz * dz));
        if (farthest < mut_weights[k]) {
            farthest = mut_weights[k];
        }
    }
    const double levels = static_cast<double>(edit_state[korvel::neighbourhood_depth]) + 1;
    for (int k = 0; k < count; ++k) {
        const double level = has_element(relat_list_4, k) ? relat_list_4[k] : 0;
        mut_weights[k] = (1 - level / levels) * (1 - mut_weights[k] * 0.25 / farthest);
    }
}

void TMOD3D::set_body_as_relat(int i) {
    relat_list_1.RemoveAll();
    relat_list_2.RemoveAll();
    relat_list_3.RemoveAll();
    relat_list_4.RemoveAll();
    mut_weights.RemoveAll();
    if (!has_element(bodies, i)) {
        return;
    }
    const BODY3D& body = bodies[i];
    relat_list_1.Copy(body.polys);
    // One weight for each face, until `mut_weight` makes them one for each vertex.
    mut_weights.SetSize(body.polys.GetSize());
    std::fill(mut_weights.begin(), mut_weights.end(), 1.0);
    relat_list_2.Copy(body.verts);
    relat_list_3.Copy(body.lines);
}

void TMOD3D::set_all_body_as_relat() {
    const auto count_up = [](CArray<int>& list, int size) {
        list.RemoveAll();
        list.SetSize(size);
        for (int i = 0; i < size; ++i) {
            list[i] = i;
        }
    };
    count_up(relat_list_1, polys.GetSize());
    count_up(relat_list_2, verts.GetSize());
    count_up(relat_list_3, lines.GetSize());
    relat_list_4.RemoveAll();
    mut_weights.RemoveAll();
}

void TMOD3D::get_body_change_dirt(int i, double* p) {
    if (!has_element(bodies, i)) {
        return;
    }
    BODY3D& body = bodies[i];
    const bool right = p[0] >= body.view_mid[0];
    const bool top = p[1] >= body.view_mid[1];
    if (right) {
        body.change_dirt = top ? 1 : 2;
    } else {
        body.change_dirt = top ? 4 : 3;
    }
}
