#include "apps/workbench/map/draw_tool.h"

#include <QCoreApplication>

#include "apps/workbench/document/document.h"
#include "apps/workbench/map/map_painter.h"
#include "apps/workbench/map/map_view.h"

namespace korvel::workbench {
namespace {

Curve on_grid(const std::vector<kit::Point2>& points, const kit::Grid& grid);

} // namespace

bool DrawTool::press(const MapMouse& mouse) {
    if (mouse.button != Qt::LeftButton) {
        return false;
    }
    move(mouse);
    const kit::Placement placement = view_.drawing_placement();
    if (points_.empty() || placement.grid.step() < finest_.grid.step()) {
        finest_ = placement;
    }
    if (is_at_first(mouse.pixel)) {
        points_.push_back(points_.front());
        finish();
    } else {
        points_.push_back(*next_);
    }
    return true;
}

bool DrawTool::move(const MapMouse& mouse) {
    const MapView::Snapped snapped = view_.snap(mouse.point);
    next_ = is_at_first(mouse.pixel) ? points_.front() : snapped.place;
    snapped_to_ = snapped.to;
    return true;
}

void DrawTool::paint(QPainter& painter) {
    QPolygonF line;
    for (const kit::Point2& point : points_) {
        line.append(view_.viewport().to_screen(point));
    }
    painter.setPen(QPen(mark_colour(), 2));
    painter.drawPolyline(line);
    if (!line.empty()) {
        constexpr double size = 3;
        painter.setBrush(mark_colour());
        for (const QPointF& point : line) {
            painter.drawEllipse(point, size, size);
        }
        if (next_) {
            painter.setPen(QPen(mark_colour(), 1, Qt::DashLine));
            painter.drawLine(line.back(), view_.viewport().to_screen(*next_));
        }
    }
    if (snapped_to_) {
        view_.paint_mark(painter, *snapped_to_);
    }
}

void DrawTool::cancel() {
    ClickedLineTool::cancel();
    snapped_to_.reset();
}

QString DrawTool::hint() const {
    if (points_.empty()) {
        return QCoreApplication::translate("DrawTool", "Click where the curve begins");
    }
    return QCoreApplication::translate(
               "DrawTool", "%1 points: click adds one, double click or Enter ends the curve, "
                           "Backspace removes the last, Escape all")
        .arg(points_.size());
}

// A closed curve has three points before it returns.
bool DrawTool::is_at_first(const QPointF& pixel) const {
    constexpr double reach = 8;
    constexpr std::size_t least = 3;
    return points_.size() >= least &&
           (view_.viewport().to_screen(points_.front()) - pixel).manhattanLength() <= reach;
}

void DrawTool::finish() {
    MapModel& map = view_.map();
    const bool is_first = map.curves().empty();
    const kit::Placement placement = is_first ? finest_ : map.curves().placement();
    Curve curve = on_grid(points_, placement.grid);
    cancel();
    if (curve.size() < 2) {
        return;
    }
    const QString text = QCoreApplication::translate("DrawTool", "Draw curve");
    if (is_first) {
        map.start_curves(text, placement, std::move(curve));
    } else {
        map.change_curves(text, map.curves().size(), 0, {std::move(curve)});
    }
}

namespace {

// Points that are the same there count once.
Curve on_grid(const std::vector<kit::Point2>& points, const kit::Grid& grid) {
    Curve curve;
    for (const kit::Point2& point : points) {
        const kit::GridPoint place = grid.nearest(point);
        if (curve.empty() || !kit::is_same(curve.back(), place)) {
            curve.push_back(place);
        }
    }
    return curve;
}

} // namespace
} // namespace korvel::workbench
