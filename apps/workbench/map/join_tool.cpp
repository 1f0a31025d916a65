#include "apps/workbench/map/join_tool.h"

#include <QCoreApplication>

#include "apps/workbench/document/document.h"
#include "apps/workbench/map/map_painter.h"
#include "apps/workbench/map/map_view.h"

namespace korvel::workbench {

bool JoinTool::press(const MapMouse& mouse) {
    const auto end = end_at(mouse.point);
    if (mouse.button != Qt::LeftButton || !end) {
        return false;
    }
    if (!first_) {
        first_ = end;
        return true;
    }
    MapModel& map = view_.map();
    std::vector<CurveChange> changes = joined(map.curves(), first_->at, end->at);
    if (!changes.empty()) {
        map.change_curves(QCoreApplication::translate("JoinTool", "Join ends"), std::move(changes));
    }
    return true;
}

bool JoinTool::move(const MapMouse& mouse) {
    mouse_ = mouse.pixel;
    under_ = end_at(mouse.point);
    return true;
}

void JoinTool::paint(QPainter& painter) {
    if (first_) {
        view_.paint_mark(painter, *first_);
        painter.setPen(QPen(mark_colour(), 1, Qt::DashLine));
        painter.drawLine(view_.to_screen(first_->place), mouse_);
    }
    if (under_) {
        view_.paint_mark(painter, *under_);
    }
}

void JoinTool::cancel() {
    first_.reset();
    under_.reset();
}

QString JoinTool::hint() const {
    return first_ ? QCoreApplication::translate("JoinTool", "Click the end that it is joined to")
                  : QCoreApplication::translate("JoinTool", "Click an end of a curve");
}

// Where two curves end at one place, the second click takes the other curve.
std::optional<CurvePlace> JoinTool::end_at(const kit::Point2& point) const {
    const auto end = view_.place_at(point, Find::ends);
    if (!first_ || !end || end->at != first_->at) {
        return end;
    }
    const auto other = view_.place_at(point, Find::ends, {{first_->at.curve, {}}});
    return other ? other : end;
}

} // namespace korvel::workbench
