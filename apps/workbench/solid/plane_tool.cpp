#include "apps/workbench/solid/plane_tool.h"

#include <algorithm>
#include <cmath>

#include <QCoreApplication>

#include "apps/workbench/document/document.h"
#include "apps/workbench/document/plane_range.h"
#include "apps/workbench/solid/plane_drawing.h"
#include "apps/workbench/solid/solid_view.h"

namespace korvel::workbench {

bool PlaneTool::press(const SolidMouse& mouse) {
    const auto plane = view_.document().section().plane();
    if (mouse.button != Qt::LeftButton || !plane || !hits(mouse, *plane)) {
        return false; // turns
    }
    drag_ = {*plane, mouse.u, mouse.v};
    return true;
}

bool PlaneTool::move(const SolidMouse& mouse) {
    if (drag_) {
        view_.document().section().try_plane(dragged_to(mouse));
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
    return true;
}

void PlaneTool::cancel() {
    if (drag_) {
        const kit::Plane before = drag_->plane;
        drag_.reset();
        view_.document().section().set_plane(before);
    }
}

QString PlaneTool::hint() const {
    return QCoreApplication::translate("PlaneTool",
                                       "Drag the plane or its handle; it moves along its normal");
}

// The handle, or the outline as it is seen.
bool PlaneTool::hits(const SolidMouse& mouse, const kit::Plane& plane) const {
    constexpr double reach = 8; // pixels
    const kit::Solids& solids = view_.document().solids().solids();
    const kit::Box box = solids.bounds();
    const PlaneHandle handle = plane_handle(plane, box);
    const kit::Point3 foot = solids.to_view(handle.foot);
    const kit::Point3 tip = solids.to_view(handle.tip);
    const double along_u = tip[0] - foot[0];
    const double along_v = tip[1] - foot[1];
    const double square = along_u * along_u + along_v * along_v;
    const double part =
        square > 0
            ? std::clamp(((mouse.u - foot[0]) * along_u + (mouse.v - foot[1]) * along_v) / square,
                         0.0, 1.0)
            : 0;
    if (std::hypot(mouse.u - foot[0] - part * along_u, mouse.v - foot[1] - part * along_v) <=
        reach * view_.frame().unit) {
        return true;
    }
    bool is_inside = false;
    const std::vector<kit::Point3> outline = plane_outline(plane, box);
    for (std::size_t k = 0; k < outline.size(); ++k) {
        const kit::Point3 a = solids.to_view(outline[k]);
        const kit::Point3 b = solids.to_view(outline[(k + 1) % outline.size()]);
        if ((a[1] > mouse.v) != (b[1] > mouse.v) &&
            mouse.u < a[0] + (mouse.v - a[1]) / (b[1] - a[1]) * (b[0] - a[0])) {
            is_inside = !is_inside;
        }
    }
    return is_inside;
}

// By the part of the mouse's way that is along the normal as it is seen. Where the normal points to
// the viewer, upward moves it forward.
kit::Plane PlaneTool::dragged_to(const SolidMouse& mouse) const {
    constexpr double steepest = 0.2;
    const kit::Plane& plane = drag_->plane;
    const kit::Solids& solids = view_.document().solids().solids();
    const double length = plane.normal_length();
    const kit::Point3 origin = solids.to_view({0, 0, 0});
    const kit::Point3 tip = solids.to_view({plane.a / length, plane.b / length, plane.c / length});
    const double along_u = tip[0] - origin[0];
    const double along_v = tip[1] - origin[1];
    const double seen = std::hypot(along_u, along_v);
    const double by_u = mouse.u - drag_->u;
    const double by_v = mouse.v - drag_->v;
    const double by = seen > steepest ? (by_u * along_u + by_v * along_v) / (seen * seen) : by_v;
    const PlaneRange range = range_of(plane, solids.bounds());
    const double place = place_of(plane.moved(by));
    return moved_to(plane, std::clamp(place, range.least, range.greatest));
}

} // namespace korvel::workbench
