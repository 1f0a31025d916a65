#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "apps/workbench/document/curves.h"

// What tools make of curves. Points of a curve are numbered from 0.

namespace korvel::workbench {

/// Points of curves, by the numbers of these.
using PointSet = std::map<int, std::set<int>>;

/// The parts of a curve before and behind a point, which both have; the curve alone for an end. A
/// closed curve becomes one that starts and ends there.
std::vector<Curve> cut(const Curve& curve, int point);

/// The parts between several points, in the order of the curve. A closed curve is cut in as many
/// parts as it has points of these.
std::vector<Curve> cut(const Curve& curve, const std::set<int>& points);

/// A curve with another point in its segment `segment`, between its points of that number and the
/// next.
Curve with_point(Curve curve, int segment, const kit::GridPoint& point);

/// A curve without some of its points, closed if it was; nothing if less than two points are left.
std::optional<Curve> without(const Curve& curve, const std::set<int>& points);

Curve reversed(Curve curve);

/// Two curves as one from an end of `a` to an end of `b`: the first points, or the last ones where
/// it is said so. A straight line connects ends that are apart.
Curve joined(Curve a, bool at_end_of_a, Curve b, bool at_end_of_b);

/// A curve that ends where it starts, by a straight line if its ends are apart.
Curve closed(Curve curve);

// Changes for `MapModel::change_curves`.

/// Moves points by so many steps; both ends of a closed curve move together.
std::vector<CurveChange> moved(const Curves& curves, const PointSet& points,
                               const kit::GridPoint& by);

/// The steps from one point to another, as far as 32 bits hold them.
kit::GridPoint way_between(const kit::GridPoint& from, const kit::GridPoint& to);

/// Removes points, and curves with less than two left.
std::vector<CurveChange> without(const Curves& curves, const PointSet& points);

/// A point of a curve, by the numbers of both.
struct CurvePoint {
    int curve = 0;
    int point = 0;

    friend bool operator==(const CurvePoint&, const CurvePoint&) = default;
    friend bool operator<(const CurvePoint& a, const CurvePoint& b) {
        return a.curve != b.curve ? a.curve < b.curve : a.point < b.point;
    }
};

/// Joins two ends of curves, which are points of the numbers 0 or the last: the joined curve takes
/// the place of the first of both. Two ends of the same curve close it. Nothing for other points.
std::vector<CurveChange> joined(const Curves& curves, const CurvePoint& a, const CurvePoint& b);

} // namespace korvel::workbench
