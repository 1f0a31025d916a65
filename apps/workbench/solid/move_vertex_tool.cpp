#include "apps/workbench/solid/move_vertex_tool.h"

#include <algorithm>

#include <QCoreApplication>

#include "apps/workbench/solid/gathered_marks.h"
#include "apps/workbench/solid/solid_view.h"

namespace korvel::workbench {

std::optional<SolidChange> MoveVertexTool::grab(const SolidMouse& mouse) {
    const std::optional<kit::Pick> pick = solids().pick(mouse.u, mouse.v);
    if (!pick) {
        return {};
    }
    const kit::Solids& shown = solids().drawn();
    vertex_ = pick->vertex;
    angles_ = shown.view();
    start_ = kit::to_point(shown.model().verts[vertex_].view_xyz);
    return gathering();
}

SolidChange MoveVertexTool::gathering() const {
    return [vertex = vertex_, depth = depth_, angles = angles_](kit::SolidsEditor& editor) {
        editor.set_view(angles);
        editor.gather_vertex(vertex, depth);
    };
}

SolidChange MoveVertexTool::move_to(const SolidMouse& mouse) {
    return move_by_drag(mode_, start_, pressed(), mouse);
}

bool MoveVertexTool::wheel(const SolidMouse& mouse, int steps) {
    if (!is_dragging() && !mouse.modifiers.testFlag(Qt::ControlModifier)) {
        return false;
    }
    set_depth(depth_ + steps);
    return true;
}

bool MoveVertexTool::key(const QKeyEvent& event) {
    if (event.key() != Qt::Key_PageUp && event.key() != Qt::Key_PageDown) {
        return false;
    }
    set_depth(depth_ + (event.key() == Qt::Key_PageUp ? 1 : -1));
    return true;
}

void MoveVertexTool::set_depth(int depth) {
    constexpr int most = 50;
    depth_ = std::clamp(depth, 0, most);
    if (is_dragging()) {
        regather(gathering());
    }
    view().show_hint(hint());
}

void MoveVertexTool::draw_gathered() {
    const kit::SolidsEditor& editor = solids().gathered();
    draw_weights(solids().drawn(), editor.faces(), editor.vertices(), weights());
}

QString MoveVertexTool::step_text() const {
    return QCoreApplication::translate("MoveVertexTool", "Move vertex");
}

QString MoveVertexTool::hint() const {
    return QCoreApplication::translate(
        "MoveVertexTool",
        "Drag a vertex with those up to %n edge(s) away (Ctrl and wheel, or Page Up and Down)",
        nullptr, depth_);
}

} // namespace korvel::workbench
