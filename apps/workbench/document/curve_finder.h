#pragma once

#include <optional>
#include <vector>

#include "apps/workbench/document/curve_edits.h"
#include "apps/workbench/document/curves.h"

namespace korvel::workbench {

/// A place on a curve.
struct CurvePlace {
    enum class Kind { end, point, line };
    Kind kind = Kind::end;
    CurvePoint at = {};        ///< of a line the point that its segment starts from
    kit::GridPoint place = {}; ///< of a line the nearest point of the grid
    double distance = 0;       ///< in steps
};

/// What is looked for.
enum class Find { ends, points, places };

/// The place on a curve that is nearest to a point given in steps, at most `radius` steps away. An
/// end wins over every other point, and a point over every place within a line. Looks at curves
/// whose boxes are that close, and `except` at none.
std::optional<CurvePlace> find_place(const Curves& curves, const kit::Point2& point, double radius,
                                     Find find, const PointSet& except = {});

/// Points, and all other points at their places. Linear.
PointSet with_others_there(const Curves& curves, const PointSet& points);

/// All points of curves within a box.
PointSet points_in(const Curves& curves, const kit::BoxTree::Box& box);

} // namespace korvel::workbench
