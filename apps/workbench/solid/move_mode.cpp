#include "apps/workbench/solid/move_mode.h"

namespace korvel::workbench {

SolidChange move_by_drag(MoveMode mode, const kit::Point3& start, const SolidMouse& from,
                         const SolidMouse& to) {
    const kit::Point2 by = {to.u - from.u, to.v - from.v};
    const kit::Point2 place = {start[0] + by[0], start[1] + by[1]};
    switch (mode) {
    case MoveMode::fading:
        return [by, place](kit::SolidsEditor& editor) {
            if (!editor.is_faded()) { // nothing around the vertex
                editor.move_picked_onto(place);
            } else if (editor.can_fade()) {
                editor.move_by_weight(by);
            } else {
                throw kit::input_error("all gathered vertices are at one place, so that a move "
                                       "cannot fade out");
            }
        };
    case MoveMode::together:
        return [place](kit::SolidsEditor& editor) { editor.move_picked_onto(place); };
    case MoveMode::onto:
        return [place](kit::SolidsEditor& editor) { editor.move_onto(place); };
    case MoveMode::in_depth:
        return [by](kit::SolidsEditor& editor) { editor.move_in_depth(by[1]); };
    case MoveMode::in_depth_weighted:
        break;
    }
    return [by](kit::SolidsEditor& editor) { editor.move_in_depth_with_weights(by[1]); };
}

} // namespace korvel::workbench
