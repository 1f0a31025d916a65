#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

#include "korvel/polyregion/triangulation/region_points.h"
#include "korvel/polyregion/triangulation/slot_tree.h"

namespace korvel {

/// A box around points that lies along them: thin for those of an arc or of a spike.
struct OrientedBox {
    PlanePoint centre;
    double ux = 1; ///< the unit vector along the box; the other axis is (−uy, ux)
    double uy = 0;
    double along = 0; ///< half of the sizes
    double across = 0;

    /// Half the difference between the largest and the smallest value of a form in the box.
    double spread(const LineForm& form) const {
        return std::fabs(form.nx * ux + form.ny * uy) * along +
               std::fabs(form.ny * ux - form.nx * uy) * across;
    }
    /// A point in the axes of the box, from its centre.
    PlanePoint within(PlanePoint p) const {
        const double dx = p.x - centre.x;
        const double dy = p.y - centre.y;
        return {dx * ux + dy * uy, dy * ux - dx * uy};
    }
    PlanePoint nearest_to(PlanePoint p) const {
        const PlanePoint at = within(p);
        const double x = std::clamp(at.x, -along, along);
        const double y = std::clamp(at.y, -across, across);
        return {centre.x + x * ux - y * uy, centre.y + x * uy + y * ux};
    }
};

/// Boxes of a tree, two halves of one tested at once.
class OrientedBoxes {
public:
    void assign(int count) {
        for (std::vector<double>& values : values_) {
            values.assign(static_cast<std::size_t>(count), 0);
        }
    }
    void set(int number, const OrientedBox& box) {
        const auto at = static_cast<std::size_t>(number);
        values_[x][at] = box.centre.x;
        values_[y][at] = box.centre.y;
        values_[ux][at] = box.ux;
        values_[uy][at] = box.uy;
        values_[along][at] = box.along;
        values_[across][at] = box.across;
    }
    OrientedBox operator[](int number) const {
        const auto at = static_cast<std::size_t>(number);
        return {{values_[x][at], values_[y][at]},
                values_[ux][at],
                values_[uy][at],
                values_[along][at],
                values_[across][at]};
    }

    /// Those of two boxes in all of which a form is above a margin, and those where below −margin.
    struct Signs {
        unsigned above = 0;
        unsigned below = 0;
    };
    Signs signs(int first, const LineForm& form, double margin) const {
        const auto nx = TwoDoubles::both(form.nx);
        const auto ny = TwoDoubles::both(form.ny);
        const TwoDoubles middle =
            nx * two(x, first) + ny * two(y, first) + TwoDoubles::both(form.c);
        const TwoDoubles room =
            abs(nx * two(ux, first) + ny * two(uy, first)) * two(along, first) +
            abs(ny * two(ux, first) - nx * two(uy, first)) * two(across, first) +
            TwoDoubles::both(margin);
        return {middle > room, TwoDoubles::both(0) - middle > room};
    }
    /// Those of two boxes that are outside of a disk.
    unsigned outside(int first, const Disk& disk) const {
        const TwoDoubles dx = TwoDoubles::both(disk.centre.x) - two(x, first);
        const TwoDoubles dy = TwoDoubles::both(disk.centre.y) - two(y, first);
        const TwoDoubles off_along =
            positive_part(abs(dx * two(ux, first) + dy * two(uy, first)) - two(along, first));
        const TwoDoubles off_across =
            positive_part(abs(dy * two(ux, first) - dx * two(uy, first)) - two(across, first));
        return off_along * off_along + off_across * off_across >
               TwoDoubles::both(disk.radius * disk.radius);
    }

private:
    enum Value { x, y, ux, uy, along, across };

    TwoDoubles two(Value value, int first) const {
        return TwoDoubles::load(values_[value].data() + first);
    }

    std::array<std::vector<double>, 6> values_;
};

/// The box around some slots' points, at least one, turned to their direction of greatest spread
/// and `rounding` larger on every side.
OrientedBox box_around(const Coordinates& points, int first, int end, double rounding);

} // namespace korvel
