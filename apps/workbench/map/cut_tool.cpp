#include "apps/workbench/map/cut_tool.h"

#include <utility>

#include <QCoreApplication>

#include "apps/workbench/document/document.h"
#include "apps/workbench/map/map_view.h"

namespace korvel::workbench {

bool CutTool::press(const MapMouse& mouse) {
    const auto place = view_.place_at(mouse.point, Find::places);
    if (mouse.button != Qt::LeftButton || !place) {
        return false;
    }
    MapModel& map = view_.map();
    Curve curve = map.curves()[place->at.curve];
    int point = place->at.point;
    if (place->kind == CurvePlace::Kind::line) {
        curve = with_point(std::move(curve), point++, place->place);
    }
    if (point > 0 && static_cast<std::size_t>(point) + 1 < curve.size()) {
        map.change_curves(QCoreApplication::translate("CutTool", "Cut curve"), place->at.curve, 1,
                          cut(curve, point));
    }
    return true;
}

bool CutTool::move(const MapMouse& mouse) {
    under_ = view_.place_at(mouse.point, Find::places);
    return true;
}

void CutTool::paint(QPainter& painter) {
    if (under_) {
        view_.paint_mark(painter, *under_);
    }
}

QString CutTool::hint() const {
    return QCoreApplication::translate(
        "CutTool", "Click on a curve cuts it there; a closed one begins and ends there then");
}

} // namespace korvel::workbench
