#include "apps/workbench/solid/plane_drawing.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <qopengl.h>

#include "apps/workbench/document/plane_range.h"

namespace korvel::workbench {
namespace {

kit::Box enlarged(const kit::Box& box);
double size_of(const kit::Box& box);
void put_corners(const kit::Solids& solids, const std::vector<kit::Point3>& corners);
void draw_handle(const kit::Solids& solids, const PlaneHandle& handle);

} // namespace

void draw_plane(const kit::Solids& solids, const kit::Plane& plane) {
    constexpr std::array<float, 4> face = {0.2F, 0.5F, 1.0F, 0.3F};
    constexpr std::array<float, 3> line = {0.1F, 0.3F, 0.8F};
    const kit::Box box = solids.bounds();
    const std::vector<kit::Point3> outline = plane_outline(plane, box);
    if (outline.empty()) {
        return;
    }
    glPushAttrib(GL_ENABLE_BIT | GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_CURRENT_BIT |
                 GL_LINE_BIT | GL_POINT_BIT);
    glEnable(GL_DEPTH_TEST);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glDepthMask(GL_FALSE);
    glColor4fv(face.data());
    glBegin(GL_POLYGON);
    put_corners(solids, outline);
    glEnd();
    glDisable(GL_BLEND);
    glColor3fv(line.data());
    glLineWidth(2);
    glBegin(GL_LINE_LOOP);
    put_corners(solids, outline);
    glEnd();
    glDisable(GL_DEPTH_TEST);
    draw_handle(solids, plane_handle(plane, box));
    glPopAttrib();
}

// The corners of the cut through the box's twelve edges, in the order of their angles.
std::vector<kit::Point3> plane_outline(const kit::Plane& plane, const kit::Box& box) {
    if (box.is_empty()) {
        return {};
    }
    const kit::Box around = enlarged(box);
    const auto corner = [&](unsigned number) {
        kit::Point3 point = around.low;
        for (std::size_t k = 0; k < point.size(); ++k) {
            if ((number >> k & 1U) != 0) {
                point[k] = around.high[k];
            }
        }
        return point;
    };
    std::vector<kit::Point3> points;
    for (unsigned from = 0; from < 8; ++from) {
        for (unsigned axis = 1; axis < 8; axis *= 2) {
            const kit::Point3 a = corner(from);
            const kit::Point3 b = corner(from | axis);
            const double at_a = plane.distance(a);
            const double at_b = plane.distance(b);
            if ((from & axis) != 0 || (at_a > 0) == (at_b > 0)) {
                continue;
            }
            const double part = at_a / (at_a - at_b);
            points.push_back({a[0] + part * (b[0] - a[0]), a[1] + part * (b[1] - a[1]),
                              a[2] + part * (b[2] - a[2])});
        }
    }
    const kit::PlaneAxes axes(plane);
    const kit::Point2 middle = axes.seen(middle_of(plane, box));
    std::ranges::sort(points, {}, [&](const kit::Point3& point) {
        const kit::Point2 seen = axes.seen(point);
        return std::atan2(seen[1] - middle[1], seen[0] - middle[0]);
    });
    return points;
}

PlaneHandle plane_handle(const kit::Plane& plane, const kit::Box& box) {
    constexpr double part = 0.2;
    const kit::Point3 foot = middle_of(plane, box);
    const double factor = part * size_of(box) / plane.normal_length();
    return {foot,
            {foot[0] + factor * plane.a, foot[1] + factor * plane.b, foot[2] + factor * plane.c}};
}

namespace {

kit::Box enlarged(const kit::Box& box) {
    constexpr double part = 0.05;
    const double by = part * size_of(box);
    kit::Box around = box;
    for (std::size_t k = 0; k < around.low.size(); ++k) {
        around.low[k] -= by;
        around.high[k] += by;
    }
    return around;
}

double size_of(const kit::Box& box) {
    return std::max({box.high[0] - box.low[0], box.high[1] - box.low[1], box.high[2] - box.low[2]});
}

void put_corners(const kit::Solids& solids, const std::vector<kit::Point3>& corners) {
    for (const kit::Point3& corner : corners) {
        glVertex3dv(solids.to_view(corner).data());
    }
}

void draw_handle(const kit::Solids& solids, const PlaneHandle& handle) {
    constexpr std::array<float, 3> colour = {0.9F, 0.4F, 0.0F};
    constexpr float tip_size = 12;
    const kit::Point3 foot = solids.to_view(handle.foot);
    const kit::Point3 tip = solids.to_view(handle.tip);
    glColor3fv(colour.data());
    glLineWidth(3);
    glBegin(GL_LINES);
    glVertex3dv(foot.data());
    glVertex3dv(tip.data());
    glEnd();
    glPointSize(tip_size);
    glBegin(GL_POINTS);
    glVertex3dv(tip.data());
    glEnd();
}

} // namespace
} // namespace korvel::workbench
