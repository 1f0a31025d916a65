#pragma once

#include <algorithm>
#include <cmath>

#include "korvel/polyregion/triangulation/disk.h"
#include "korvel/polyregion/triangulation/region_points.h"
#include "korvel/polyregion/triangulation/turned_box.h"

namespace korvel {

/// What bounds the radii of an edge's triangles from below. The triangle with p has its circle's
/// centre at the height h = (p − a)·(p − b) / (2 · height of p) over the middle of the edge, and
/// R² = (edge / 2)² + h².
///
/// Rounding of the three lengths costs each factor of Heron's formula up to 2e-15 of the longest
/// side t, and in a triangle with the shortest side s the least factor is more than s t² / (96 R²).
/// So the radius as it is computed is below R by no more than 3e-13 (R² / D²) (extent / s), with D
/// the distance of p from the edge's middle. Where that reaches a thousandth, triangles that are
/// flatter still do not come out smaller. Away from the edge s is the edge; next to its ends it may
/// be as short as rounding is, and no bound holds.
class EdgeFrame {
public:
    EdgeFrame(const RegionPoints& points, int edge_a, int edge_b)
        : a(edge_a), b(edge_b), from_(points.local(a)), to_(points.local(b)) {
        const Direction along = direction_between(from_, to_);
        middle_ = {(from_.x + to_.x) / 2, (from_.y + to_.y) / 2};
        height = distance_left_of(from_, along);
        length = along.len;
        quarter_ = length * length / 4;
        margin = points.area_margin() / length + points.line_margin();
        rounding_ = 1e-11 * points.extent() / length;
        flattest_ = std::clamp(1e-3 / rounding_, 100.0, 1e6);
    }

    /// A lower bound for the square of the computed radius at a point.
    double bound(PlanePoint p, double height_of_p) const {
        const double distance2 = squared_distance(p, middle_);
        const double product = distance2 - quarter_;
        if (may_be_near_end(product) && is_near_end({p, 1, 0, 0, 0})) {
            return 0;
        }
        return bound_at(product / (2 * std::max(height_of_p, margin)), distance2);
    }

    /// The same for every point of a box.
    double bound(const TurnedBox& box, double height_of_centre, double spread) const {
        const PlanePoint at = box.within(middle_);
        const double near_x = std::max(std::fabs(at.x) - box.along, 0.0);
        const double near_y = std::max(std::fabs(at.y) - box.across, 0.0);
        const double far_x = std::fabs(at.x) + box.along;
        const double far_y = std::fabs(at.y) + box.across;
        const double nearest2 = near_x * near_x + near_y * near_y;
        const double farthest2 = far_x * far_x + far_y * far_y;
        // The nearest point of the box to the circle over the edge has the smallest |product|.
        const double product = nearest2 > quarter_    ? nearest2 - quarter_
                               : farthest2 < quarter_ ? farthest2 - quarter_
                                                      : 0;
        if (may_be_near_end(product) && is_near_end(box)) {
            return 0;
        }
        double h = product / (2 * std::max(height_of_centre + spread, margin));
        if (h > 0 && height_of_centre > 3 * spread && height_of_centre > 3 * margin) {
            h = std::max(h, least_height(box, height_of_centre, spread));
        }
        return bound_at(h, nearest2);
    }

    /// The circle over the edge with a radius of at least half of it and the centre on the left. It
    /// holds all points on the left with a bound of no more than the radius but for those that the
    /// disks below hold.
    Disk disk(double radius) const {
        const double rise = std::sqrt(std::max(radius * radius - quarter_, 0.0));
        return {{middle_.x + rise * height.nx, middle_.y + rise * height.ny},
                (1 + 4 * (1e-6 + rounding_)) * radius};
    }
    /// Where there is no bound, next to an end.
    Disk end_disk(int end) const { return {end == a ? from_ : to_, 1.01e-3 * length}; }
    /// Where the bound does not follow what is flatter. One of no more than half the edge is held
    /// by the other disk.
    Disk flat_disk(double radius) const { return {middle_, 1.01 * radius / std::sqrt(flattest_)}; }

    const int a;
    const int b;
    LineForm height; ///< over the edge, in the coordinates of the search
    double length;
    double margin; ///< heights below this may be rounding

private:
    static double squared_distance(PlanePoint p, PlanePoint q) {
        return (p.x - q.x) * (p.x - q.x) + (p.y - q.y) * (p.y - q.y);
    }

    double bound_at(double h, double distance2) const {
        const double from_middle2 = std::max(distance2, quarter_);
        const double r2 = std::min(quarter_ + h * h, flattest_ * from_middle2);
        const double close = distance2 <= 16 * quarter_ ? 1e-6 : 1e-9;
        // No division for the usual, rounder triangles.
        const double flatness = r2 <= 4 * from_middle2 ? 4 : r2 / from_middle2;
        return r2 * (1 - close - rounding_ * (1 + flatness));
    }

    /// A lower bound for the heights of the circles' centres that beats the quotient of the
    /// extremes for a box that lies along such a circle: with the centre at height h, the power of
    /// p is product − 2 h · height of p, and the circle through p has its centre higher than h by
    /// the power over 2 · height of p.
    double least_height(const TurnedBox& box, double height_of_centre, double spread) const {
        const auto product = [&](PlanePoint p) { return squared_distance(p, middle_) - quarter_; };
        const double h = product(box.centre) / (2 * height_of_centre);
        const PlanePoint nearest =
            box.nearest_to({middle_.x + h * height.nx, middle_.y + h * height.ny});
        const double power = product(nearest) - 2 * h * height.at(nearest);
        return h +
               power / (2 * (power < 0 ? height_of_centre - spread : height_of_centre + spread));
    }

    bool may_be_near_end(double product) const {
        constexpr double near = 8.1e-3; // beyond (2 · 1e-3 + 1e-6) · 4
        return std::fabs(product) <= near * quarter_;
    }
    /// Within a thousandth of the edge's length.
    bool is_near_end(const TurnedBox& box) const {
        return squared_distance(box.nearest_to(from_), from_) <= 4e-6 * quarter_ ||
               squared_distance(box.nearest_to(to_), to_) <= 4e-6 * quarter_;
    }

    PlanePoint from_;
    PlanePoint to_;
    PlanePoint middle_;
    double quarter_;  ///< (edge / 2)²
    double rounding_; ///< relative, for a circle as wide as its point is far
    double flattest_; ///< R² / D² up to which a bound follows R
};

} // namespace korvel
