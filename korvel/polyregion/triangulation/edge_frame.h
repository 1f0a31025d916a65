#pragma once

#include <algorithm>
#include <cmath>

#include "korvel/polyregion/triangulation/disk.h"
#include "korvel/polyregion/triangulation/oriented_box.h"
#include "korvel/polyregion/triangulation/region_points.h"

namespace korvel {

/// What bounds the radii of an edge's triangles from below. The triangle with p has its circle's
/// centre at the height h = (p − a)·(p − b) / (2 · height of p) over the middle of the edge, and
/// R² = (edge / 2)² + h².
///
/// The radius as Heron's formula computes it is smaller than R by a part that grows with R² / D²,
/// where D is the distance of p from the middle of the edge. From the ratio on at which that part
/// is `tolerance::flat_radius`, the bound stays that of the ratio. Within `tolerance::near_end` of
/// an end of the edge there is no bound. README.md derives both.
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
        rounding_ = tolerance::radius * points.extent() / length;
        flattest_ = std::clamp(tolerance::flat_radius / rounding_, tolerance::least_flatness,
                               tolerance::most_flatness);
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
    double bound(const OrientedBox& box, double height_of_centre, double spread) const {
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

    /// Contains all points on the left whose computed radius is at most `radius`, except those that
    /// the disks below contain: the disk of the circle through the ends of the edge with this
    /// radius and its centre on the left, enlarged for rounding.
    Disk disk(double radius) const {
        const double rise = std::sqrt(std::max(radius * radius - quarter_, 0.0));
        return {{middle_.x + rise * height.nx, middle_.y + rise * height.ny},
                (1 + tolerance::disk * (tolerance::near_radius + rounding_)) * radius};
    }
    /// Where there is no bound: next to an end.
    Disk end_disk(int end) const { return {end == a ? from_ : to_, tolerance::end_disk * length}; }
    /// Where the bound is that of a less flat triangle. One with a radius below half the edge
    /// excludes nothing: no point has so low a bound.
    Disk flat_disk(double radius) const {
        return {middle_, tolerance::flat_disk * radius / std::sqrt(flattest_)};
    }

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
        const double close =
            distance2 <= 16 * quarter_ ? tolerance::near_radius : tolerance::far_radius;
        // No division for the usual, rounder triangles.
        const double flatness = r2 <= 4 * from_middle2 ? 4 : r2 / from_middle2;
        return r2 * (1 - close - rounding_ * (1 + flatness));
    }

    /// A lower bound for the heights of the circles' centres that beats the quotient of the
    /// extremes for a box that lies along such a circle: with the centre at height h, the power of
    /// p is product − 2 h · height of p, and the circle through p has its centre higher than h by
    /// the power over 2 · height of p.
    double least_height(const OrientedBox& box, double height_of_centre, double spread) const {
        const auto product = [&](PlanePoint p) { return squared_distance(p, middle_) - quarter_; };
        const double h = product(box.centre) / (2 * height_of_centre);
        const PlanePoint nearest =
            box.nearest_to({middle_.x + h * height.nx, middle_.y + h * height.ny});
        const double power = product(nearest) - 2 * h * height.at(nearest);
        return h +
               power / (2 * (power < 0 ? height_of_centre - spread : height_of_centre + spread));
    }

    bool may_be_near_end(double product) const {
        return std::fabs(product) <= tolerance::near_end_power * quarter_;
    }
    bool is_near_end(const OrientedBox& box) const {
        const double reach = tolerance::near_end * length;
        return squared_distance(box.nearest_to(from_), from_) <= reach * reach ||
               squared_distance(box.nearest_to(to_), to_) <= reach * reach;
    }

    PlanePoint from_;
    PlanePoint to_;
    PlanePoint middle_;
    double quarter_;  ///< (edge / 2)²
    double rounding_; ///< relative, for a circle as wide as its point is far
    double flattest_; ///< R² / D² up to which a bound follows R
};

} // namespace korvel
