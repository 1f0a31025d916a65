#include "apps/workbench/map/map_painter.h"

#include <QFontMetricsF>
#include <QPainterPath>
#include <QTransform>

namespace korvel::workbench {
namespace {

kit::Rectangle user_box(const Curves& curves, int index);
QPainterPath path_of(const kit::Region& region, ScreenLines& lines);

} // namespace

MapPainter::MapPainter(QPainter& painter, const FlatViewport& viewport, const QPalette& palette)
    : painter_(painter), viewport_(viewport), palette_(palette), lines_(viewport) {}

void MapPainter::paint_background(const QImage& picture, const Background& background) {
    const QPointF corner = viewport_.to_screen(background.user({0, 0}));
    const QPointF right = viewport_.to_screen(background.user({1, 0})) - corner;
    const QPointF down = viewport_.to_screen(background.user({0, 1})) - corner;
    painter_.save();
    painter_.setRenderHint(QPainter::SmoothPixmapTransform);
    painter_.setTransform(
        QTransform(right.x(), right.y(), down.x(), down.y(), corner.x(), corner.y()), true);
    painter_.drawImage(QPointF(), picture);
    painter_.restore();
}

// Without smoothing, so that no gap shows between regions.
void MapPainter::paint_regions(const FoundMap& found, const std::set<int>& selected,
                               double opacity) {
    painter_.setRenderHint(QPainter::Antialiasing, false);
    constexpr int selected_factor = 140;
    painter_.setPen(Qt::NoPen);
    painter_.setOpacity(opacity);
    for (const kit::Region region : found.map) {
        if (!lines_.is_seen(found.boxes[static_cast<std::size_t>(region.index())])) {
            continue;
        }
        const kit::Colour colour = region.colour();
        const QColor shown(colour.red, colour.green, colour.blue);
        painter_.setBrush(selected.contains(region.index()) ? shown.darker(selected_factor)
                                                            : shown);
        painter_.drawPath(path_of(region, lines_));
    }
    painter_.setOpacity(1);
    painter_.setRenderHint(QPainter::Antialiasing);
}

void MapPainter::paint_selection(const FoundMap& found, const std::set<int>& selected) {
    constexpr double width = 3;
    painter_.setBrush(Qt::NoBrush);
    painter_.setPen(QPen(palette_.color(QPalette::Highlight), width));
    for (const int index : selected) {
        const kit::Region region = found.map[index];
        if (!lines_.is_seen(found.boxes[static_cast<std::size_t>(index)])) {
            continue;
        }
        for (int ring = 0; ring < region.ring_count(); ++ring) {
            const auto corners = region.ring(ring);
            for (const kit::Point2& corner : corners) {
                lines_.add(corner);
            }
            lines_.add(*corners.begin());
            lines_.end_line();
        }
    }
    for (const QPolygonF& line : lines_.take()) {
        painter_.drawPolyline(line);
    }
}

// Those smaller than a pixel would only darken the picture.
void MapPainter::paint_triangles(const kit::Triangulation& triangles) {
    constexpr double least = 2;
    QColor colour = palette_.color(QPalette::Text);
    colour.setAlphaF(0.4F);
    painter_.setPen(QPen(colour, 0));
    for (int region = 0; region < triangles.region_count(); ++region) {
        for (const kit::Triangulation::Triangle& triangle : triangles.of_region(region)) {
            kit::Rectangle box;
            for (const kit::Point2& corner : triangle) {
                box.take_in(corner[0], corner[1]);
            }
            if (!lines_.is_seen(box) || lines_.size(box) < least) {
                continue;
            }
            for (const kit::Point2& corner : triangle) {
                lines_.add(corner);
            }
            lines_.add(triangle[0]);
            lines_.end_line();
        }
    }
    for (const QPolygonF& line : lines_.take()) {
        painter_.drawPolyline(line);
    }
}

void MapPainter::paint_curves(const Curves& curves) {
    for (int index = 0; index < curves.size(); ++index) {
        if (!lines_.is_seen(user_box(curves, index))) {
            continue;
        }
        for (const kit::GridPoint& point : curves[index]) {
            lines_.add(curves.to_user(point));
        }
        lines_.end_line();
    }
    const std::vector<QPolygonF> seen = lines_.take();
    qsizetype points = 0;
    for (const QPolygonF& line : seen) {
        points += line.size();
    }
    // Smoothed lines take several times as long, and do not show where they are that dense.
    constexpr qsizetype most_smooth = 10000;
    painter_.setRenderHint(QPainter::Antialiasing, points <= most_smooth);
    painter_.setPen(QPen(palette_.color(QPalette::Text), points <= most_smooth ? 1 : 0));
    for (const QPolygonF& line : seen) {
        painter_.drawPolyline(line);
    }
    painter_.setRenderHint(QPainter::Antialiasing);
}

void MapPainter::paint_labels(const FoundMap& found) {
    const QFontMetricsF metrics(painter_.font());
    for (int region = 0; region < found.map.size(); ++region) {
        const kit::Rectangle& box = found.boxes[static_cast<std::size_t>(region)];
        if (lines_.is_seen(box) && lines_.size(box) > metrics.height()) {
            paint_label(found, region);
        }
    }
}

// It fits where its corners and the middles of its upper and lower side are in the region.
void MapPainter::paint_label(const FoundMap& found, int region) {
    const std::optional<kit::Point2>& place = found.places[static_cast<std::size_t>(region)];
    if (!place) {
        return;
    }
    const std::string& name = found.map[region].name();
    const QString text = name.empty() ? QString::number(region) : QString::fromStdString(name);
    const QFontMetricsF metrics(painter_.font());
    QRectF box(QPointF(), QSizeF(metrics.horizontalAdvance(text), metrics.height()));
    box.moveCenter(viewport_.to_screen(*place));
    for (const QPointF& corner :
         {box.topLeft(), box.topRight(), box.bottomLeft(), box.bottomRight(),
          QPointF(box.center().x(), box.top()), QPointF(box.center().x(), box.bottom())}) {
        if (found.locator.region_at(viewport_.from_screen(corner)) != region) {
            return;
        }
    }
    const kit::Colour colour = found.map[region].colour();
    const bool is_light = qGray(colour.red, colour.green, colour.blue) > 127;
    painter_.setPen(is_light ? Qt::black : Qt::white);
    painter_.drawText(QPointF(box.left(), box.top() + metrics.ascent()), text);
}

// Lines in the colour of marks, and circles around what is hard to see.
void MapPainter::paint_problems(const std::vector<Problem>& problems) {
    constexpr double room = 5;
    constexpr double large = 30;
    painter_.setBrush(Qt::NoBrush);
    painter_.setPen(QPen(mark_colour(), 2));
    for (const Problem& problem : problems) {
        const kit::Rectangle& box = problem.bounds;
        if (!lines_.is_seen(box)) {
            continue;
        }
        for (const kit::Point2& point : problem.line) {
            lines_.add(point);
        }
        lines_.end_line();
        if (lines_.size(box) < large) {
            const QRectF mark(viewport_.to_screen({box.left, box.bottom}),
                              viewport_.to_screen({box.right, box.top}));
            painter_.drawEllipse(mark.adjusted(-room, -room, room, room));
        }
    }
    for (const QPolygonF& line : lines_.take()) {
        painter_.drawPolyline(line);
    }
}

QColor mark_colour() {
    return {230, 60, 20};
}

namespace {

kit::Rectangle user_box(const Curves& curves, int index) {
    const kit::BoxTree::Box& box = curves.box(index);
    const kit::Point2 a = curves.to_user(kit::GridPoint{box.left, box.bottom});
    const kit::Point2 b = curves.to_user(kit::GridPoint{box.right, box.top});
    kit::Rectangle around;
    around.take_in(a[0], a[1]);
    around.take_in(b[0], b[1]);
    return around;
}

QPainterPath path_of(const kit::Region& region, ScreenLines& lines) {
    QPainterPath path;
    for (int ring = 0; ring < region.ring_count(); ++ring) {
        for (const kit::Point2& corner : region.ring(ring)) {
            lines.add(corner);
        }
        path.addPolygon(lines.take_ring());
    }
    return path;
}

} // namespace
} // namespace korvel::workbench
