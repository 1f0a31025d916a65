#include "apps/workbench/map/measure_tool.h"

#include <cmath>

#include <QCoreApplication>
#include <QFontMetricsF>

#include "apps/workbench/flat/number_shown.h"
#include "apps/workbench/map/map_painter.h"
#include "apps/workbench/map/map_view.h"

namespace korvel::workbench {
namespace {

double length_of(const std::vector<kit::Point2>& points);
double area_of(const std::vector<kit::Point2>& points);

} // namespace

bool MeasureTool::press(const MapMouse& mouse) {
    if (mouse.button != Qt::LeftButton) {
        return false;
    }
    if (is_ended_) {
        cancel();
    }
    points_.push_back(view_.snap(mouse.point).place);
    return true;
}

bool MeasureTool::move(const MapMouse& mouse) {
    next_ = view_.snap(mouse.point).place;
    return true;
}

void MeasureTool::paint(QPainter& painter) {
    constexpr double margin = 4;
    constexpr double away = 12;
    const std::vector<kit::Point2> points = shown();
    if (points_.empty()) {
        return;
    }
    QPolygonF line;
    for (const kit::Point2& point : points) {
        line.append(view_.viewport().to_screen(point));
    }
    QColor inside = mark_colour();
    inside.setAlphaF(0.2F);
    painter.setPen(Qt::NoPen);
    painter.setBrush(inside);
    painter.drawPolygon(line);
    painter.setPen(QPen(mark_colour(), 2));
    painter.drawPolyline(line);
    const QString text = result(points);
    const QFontMetricsF metrics(painter.font());
    QRectF box(line.back() + QPointF(away, -away),
               QSizeF(metrics.horizontalAdvance(text) + 2 * margin, metrics.height() + margin));
    box.moveRight(std::min(box.right(), static_cast<double>(view_.width())));
    painter.fillRect(box, view_.palette().color(QPalette::ToolTipBase));
    painter.setPen(view_.palette().color(QPalette::ToolTipText));
    painter.drawText(box, Qt::AlignCenter, text);
}

void MeasureTool::cancel() {
    ClickedLineTool::cancel();
    is_ended_ = false;
}

QString MeasureTool::hint() const {
    if (points_.empty()) {
        return QCoreApplication::translate("MeasureTool", "Click the points to measure between");
    }
    return result(shown());
}

double MeasureTool::length() const {
    return length_of(points_);
}

double MeasureTool::area() const {
    return area_of(points_);
}

std::vector<kit::Point2> MeasureTool::shown() const {
    std::vector<kit::Point2> points = points_;
    if (next_ && !is_ended_) {
        points.push_back(*next_);
    }
    return points;
}

// To a pixel's width, and areas to what that makes of a square of the same size.
QString MeasureTool::result(const std::vector<kit::Point2>& points) const {
    const double unit = view_.viewport().unit();
    const double length = length_of(points);
    const QString text =
        QCoreApplication::translate("MeasureTool", "length %1").arg(number_shown(length, unit));
    const double area = area_of(points);
    return area > 0 ? QCoreApplication::translate("MeasureTool", "%1, area %2")
                          .arg(text, number_shown(area, unit * std::max(unit, std::sqrt(area))))
                    : text;
}

namespace {

double length_of(const std::vector<kit::Point2>& points) {
    double length = 0;
    for (std::size_t k = 1; k < points.size(); ++k) {
        length += std::hypot(points[k][0] - points[k - 1][0], points[k][1] - points[k - 1][1]);
    }
    return length;
}

// From the first point, so that large coordinates cancel out before they are multiplied.
double area_of(const std::vector<kit::Point2>& points) {
    double twice = 0;
    for (std::size_t k = 2; k < points.size(); ++k) {
        twice += (points[k - 1][0] - points[0][0]) * (points[k][1] - points[0][1]) -
                 (points[k][0] - points[0][0]) * (points[k - 1][1] - points[0][1]);
    }
    return std::abs(twice) / 2;
}

} // namespace
} // namespace korvel::workbench
