#include "kit/solids/pick.h"

#include <algorithm>
#include <array>
#include <vector>

#include "kit/solids/exact.h"

namespace korvel::kit {

std::optional<Pick> pick(TMOD3D& model, double u, double v) {
    double click[3] = {u, v, 0};
    if (model.get_point_xyz(click) != 0) {
        return {};
    }
    Pick found;
    found.face = model.edit_state[edit_picked_face];
    found.vertex = model.edit_state[edit_picked_vertex];
    found.edge = model.edit_state[edit_picked_edge];
    found.body = model.edit_state[edit_picked_body];
    found.u = u;
    found.v = v;
    found.depth = click[2];
    std::copy_n(model.pick_data + pick_point, 3, found.point.begin());
    std::copy_n(model.pick_data + pick_edge_point, 3, found.on_edge.begin());
    return found;
}

// The exact class passes over what does not face the viewer.
std::optional<Pick> pick(TMOD3D& model, double u, double v, const std::set<int>& hidden) {
    constexpr int faces_viewer = 16;
    const auto is_shown = [&](int body) { return !hidden.contains(body); };
    std::vector<int> passed_over;
    for (int f = 0; f < model.polys.GetSize() && !hidden.empty(); ++f) {
        POLY3D& face = model.polys[f];
        if ((face.state_flags & faces_viewer) != 0 &&
            std::none_of(face.bodies.begin(), face.bodies.end(), is_shown)) {
            face.state_flags &= ~faces_viewer;
            passed_over.push_back(f);
        }
    }
    std::optional<Pick> found = pick(model, u, v);
    for (const int f : passed_over) {
        model.polys[f].state_flags |= faces_viewer;
    }
    if (found && !is_shown(found->body)) { // the first of two that share the face
        const CArray<int>& bodies = model.polys[found->face].bodies;
        found->body = *std::find_if(bodies.begin(), bodies.end(), is_shown);
        model.edit_state[edit_picked_body] = found->body;
    }
    return found;
}

std::optional<Pick> pick(const TMOD3D& model, double u, double v) {
    TMOD3D& scratch = operand(model);
    const auto state = std::to_array(scratch.edit_state);
    const auto data = std::to_array(scratch.pick_data);
    const std::optional<Pick> found = pick(scratch, u, v);
    std::copy(state.begin(), state.end(), scratch.edit_state);
    std::copy(data.begin(), data.end(), scratch.pick_data);
    return found;
}

} // namespace korvel::kit
