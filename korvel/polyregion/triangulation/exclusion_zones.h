#pragma once

#include <array>
#include <cmath>
#include <utility>

#include "korvel/polyregion/triangulation/point_tree.h"
#include "korvel/polyregion/triangulation/side_tree.h"

namespace korvel {

/// Convex zones in which no third corner of an edge's triangle can lie: behind a side, as seen from
/// an end of the edge, or where the triangle would contain a known point. A few signs exclude a
/// whole box of points.
///
/// Zones are narrowed by what rounding can reach: a corner in one certainly fails the exact tests.
/// Corners that the boundary joins with the edge are the exception: their new side is not held
/// against the boundary, so they are to be tested whether they lie in a zone or not.
class ExclusionZones {
public:
    explicit ExclusionZones(const RegionPoints& points) : points_(points) {}

    /// Starts over for the edge a → b.
    void start(int a, int b) {
        a_ = a;
        b_ = b;
        count_ = 0;
    }

    /// What a side of the boundary or the front hides from the ends of the edge.
    void add_side(const SideTree::ListedSide& side) {
        add_hidden(a_, side.p0, side.p1);
        add_hidden(b_, side.p0, side.p1);
    }

    /// The third corners whose triangles have the point inside.
    void add_inner_point(int inner) {
        const PlanePoint a = points_.local(a_);
        const PlanePoint b = points_.local(b_);
        const PlanePoint x = points_.local(inner);
        const double margin = tolerance::triangle_area * points_.area_margin();
        if (left_of(a, b).at(x) > margin) {
            add({before(left_of(a, x), margin), before(left_of(x, b), margin), {0, 0, 1}});
        }
    }

    bool cover(const OrientedBox& box) {
        return any(
            [&](const LineForm& bound) { return bound.at(box.centre) >= box.spread(bound); });
    }
    bool cover(PlanePoint p) {
        return any([&](const LineForm& bound) { return bound.at(p) >= 0; });
    }

private:
    /// A region where three forms are not negative.
    using Zone = std::array<LineForm, 3>;

    template <class Holds>
    bool any(Holds holds) {
        for (std::size_t i = 0; i < count_; ++i) {
            const Zone& zone = zones_[i];
            if (holds(zone[0]) && holds(zone[1]) && holds(zone[2])) {
                if (i > 0) { // what covers one covers the next
                    std::swap(zones_[i - 1], zones_[i]);
                }
                return true;
            }
        }
        return false;
    }

    void add(const Zone& zone) {
        if (count_ < zones_.size()) {
            zones_[count_++] = zone;
        }
    }

    static LineForm before(const LineForm& form, double margin) {
        return {form.nx, form.ny, form.c - margin};
    }
    static double size(PlanePoint from, PlanePoint to) {
        return std::fabs(to.x - from.x) + std::fabs(to.y - from.y);
    }

    /// What lies beyond the side u-v between the rays from an eye through u and v. With the eye and
    /// p at distances e and d from the side's line, the crossing test finds the meeting point
    /// along the side to rounding · extent · |eye − p| / (e + d), while a p at distance m inside of
    /// a ray puts that point at least m · e / (e + d) off the side's end.
    void add_hidden(int eye, int from, int to) {
        if (eye == from || eye == to) {
            return;
        }
        const PlanePoint e = points_.local(eye);
        PlanePoint u = points_.local(from);
        PlanePoint v = points_.local(to);
        double area = left_of(u, v).at(e);
        if (area < 0) {
            std::swap(u, v);
            area = -area;
        }
        const double length = size(u, v);
        const double line_margin = points_.line_margin() * length;
        if (!(area > line_margin)) {
            return;
        }
        const double ray_margin = points_.area_margin() * length / area;
        add({before(left_of(v, u), line_margin), before(left_of(e, u), ray_margin * size(e, u)),
             before(left_of(v, e), ray_margin * size(e, v))});
    }

    const RegionPoints& points_;
    int a_ = 0;
    int b_ = 0;
    std::array<Zone, 24> zones_;
    std::size_t count_ = 0;
};

} // namespace korvel
