#include "apps/workbench/solid/plane_drawing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include <qopengl.h>

#include "apps/workbench/document/plane_range.h"

namespace korvel::workbench {
namespace {

kit::Box enlarged(const kit::Box& box);
double size_of(const kit::Box& box);
void put_corners(const kit::Solids& solids, const std::vector<kit::Point3>& corners);
void draw_line(const kit::Point3& from, const kit::Point3& to);
void draw_arrow(const kit::Point3& foot, const kit::Point3& tip, double unit, bool is_thick);
void draw_circle(GLenum mode, const kit::Point3& middle, double radius);

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
    glPopAttrib();
}

// In the depth of the foot, as the end of a long normal may be outside of what is drawn.
void draw_plane_handle(const kit::Solids& solids, const PlaneHandle& handle, double unit,
                       PlanePart under_mouse, bool is_turned) {
    constexpr std::array<float, 3> turning = {0.5F, 0.1F, 0.6F};
    constexpr std::array<float, 3> turning_hovered = {0.8F, 0.3F, 0.9F};
    constexpr double knob = 6; // pixels
    const kit::Point3 foot = solids.to_view(handle.foot);
    kit::Point3 tip = solids.to_view(handle.tip);
    kit::Point3 end = solids.to_view(handle.end);
    tip[2] = end[2] = foot[2];
    const bool is_end = under_mouse == PlanePart::end;
    const auto& colour = is_end ? turning_hovered : turning;
    glPushAttrib(GL_ENABLE_BIT | GL_CURRENT_BIT | GL_LINE_BIT);
    glDisable(GL_DEPTH_TEST);
    glColor3fv(colour.data());
    glLineWidth(1.5F);
    if (is_turned) {
        draw_circle(GL_LINE_LOOP, foot, handle.radius);
    }
    draw_line(foot, end);
    draw_arrow(foot, tip, unit, under_mouse == PlanePart::plane);
    const double radius = (is_end ? knob + 2 : knob) * unit;
    glColor3f(1, 1, 1);
    draw_circle(GL_POLYGON, end, radius + 2 * unit);
    glColor3fv(colour.data());
    draw_circle(GL_POLYGON, end, radius);
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

PlaneHandle plane_handle(const kit::Plane& plane, const kit::Box& box, const kit::Point3& foot) {
    constexpr double arrow = 0.2;
    constexpr double end = 0.3;
    const double size = size_of(box);
    const auto along = [&](double part) {
        const double factor = part * size / plane.normal_length();
        return kit::Point3{foot[0] + factor * plane.a, foot[1] + factor * plane.b,
                           foot[2] + factor * plane.c};
    };
    return {foot, along(arrow), along(end), end * size};
}

PlaneHandle plane_handle(const kit::Plane& plane, const kit::Box& box) {
    return plane_handle(plane, box, middle_of(plane, box));
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

void draw_line(const kit::Point3& from, const kit::Point3& to) {
    glBegin(GL_LINES);
    glVertex3dv(from.data());
    glVertex3dv(to.data());
    glEnd();
}

void draw_arrow(const kit::Point3& foot, const kit::Point3& tip, double unit, bool is_thick) {
    constexpr std::array<float, 3> colour = {0.9F, 0.4F, 0.0F};
    constexpr std::array<float, 3> hovered = {1.0F, 0.6F, 0.1F};
    constexpr double head = 12; // pixels
    const double along_u = tip[0] - foot[0];
    const double along_v = tip[1] - foot[1];
    const double length = std::hypot(along_u, along_v);
    glColor3fv((is_thick ? hovered : colour).data());
    glLineWidth(is_thick ? 5 : 3);
    draw_line(foot, tip);
    if (!(length > 0)) {
        return; // points to the viewer
    }
    const double size = std::min(head * unit, length);
    const double u = size * along_u / length;
    const double v = size * along_v / length;
    glBegin(GL_TRIANGLES);
    glVertex3d(tip[0] + u / 2, tip[1] + v / 2, tip[2]);
    glVertex3d(tip[0] - u / 2 - v / 2, tip[1] - v / 2 + u / 2, tip[2]);
    glVertex3d(tip[0] - u / 2 + v / 2, tip[1] - v / 2 - u / 2, tip[2]);
    glEnd();
}

void draw_circle(GLenum mode, const kit::Point3& middle, double radius) {
    constexpr int corners = 48;
    glBegin(mode);
    for (int k = 0; k < corners; ++k) {
        const double angle = 2 * std::numbers::pi * k / corners;
        glVertex3d(middle[0] + radius * std::cos(angle), middle[1] + radius * std::sin(angle),
                   middle[2]);
    }
    glEnd();
}

} // namespace
} // namespace korvel::workbench
