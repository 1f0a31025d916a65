#include "apps/workbench/solid/pick_tool.h"

#include <set>

#include <QApplication>
#include <QCoreApplication>

#include "apps/workbench/document/document.h"
#include "apps/workbench/solid/solid_view.h"

namespace korvel::workbench {

bool PickTool::press(const SolidMouse& mouse) {
    pressed_ = mouse.pixel;
    return false; // a drag turns
}

bool PickTool::release(const SolidMouse& mouse) {
    const bool is_click =
        (mouse.pixel - pressed_).manhattanLength() < QApplication::startDragDistance();
    if (!is_click || mouse.button != Qt::LeftButton) {
        return false;
    }
    SolidModel& solids = view_.document().solids();
    pick_ = solids.pick(mouse.u, mouse.v);
    select(mouse);
    view_.report_pick(pick_);
    view_.update();
    return true;
}

void PickTool::select(const SolidMouse& mouse) {
    SolidModel& solids = view_.document().solids();
    std::set<int> bodies;
    if (mouse.modifiers.testFlag(Qt::ControlModifier)) {
        bodies = solids.selected();
        if (pick_ && bodies.erase(pick_->body) == 0) {
            bodies.insert(pick_->body);
        }
    } else if (pick_) {
        bodies.insert(pick_->body);
    }
    solids.select(std::move(bodies));
}

void PickTool::draw() {
    if (!pick_ || !is_as_picked()) {
        return;
    }
    const kit::Solids& solids = view_.document().solids().drawn();
    kit::Pick shown = *pick_;
    const kit::Point3 at = solids.to_view(shown.point);
    shown.u = at[0];
    shown.v = at[1];
    shown.depth = at[2];
    kit::draw_pick(solids.model(), shown, view_.frame());
}

// The body may be hidden, and after insertions and undoing the numbers those of something else.
bool PickTool::is_as_picked() const {
    const SolidModel& model = view_.document().solids();
    const kit::Solids& solids = model.drawn();
    return !model.hidden().contains(pick_->body) && pick_->face < solids.face_count() &&
           pick_->edge < solids.edge_count() && pick_->vertex < solids.vertex_count();
}

QString PickTool::hint() const {
    return QCoreApplication::translate(
        "PickTool", "Click picks a face, Ctrl adds its body to the selection; drag turns, the "
                    "right button moves, the wheel zooms");
}

} // namespace korvel::workbench
