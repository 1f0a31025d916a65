#pragma once

#include <optional>
#include <vector>

#include "korvel/region/curve_spans.h"

namespace korvel {

/// A point at which a segment meets another one.
struct Crossing {
    int segment = 0;  ///< index of the segment's first point in the point array
    double ratio = 0; ///< position on the segment: 0 at its first point, 1 at its second
};

/// Where the lines p1-p2 and p3-p4 cross, as ratios of their segments. False, with both ratios
/// untouched, for lines that are parallel.
bool line_crossing(const tagPOINT& p1, const tagPOINT& p2, double& r1, const tagPOINT& p3,
                   const tagPOINT& p4, double& r2);

/// Every crossing of a segment with another one that is not its neighbour on the same curve, ends
/// included, ascending by segment and ratio, each ratio of a segment once. Nothing when there are
/// more than `most` of them.
///
/// Cost: close to linear in segments plus crossings, by a grid of cells about as large as the
/// segments. In networks that span more than 2^25 units each segment longer than 2^51 units divided
/// by the span is compared with what lies along its whole line: of n segments spread over a square
/// about √n, in a narrow strip all.
std::optional<std::vector<Crossing>> find_crossings(const CArray<tagPOINT>& pts,
                                                    const CurveSpans& curves, int most);

} // namespace korvel
