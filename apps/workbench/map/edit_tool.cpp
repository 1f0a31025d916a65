#include "apps/workbench/map/edit_tool.h"

#include <algorithm>
#include <utility>

#include <QApplication>
#include <QCoreApplication>

#include "apps/workbench/document/document.h"
#include "apps/workbench/map/map_painter.h"
#include "apps/workbench/map/map_view.h"

namespace korvel::workbench {
namespace {

void add_to(PointSet& points, const PointSet& others);
PointSet all_points(const Curves& curves, int curve);
kit::BoxTree::Box box_between(const kit::GridPoint& a, const kit::GridPoint& b);

} // namespace

bool EditTool::press(const MapMouse& mouse) {
    if (mouse.button != Qt::LeftButton) {
        return false;
    }
    pressed_ = mouse.pixel;
    dragged_to_ = mouse.pixel;
    way_ = {};
    under_ = view_.place_at(mouse.point, Find::places);
    if (!under_) {
        drag_ = Drag::rectangle;
        return true;
    }
    choose(*under_, (mouse.modifiers & Qt::ControlModifier) != 0);
    if (under_->kind != CurvePlace::Kind::line) {
        drag_ = Drag::points;
        grip_ = under_->place;
        moving_ = moving(mouse.modifiers);
    }
    return true;
}

bool EditTool::move(const MapMouse& mouse) {
    dragged_to_ = mouse.pixel;
    switch (drag_) {
    case Drag::none:
        under_ = view_.place_at(mouse.point, Find::places);
        break;
    case Drag::points:
        drag_points(mouse);
        break;
    case Drag::rectangle:
        break;
    }
    return true;
}

// The point that was pressed snaps, to other curves than those that move; all keep their positions
// to one another.
void EditTool::drag_points(const MapMouse& mouse) {
    moving_ = moving(mouse.modifiers);
    const MapView::Snapped snapped = view_.snap(mouse.point, moving_);
    snapped_to_ = snapped.to;
    way_ = way_between(grip_, view_.map().curves().nearest(snapped.place));
}

bool EditTool::release(const MapMouse& mouse) {
    const Drag drag = std::exchange(drag_, Drag::none);
    const bool was_dragged =
        (mouse.pixel - pressed_).manhattanLength() >= QApplication::startDragDistance();
    snapped_to_.reset();
    if (drag == Drag::points && was_dragged && (way_.x != 0 || way_.y != 0)) {
        MapModel& map = view_.map();
        const PointSet chosen = view_.chosen();
        map.change_curves(QCoreApplication::translate("EditTool", "Move point"),
                          moved(map.curves(), moving_, way_));
        view_.choose_points(chosen);
    } else if (drag == Drag::rectangle) {
        dragged_to_ = mouse.pixel;
        choose_rectangle((mouse.modifiers & Qt::ControlModifier) != 0);
    }
    moving_.clear();
    way_ = {};
    return drag != Drag::none;
}

bool EditTool::double_click(const MapMouse& mouse) {
    const auto place = view_.place_at(mouse.point, Find::places);
    if (!place || place->kind != CurvePlace::Kind::line) {
        return true;
    }
    MapModel& map = view_.map();
    const CurvePoint at = place->at;
    map.change_curves(QCoreApplication::translate("EditTool", "Insert point"), at.curve, 1,
                      {with_point(map.curves()[at.curve], at.point, place->place)});
    view_.choose_points({{at.curve, {at.point + 1}}});
    return true;
}

void EditTool::paint(QPainter& painter) {
    paint_points(painter);
    if (drag_ == Drag::points) {
        paint_moved(painter);
    } else if (drag_ == Drag::rectangle) {
        painter.setPen(QPen(view_.palette().color(QPalette::Text), 1, Qt::DashLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(QRectF(pressed_, dragged_to_).normalized());
    } else if (under_) {
        view_.paint_mark(painter, *under_);
    }
    if (snapped_to_) {
        view_.paint_mark(painter, *snapped_to_);
    }
}

void EditTool::cancel() {
    drag_ = Drag::none;
    moving_.clear();
    way_ = {};
    curves_changed();
}

// Undo, and a change by an action, can come while the mouse drags.
void EditTool::curves_changed() {
    drag_ = Drag::none;
    under_.reset();
    snapped_to_.reset();
}

QString EditTool::hint() const {
    return view_.chosen().empty()
               ? QCoreApplication::translate(
                     "EditTool", "Click chooses a point or a curve, a drag from beside them what "
                                 "is in the rectangle; double click on a line inserts a point")
               : QCoreApplication::translate(
                     "EditTool", "A drag moves the chosen points, with Alt alone at their place; "
                                 "Delete removes them; Ctrl+click chooses more");
}

// A point that is chosen already stays one of several, so that all can be moved.
void EditTool::choose(const CurvePlace& place, bool adds) {
    const Curves& curves = view_.map().curves();
    PointSet points = adds ? view_.chosen() : PointSet();
    if (place.kind == CurvePlace::Kind::line) {
        add_to(points, all_points(curves, place.at.curve));
    } else {
        const auto chosen = view_.chosen().find(place.at.curve);
        if (chosen != view_.chosen().end() && chosen->second.contains(place.at.point)) {
            return;
        }
        points[place.at.curve].insert(place.at.point);
    }
    view_.choose_points(std::move(points));
}

PointSet EditTool::moving(Qt::KeyboardModifiers modifiers) const {
    return (modifiers & Qt::AltModifier) != 0
               ? view_.chosen()
               : with_others_there(view_.map().curves(), view_.chosen());
}

void EditTool::choose_rectangle(bool adds) {
    const Curves& curves = view_.map().curves();
    const kit::GridPoint a = curves.nearest(view_.viewport().from_screen(pressed_));
    const kit::GridPoint b = curves.nearest(view_.viewport().from_screen(dragged_to_));
    PointSet points = adds ? view_.chosen() : PointSet();
    add_to(points, points_in(curves, box_between(a, b)));
    view_.choose_points(std::move(points));
}

// All points where there is room for them, and the chosen ones everywhere.
void EditTool::paint_points(QPainter& painter) const {
    constexpr double size = 2.5;
    constexpr int most = 3000;
    const Curves& curves = view_.map().curves();
    const kit::Rectangle part = view_.viewport().part();
    const PointSet seen = points_in(curves, box_between(curves.nearest({part.left, part.top}),
                                                        curves.nearest({part.right, part.bottom})));
    int count = 0;
    for (const auto& [curve, points] : seen) {
        count += static_cast<int>(points.size());
    }
    const auto paint = [&](const PointSet& set) {
        for (const auto& [curve, points] : set) {
            for (const int point : points) {
                const kit::GridPoint& place = curves[curve][static_cast<std::size_t>(point)];
                painter.drawEllipse(view_.to_screen(place), size, size);
            }
        }
    };
    painter.setPen(view_.palette().color(QPalette::Text));
    painter.setBrush(view_.palette().color(QPalette::Base));
    if (count <= most) {
        paint(seen);
    }
    painter.setPen(mark_colour());
    painter.setBrush(mark_colour());
    paint(view_.chosen());
}

void EditTool::paint_moved(QPainter& painter) const {
    painter.setPen(QPen(mark_colour(), 2));
    for (const CurveChange& change : moved(view_.map().curves(), moving_, way_)) {
        QPolygonF line;
        for (const kit::GridPoint& point : change.by.front()) {
            line.append(view_.to_screen(point));
        }
        painter.drawPolyline(line);
    }
}

namespace {

void add_to(PointSet& points, const PointSet& others) {
    for (const auto& [curve, added] : others) {
        points[curve].insert(added.begin(), added.end());
    }
}

PointSet all_points(const Curves& curves, int curve) {
    std::set<int> points;
    for (int point = 0; point < static_cast<int>(curves[curve].size()); ++point) {
        points.insert(points.end(), point);
    }
    return {{curve, std::move(points)}};
}

kit::BoxTree::Box box_between(const kit::GridPoint& a, const kit::GridPoint& b) {
    return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
}

} // namespace
} // namespace korvel::workbench
