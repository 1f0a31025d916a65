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
    pick_ = solids.editor().pick(mouse.u, mouse.v);
    solids.select(pick_ ? std::set<int>{pick_->body} : std::set<int>{});
    view_.update();
    return true;
}

void PickTool::draw() {
    if (pick_) {
        kit::draw_pick(view_.document().solids().solids().model(), *pick_, view_.frame());
    }
}

QString PickTool::hint() const {
    return QCoreApplication::translate(
        "PickTool", "Click picks a face; drag turns, the right button pans, the wheel zooms");
}

} // namespace korvel::workbench
