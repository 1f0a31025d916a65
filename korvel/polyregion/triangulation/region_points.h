#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "korvel/plane/plane_point.h"
#include "korvel/polyregion/triangle_tests.h"
#include "korvel/polyregion/triangulation/tolerances.h"

namespace korvel {

/// nx·x + ny·y + c: a distance from a line times some scale.
struct LineForm {
    double nx = 0;
    double ny = 0;
    double c = 0;

    double at(PlanePoint p) const { return nx * p.x + ny * p.y + c; }
};

/// Twice the area of from-to-p, positive for p on the left.
inline LineForm left_of(PlanePoint from, PlanePoint to) {
    const double nx = from.y - to.y;
    const double ny = to.x - from.x;
    return {nx, ny, -(nx * from.x + ny * from.y)};
}

/// The distance on the left of the line through a point.
inline LineForm distance_left_of(PlanePoint on_line, Direction direction) {
    return {-direction.uy, direction.ux, direction.uy * on_line.x - direction.ux * on_line.y};
}

/// The vertices of a region: its distinct points, numbered in the order in which the rings first
/// list them.
///
/// Search structures use coordinates relative to vertex 0, so that they are as exact far from the
/// origin as near it. They decide only what their rounding cannot change; everything else is
/// decided by the exact tests on the points as given.
class RegionPoints {
public:
    static constexpr int none = -1;

    /// Starts over with at least one point.
    void start(const std::vector<PlanePoint>& pts) {
        pts_.assign(pts.begin(), pts.end());
        local_.clear();
        PlanePoint low = pts_.front();
        PlanePoint high = low;
        for (const PlanePoint& p : pts_) {
            low = {std::min(low.x, p.x), std::min(low.y, p.y)};
            high = {std::max(high.x, p.x), std::max(high.y, p.y)};
            local_.push_back({p.x - pts_.front().x, p.y - pts_.front().y});
        }
        extent_ = std::max(high.x - low.x, high.y - low.y);
    }

    int count() const { return static_cast<int>(pts_.size()); }
    PlanePoint at(int p) const { return pts_[p]; }
    PlanePoint local(int p) const { return local_[p]; }

    /// The larger side of the upright box around the points.
    double extent() const { return extent_; }
    /// A distance from a line below this may be rounding.
    double line_margin() const { return tolerance::line * extent_; }
    /// Twice an area below this may be rounding.
    double area_margin() const { return tolerance::area * extent_ * extent_; }

    bool is_inside(int a, int b, int c, int p) const {
        return p != a && p != b && p != c && strictly_inside(at(a), at(b), at(c), at(p));
    }

private:
    std::vector<PlanePoint> pts_;
    std::vector<PlanePoint> local_;
    double extent_ = 0;
};

} // namespace korvel
