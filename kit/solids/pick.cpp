#include "kit/solids/pick.h"

#include <algorithm>
#include <array>

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
