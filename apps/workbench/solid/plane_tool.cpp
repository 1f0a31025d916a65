#include "apps/workbench/solid/plane_tool.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include <QCoreApplication>

#include "apps/workbench/document/document.h"
#include "apps/workbench/document/plane_range.h"
#include "apps/workbench/solid/plane_turning.h"
#include "apps/workbench/solid/solid_view.h"

namespace korvel::workbench {
namespace {

double distance_to_line(const kit::Point2& point, const kit::Point3& from, const kit::Point3& to);
bool is_inside(const kit::Solids& solids, const std::vector<kit::Point3>& outline,
               const kit::Point2& point);
QString angles_text(const kit::Plane& plane);

} // namespace

bool PlaneTool::press(const SolidMouse& mouse) {
    const auto plane = view_.document().section().plane();
    const PlanePart part = part_at(mouse);
    if (mouse.button != Qt::LeftButton || !plane || part == PlanePart::none) {
        return false; // turns
    }
    const kit::Box box = view_.document().solids().solids().bounds();
    drag_ = {part, *plane, middle_of(*plane, box), mouse.u, mouse.v};
    show_cursor(part);
    return true;
}

bool PlaneTool::move(const SolidMouse& mouse) {
    if (drag_) {
        const kit::Plane plane = dragged_to(mouse);
        view_.document().section().try_plane(plane);
        view_.show_position(drag_->part == PlanePart::end
                                ? angles_text(plane)
                                : QString::fromStdString(plane_text(plane)));
    } else if (mouse.buttons == Qt::NoButton) {
        show_cursor(part_at(mouse));
    }
    return drag_.has_value();
}

bool PlaneTool::release(const SolidMouse& mouse) {
    if (!drag_) {
        return false;
    }
    const kit::Plane plane = dragged_to(mouse);
    drag_.reset();
    view_.document().section().set_plane(plane);
    show_cursor(part_at(mouse));
    return true;
}

void PlaneTool::draw() {
    const auto& plane = view_.document().section().plane();
    const kit::Solids& solids = view_.document().solids().drawn();
    if (!plane || solids.empty()) {
        return;
    }
    const bool is_turned = drag_ && drag_->part == PlanePart::end;
    const kit::Box box = solids.bounds();
    const kit::Point3 foot = is_turned ? drag_->foot : middle_of(*plane, box);
    draw_plane_handle(solids, plane_handle(*plane, box, foot), view_.frame().unit, under_mouse_,
                      is_turned);
}

void PlaneTool::cancel() {
    show_cursor(PlanePart::none);
    if (drag_) {
        const kit::Plane before = drag_->plane;
        drag_.reset();
        view_.document().section().set_plane(before);
    }
}

QString PlaneTool::hint() const {
    return QCoreApplication::translate(
        "PlaneTool", "Drag the plane or its arrow to move it, the round handle to turn it; with "
                     "Shift it turns in steps of 15 degrees");
}

// The end of the normal, the arrow, or the outline as it is seen.
PlanePart PlaneTool::part_at(const SolidMouse& mouse) const {
    constexpr double reach = 8; // pixels
    const auto& plane = view_.document().section().plane();
    const kit::Solids& solids = view_.document().solids().solids();
    if (!plane || solids.empty()) {
        return PlanePart::none;
    }
    const kit::Box box = solids.bounds();
    const PlaneHandle handle = plane_handle(*plane, box);
    const kit::Point3 foot = solids.to_view(handle.foot);
    const kit::Point3 tip = solids.to_view(handle.tip);
    const kit::Point3 end = solids.to_view(handle.end);
    const double room = reach * view_.frame().unit;
    if (std::hypot(mouse.u - end[0], mouse.v - end[1]) <= room) {
        return PlanePart::end;
    }
    const bool is_on_arrow = distance_to_line({mouse.u, mouse.v}, foot, tip) <= room;
    return is_on_arrow || is_inside(solids, plane_outline(*plane, box), {mouse.u, mouse.v})
               ? PlanePart::plane
               : PlanePart::none;
}

kit::Plane PlaneTool::dragged_to(const SolidMouse& mouse) const {
    if (mouse.u == drag_->u && mouse.v == drag_->v) {
        return drag_->plane;
    }
    if (drag_->part == PlanePart::plane) {
        return moved_by(mouse.u - drag_->u, mouse.v - drag_->v);
    }
    const kit::Solids& solids = view_.document().solids().solids();
    const PlaneTurning turning = {
        .plane = drag_->plane,
        .point = drag_->foot,
        .radius = plane_handle(drag_->plane, solids.bounds(), drag_->foot).radius,
        .pressed = {drag_->u, drag_->v}};
    return turned_plane(solids, turning, {mouse.u, mouse.v},
                        mouse.modifiers.testFlag(Qt::ShiftModifier));
}

// By the part of the mouse's way that is along the normal as it is seen. Where the normal points to
// the viewer, upward moves it forward.
kit::Plane PlaneTool::moved_by(double by_u, double by_v) const {
    constexpr double steepest = 0.2;
    const kit::Plane& plane = drag_->plane;
    const kit::Solids& solids = view_.document().solids().solids();
    const double length = plane.normal_length();
    const kit::Point3 origin = solids.to_view({0, 0, 0});
    const kit::Point3 tip = solids.to_view({plane.a / length, plane.b / length, plane.c / length});
    const double along_u = tip[0] - origin[0];
    const double along_v = tip[1] - origin[1];
    const double seen = std::hypot(along_u, along_v);
    const double by = seen > steepest ? (by_u * along_u + by_v * along_v) / (seen * seen) : by_v;
    const PlaneRange range = range_of(plane, solids.bounds());
    const double place = place_of(plane.moved(by));
    return moved_to(plane, std::clamp(place, range.least, range.greatest));
}

void PlaneTool::show_cursor(PlanePart part) {
    if (part == PlanePart::none) {
        view_.unsetCursor();
    } else if (part == PlanePart::plane) {
        view_.setCursor(Qt::SizeAllCursor);
    } else {
        view_.setCursor(drag_ ? Qt::ClosedHandCursor : Qt::OpenHandCursor);
    }
    if (std::exchange(under_mouse_, part) != part) {
        view_.update();
    }
}

namespace {

double distance_to_line(const kit::Point2& point, const kit::Point3& from, const kit::Point3& to) {
    const double along_u = to[0] - from[0];
    const double along_v = to[1] - from[1];
    const double square = along_u * along_u + along_v * along_v;
    const double by = (point[0] - from[0]) * along_u + (point[1] - from[1]) * along_v;
    const double part = square > 0 ? std::clamp(by / square, 0.0, 1.0) : 0;
    return std::hypot(point[0] - from[0] - part * along_u, point[1] - from[1] - part * along_v);
}

bool is_inside(const kit::Solids& solids, const std::vector<kit::Point3>& outline,
               const kit::Point2& point) {
    bool is_odd = false;
    for (std::size_t k = 0; k < outline.size(); ++k) {
        const kit::Point3 a = solids.to_view(outline[k]);
        const kit::Point3 b = solids.to_view(outline[(k + 1) % outline.size()]);
        if ((a[1] > point[1]) != (b[1] > point[1]) &&
            point[0] < a[0] + (point[1] - a[1]) / (b[1] - a[1]) * (b[0] - a[0])) {
            is_odd = !is_odd;
        }
    }
    return is_odd;
}

QString angles_text(const kit::Plane& plane) {
    const PlaneAngles angles = angles_of(plane);
    const auto degrees = [](double angle) { return QString::number(angle, 'f', 1); };
    return QCoreApplication::translate("PlaneTool", "turn %1°  tilt %2°")
        .arg(degrees(angles.turn), degrees(angles.tilt));
}

} // namespace
} // namespace korvel::workbench
