#include "apps/workbench/map/select_tool.h"

#include <QApplication>
#include <QCoreApplication>

#include "apps/workbench/document/document.h"
#include "apps/workbench/map/map_view.h"

namespace korvel::workbench {

bool SelectTool::press(const MapMouse& mouse) {
    pressed_ = mouse.pixel;
    return false; // a drag pans
}

bool SelectTool::release(const MapMouse& mouse) {
    const bool is_click =
        (mouse.pixel - pressed_).manhattanLength() < QApplication::startDragDistance();
    MapModel& map = view_.document().map();
    if (!is_click || mouse.button != Qt::LeftButton || map.found() == nullptr) {
        return false;
    }
    const std::optional<int> region = map.found()->locator.region_at(mouse.point);
    if ((mouse.modifiers & Qt::ControlModifier) == 0) {
        map.select(region ? std::set<int>{*region} : std::set<int>{});
    } else if (region) {
        map.toggle(*region);
    }
    return true;
}

QString SelectTool::hint() const {
    return QCoreApplication::translate(
        "SelectTool", "Click selects a region, Ctrl+click adds it or takes it back; drag pans");
}

} // namespace korvel::workbench
