#include "apps/workbench/flat/painter_canvas.h"

#include <algorithm>
#include <utility>

#include <QFontMetricsF>
#include <QPainterPath>
#include <QPolygonF>

namespace korvel::workbench {
namespace {

QColor colour_of(COLORREF colour) {
    return {GetRValue(colour), GetGValue(colour), GetBValue(colour)};
}

} // namespace

PainterCanvas::PainterCanvas(QPainter& painter, int units_per_pixel)
    : painter_(painter), units_per_pixel_(units_per_pixel) {}

void PainterCanvas::write_text(const std::string& text, double x, double y, double size,
                               kit::Anchor anchor) {
    const QString shown = QString::fromStdString(text);
    const QFontMetricsF metrics(font(size));
    const double width = metrics.horizontalAdvance(shown);
    const double left = anchor == kit::Anchor::start    ? x
                        : anchor == kit::Anchor::middle ? x - width / 2
                                                        : x - width;
    painter_.setFont(font(size));
    painter_.setPen(colour_of(pen_->colour));
    painter_.drawText(QPointF(left, y + (metrics.ascent() - metrics.descent()) / 2), shown);
}

double PainterCanvas::text_width(const std::string& text, double size) {
    return QFontMetricsF(font(size)).horizontalAdvance(QString::fromStdString(text));
}

CPen* PainterCanvas::SelectObject(CPen* pen) {
    return std::exchange(pen_, pen != nullptr ? pen : &default_pen_);
}

CBrush* PainterCanvas::SelectObject(CBrush* brush) {
    return std::exchange(brush_, brush != nullptr ? brush : &default_brush_);
}

int PainterCanvas::SetPolyFillMode(int mode) {
    return std::exchange(fill_mode_, mode);
}

COLORREF PainterCanvas::SetBkColor(COLORREF colour) {
    return std::exchange(background_, colour);
}

POINT PainterCanvas::MoveTo(int x, int y) {
    return std::exchange(position_, POINT{x, y});
}

BOOL PainterCanvas::LineTo(int x, int y) {
    const POINT from = std::exchange(position_, POINT{x, y});
    painter_.setPen(line());
    painter_.drawLine(place(from), place(position_));
    return 1;
}

BOOL PainterCanvas::Polygon(const POINT* points, int count) {
    return PolyPolygon(points, &count, 1);
}

BOOL PainterCanvas::PolyPolygon(const POINT* points, const int* counts, int polygons) {
    QPainterPath path;
    path.setFillRule(fill_mode_ == ALTERNATE ? Qt::OddEvenFill : Qt::WindingFill);
    for (int i = 0; i < polygons; ++i) {
        QPolygonF polygon;
        polygon.reserve(counts[i] + 1);
        for (int k = 0; k < counts[i]; ++k) {
            polygon.append(place(*points++));
        }
        path.addPolygon(polygon);
        path.closeSubpath();
    }
    painter_.setPen(line());
    painter_.setBrush(colour_of(brush_->colour));
    painter_.drawPath(path);
    return 1;
}

// Device coordinates are the middles of pixels, as in `kit::PictureCanvas`.
QPointF PainterCanvas::place(const POINT& point) const {
    return {(point.x + 0.5) / units_per_pixel_, (point.y + 0.5) / units_per_pixel_};
}

QPen PainterCanvas::line() const {
    constexpr double thinnest = 0.25;
    QPen pen(colour_of(pen_->colour), std::max(thinnest, pen_->width / units_per_pixel_));
    pen.setJoinStyle(Qt::RoundJoin);
    return pen;
}

QFont PainterCanvas::font(double size) const {
    QFont font = painter_.font();
    font.setPixelSize(std::max(1, static_cast<int>(size)));
    return font;
}

} // namespace korvel::workbench
