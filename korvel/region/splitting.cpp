// Splitting of the curves where they meet.

#include <utility>

#include "korvel/geometry/device_point.h"
#include "korvel/geometry/list_index.h"
#include "korvel/region/cregion.h"
#include "korvel/region/crossings.h"

using korvel::CurveSpans;

namespace {

// A crossing costs about 300 bytes by the time regions stand.
int most_crossings = 10'000'000;

/// Pieces of curves, one after another.
struct Pieces {
    std::vector<tagPOINT> pts;
    std::vector<int> counts;
    std::size_t piece_start = 0;

    void add(tagPOINT pt) { pts.push_back(pt); }
    void close() {
        counts.push_back(static_cast<int>(pts.size() - piece_start));
        piece_start = pts.size();
    }
};

/// The point at a ratio of a segment, truncated toward zero.
tagPOINT split_point(const tagPOINT& from, const tagPOINT& to, double ratio) {
    tagPOINT pt{};
    pt.x = korvel::device_coordinate((static_cast<double>(to.x) - from.x) * ratio + from.x);
    pt.y = korvel::device_coordinate((static_cast<double>(to.y) - from.y) * ratio + from.y);
    return pt;
}

} // namespace

int CREGION::set_crossing_limit(int crossings) {
    return std::exchange(most_crossings, crossings);
}

void CREGION::SplitPureCurve() {
    curve_pts.SetSize(0, 50);
    curve_counts.SetSize(0, 50);
    if (input_pts == nullptr || input_counts == nullptr) {
        return;
    }
    FilterNonLenSegment(input_pts, input_counts);
    FilterRedundantCurve(input_pts, input_counts);

    const CurveSpans curves(*input_pts, *input_counts);
    const auto crossings = korvel::find_crossings(*input_pts, curves, most_crossings);
    if (!crossings) {
        return;
    }

    // A ratio of 0 or 1 leaves a repeated point or a one-point piece behind; they stay until the
    // curve ends are snapped.
    Pieces pieces;
    auto crossing = crossings->begin();
    for (int curve = 0; curve < curves.size(); ++curve) {
        for (int p = curves.start(curve); p < curves.end(curve); ++p) {
            pieces.add((*input_pts)[p]);
            for (; crossing != crossings->end() && crossing->segment == p; ++crossing) {
                const tagPOINT split =
                    split_point((*input_pts)[p], (*input_pts)[p + 1], crossing->ratio);
                pieces.add(split);
                pieces.close();
                pieces.add(split);
            }
        }
        pieces.close();
    }
    korvel::assign_list(curve_pts, pieces.pts);
    korvel::assign_list(curve_counts, pieces.counts);
}

int CREGION::CalcSegmentIntersectRatio(tagPOINT p1, tagPOINT p2, double& r1, tagPOINT p3,
                                       tagPOINT p4, double& r2) {
    return korvel::line_crossing(p1, p2, r1, p3, p4, r2) ? 1 : 0;
}
