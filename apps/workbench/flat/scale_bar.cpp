#include "apps/workbench/flat/scale_bar.h"

#include <QFontMetricsF>

#include "apps/workbench/flat/number_shown.h"

namespace korvel::workbench {
namespace {

double round_length(double most);

} // namespace

void paint_scale_bar(QPainter& painter, const FlatViewport& viewport, const QColor& page) {
    constexpr double margin = 10;
    constexpr double share = 0.25;
    constexpr double tick = 4;
    const double length = round_length(share * viewport.size().width() * viewport.unit());
    const double pixels = length / viewport.unit();
    const QString text = number_shown(length, length);
    const QFontMetricsF metrics(painter.font());
    const double bottom = viewport.size().height() - margin;
    const QRectF box(margin / 2, bottom - metrics.height() - tick - margin / 2,
                     std::max(pixels, metrics.horizontalAdvance(text)) + margin,
                     metrics.height() + tick + margin);
    QColor behind = page;
    behind.setAlphaF(0.75F);
    painter.fillRect(box, behind);
    painter.drawText(QPointF(margin, bottom - tick - metrics.descent()), text);
    painter.drawPolyline(QPolygonF({{margin, bottom - tick},
                                    {margin, bottom},
                                    {margin + pixels, bottom},
                                    {margin + pixels, bottom - tick}}));
}

namespace {

double round_length(double most) {
    const double power = power_of_ten_in(most);
    return most >= 5 * power ? 5 * power : most >= 2 * power ? 2 * power : power;
}

} // namespace
} // namespace korvel::workbench
