#include "apps/workbench/solid/move_body_tool.h"

#include <QCoreApplication>

#include "apps/workbench/solid/solid_view.h"

namespace korvel::workbench {

// The vertex that is picked follows the mouse, so the pick is a part of the gathering.
std::optional<SolidChange> MoveBodyTool::grab(const SolidMouse& mouse) {
    const std::optional<kit::Pick> pick = solids().pick(mouse.u, mouse.v);
    if (!pick) {
        return {};
    }
    const kit::Solids& shown = solids().drawn();
    start_ = kit::to_point(shown.model().verts[pick->vertex].view_xyz);
    solids().select({pick->body});
    return
        [at = *pick, hidden = solids().hidden(), angles = shown.view()](kit::SolidsEditor& editor) {
            editor.set_view(angles);
            editor.pick(at.u, at.v, hidden);
            editor.gather_body(at.body);
        };
}

// Within a body nothing fades out.
SolidChange MoveBodyTool::move_to(const SolidMouse& mouse) {
    return move_by_drag(mode_ == MoveMode::fading ? MoveMode::together : mode_, start_, pressed(),
                        mouse);
}

QString MoveBodyTool::step_text() const {
    return QCoreApplication::translate("MoveBodyTool", "Move body");
}

QString MoveBodyTool::hint() const {
    return QCoreApplication::translate("MoveBodyTool", "Drag a body; beside it a drag turns");
}

} // namespace korvel::workbench
