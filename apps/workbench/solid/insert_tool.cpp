#include "apps/workbench/solid/insert_tool.h"

#include <QApplication>
#include <QCoreApplication>

#include "apps/workbench/document/document.h"
#include "apps/workbench/solid/solid_view.h"

namespace korvel::workbench {

bool InsertTool::press(const SolidMouse& mouse) {
    pressed_ = mouse.pixel;
    return false; // a drag turns
}

bool InsertTool::release(const SolidMouse& mouse) {
    const bool is_click =
        (mouse.pixel - pressed_).manhattanLength() < QApplication::startDragDistance();
    SolidModel& solids = view_.document().solids();
    if (!is_click || mouse.button != Qt::LeftButton || !solids.pick(mouse.u, mouse.v)) {
        return false;
    }
    solids.change(
        place_ == Place::face ? QCoreApplication::translate("InsertTool", "Insert point on face")
                              : QCoreApplication::translate("InsertTool", "Insert point on edge"),
        [u = mouse.u, v = mouse.v, angles = solids.drawn().view(), hidden = solids.hidden(),
         is_on_face = place_ == Place::face](kit::SolidsEditor& editor) {
            editor.set_view(angles);
            editor.pick(u, v, hidden);
            if (!(is_on_face ? editor.insert_on_face() : editor.insert_on_edge())) {
                throw kit::input_error("a point there would make a face without area");
            }
        });
    return true;
}

QString InsertTool::hint() const {
    return place_ == Place::face
               ? QCoreApplication::translate("InsertTool", "Click where a face gets a point")
               : QCoreApplication::translate("InsertTool",
                                             "Click near an edge, which gets a point there");
}

} // namespace korvel::workbench
