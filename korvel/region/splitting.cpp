// Splitting of the curves where they meet.

#include <algorithm>
#include <atomic>
#include <limits>

#include "korvel/plane/device_point.h"
#include "korvel/region/cregion.h"
#include "korvel/region/crossing_limit.h"
#include "korvel/region/crossings.h"

using korvel::CurveSpans;

// A DLL does not export the constant of an exported class unless it is defined outside of it.
constexpr int CREGION::no_crossing_limit; // NOLINT(readability-redundant-declaration)

namespace {

std::atomic<int> process_limit = CREGION::no_crossing_limit;
thread_local korvel::ThreadOverride<korvel::CrossingLimitOverride::State>* thread_limit = nullptr;

int most_crossings();
tagPOINT split_point(const tagPOINT& from, const tagPOINT& to, double ratio);

} // namespace

void CREGION::SplitPureCurve() {
    curve_pts.SetSize(0, 50);
    curve_counts.SetSize(0, 50);
    is_over_crossing_limit_ = false;
    if (input_pts == nullptr || input_counts == nullptr) {
        return;
    }
    FilterNonLenSegment(input_pts, input_counts);
    FilterRedundantCurve(input_pts, input_counts);

    const CurveSpans curves(*input_pts, *input_counts);
    // Each crossing adds two points, which must all be counted.
    const int most_counted = (std::numeric_limits<int>::max() - input_pts->GetSize()) / 2;
    const auto crossings =
        korvel::find_crossings(*input_pts, curves, std::min(most_crossings(), most_counted));
    if (!crossings) {
        is_over_crossing_limit_ = true;
        if (thread_limit != nullptr) {
            thread_limit->value.was_exceeded = true;
        }
        return;
    }

    // A ratio of 0 or 1 leaves a repeated point or a one-point piece behind; they stay until the
    // curve ends are snapped.
    const auto splits = static_cast<int>(crossings->size());
    curve_pts.SetSize(curves.end(curves.size() - 1) + 2 * splits);
    curve_counts.SetSize(curves.size() + splits);
    tagPOINT* next = begin(curve_pts);
    const tagPOINT* piece = next;
    int* next_count = begin(curve_counts);
    const auto close_piece = [&] {
        *next_count++ = static_cast<int>(next - piece);
        piece = next;
    };
    auto crossing = crossings->begin();
    for (int curve = 0; curve < curves.size(); ++curve) {
        for (int p = curves.start(curve); p < curves.end(curve); ++p) {
            *next++ = (*input_pts)[p];
            for (; crossing != crossings->end() && crossing->segment == p; ++crossing) {
                const tagPOINT split =
                    split_point((*input_pts)[p], (*input_pts)[p + 1], crossing->ratio);
                *next++ = split;
                close_piece();
                *next++ = split;
            }
        }
        close_piece();
    }
}

namespace {

int most_crossings() {
    return thread_limit != nullptr ? thread_limit->value.most : process_limit.load();
}

/// The point at a ratio of a segment, truncated toward zero.
tagPOINT split_point(const tagPOINT& from, const tagPOINT& to, double ratio) {
    tagPOINT pt{};
    pt.x = korvel::device_coordinate((static_cast<double>(to.x) - from.x) * ratio + from.x);
    pt.y = korvel::device_coordinate((static_cast<double>(to.y) - from.y) * ratio + from.y);
    return pt;
}

} // namespace

int CREGION::set_crossing_limit(int crossings) {
    return process_limit.exchange(crossings);
}

korvel::CrossingLimitOverride::CrossingLimitOverride(int crossings)
    : override_(thread_limit, {crossings, false}) {}

korvel::CrossingLimitOverride::~CrossingLimitOverride() = default;

bool korvel::CrossingLimitOverride::was_exceeded() const {
    return override_.value.was_exceeded;
}

bool CREGION::has_exceeded_crossing_limit() const {
    return is_over_crossing_limit_;
}

int CREGION::CalcSegmentIntersectRatio(tagPOINT p1, tagPOINT p2, double& r1, tagPOINT p3,
                                       tagPOINT p4, double& r2) {
    return korvel::line_crossing(p1, p2, r1, p3, p4, r2) ? 1 : 0;
}
