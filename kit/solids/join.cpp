#include "kit/solids/join.h"

#include <utility>

namespace korvel::kit {
namespace {

// Moves records behind those of another list. Returns how many stood there before.
template <class List>
int move_behind(List& from, List& to) {
    const int before = to.GetSize();
    to.SetSize(before + from.GetSize(), 1 << 16);
    for (int i = 0; i < from.GetSize(); ++i) {
        to[before + i] = std::move(from[i]);
    }
    from.RemoveAll();
    return before;
}

void shift(CArray<int>& indices, int by) {
    for (int& index : indices) {
        index += by;
    }
}

} // namespace

void append_bodies(TMOD3D& part, TMOD3D& whole) {
    const int first_vertex = move_behind(part.verts, whole.verts);
    const int first_edge = move_behind(part.lines, whole.lines);
    const int first_face = move_behind(part.polys, whole.polys);
    const int first_body = move_behind(part.bodies, whole.bodies);
    for (int e = first_edge; e < whole.lines.GetSize(); ++e) {
        whole.lines[e].start_vert += first_vertex;
        whole.lines[e].end_vert += first_vertex;
    }
    for (int f = first_face; f < whole.polys.GetSize(); ++f) {
        shift(whole.polys[f].verts, first_vertex);
        shift(whole.polys[f].lines, first_edge);
    }
    for (int b = first_body; b < whole.bodies.GetSize(); ++b) {
        shift(whole.bodies[b].polys, first_face);
    }
    whole.mode_ok = 1;
}

void derive(TMOD3D& model) {
    model.comput_mode_aux_parm();
    model.model_wrap_cuboid();
    model.rotate_model();
    model.found_top_rel();
    double no_shift[3] = {0, 0, 0};
    model.trans_model_orig(no_shift);
}

} // namespace korvel::kit
