#include "korvel/region/crossings.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <numeric>
#include <utility>

#include "korvel/platform/check_point.h"
#include "korvel/region/segment_grid.h"

namespace korvel {
namespace {

/// Where the lines p1-p2 and p3-p4 cross: each ratio is a part divided by the whole.
struct LineMeeting {
    double part1;
    double part2;
    double whole;

    LineMeeting(const tagPOINT& p1, const tagPOINT& p2, const tagPOINT& p3, const tagPOINT& p4) {
        const double dx1 = static_cast<double>(p2.x) - p1.x;
        const double dy1 = static_cast<double>(p2.y) - p1.y;
        const double dx2 = static_cast<double>(p4.x) - p3.x;
        const double dy2 = static_cast<double>(p4.y) - p3.y;
        const double ex = static_cast<double>(p3.x) - p1.x;
        const double ey = static_cast<double>(p3.y) - p1.y;
        whole = dy2 * dx1 - dx2 * dy1;
        part1 = ex * dy2 - ey * dx2;
        part2 = ex * dy1 - ey * dx1;
    }

    bool is_parallel() const {
        constexpr double parallel = 1e-8;
        return std::fabs(whole) < parallel;
    }
    /// Whether both ratios lie in 0 … 1. A quotient rounds to more than 1 exactly when its dividend
    /// is the larger one.
    bool is_within_both() const { return is_within(part1) && is_within(part2); }

private:
    bool is_within(double part) const {
        return whole > 0 ? part >= 0 && part <= whole : part <= 0 && part >= whole;
    }
};

/// Collects crossings; what piles up at busy points is sorted and thinned now and then, so that
/// memory follows the distinct crossings and not the pairs that meet in them.
class CrossingList {
public:
    CrossingList(int points, int most)
        : most_(static_cast<std::size_t>(std::max(most, 0))),
          ends_met_(static_cast<std::size_t>(points)) {}

    /// Whether there turned out to be too many; further tests then add nothing.
    bool is_full() const { return is_full_; }

    void test(const CArray<tagPOINT>& pts, int a, int b);
    std::optional<std::vector<Crossing>> take();

private:
    void add(const Crossing& crossing);
    void thin();

    std::size_t most_;
    bool is_full_ = false;
    std::vector<char> ends_met_; ///< of the segment from each point: 1 its first, 2 its second
    std::vector<Crossing> found_;
    std::size_t thin_at_ = std::size_t{1} << 20U;
};

/// All segments of a network, each named by the index of its first point, and the box around them.
struct Segments {
    Segments(const CArray<tagPOINT>& pts, const CurveSpans& curves);

    std::vector<int> first_points;
    IntBox box;
};

std::int64_t longest_exact_segment(const IntBox& box);
std::int64_t segment_span(const CArray<tagPOINT>& pts, int p);

} // namespace

std::optional<std::vector<Crossing>> find_crossings(const CArray<tagPOINT>& pts,
                                                    const CurveSpans& curves, int most) {
    const Segments segments(pts, curves);
    if (segments.first_points.empty()) {
        return std::vector<Crossing>();
    }
    CrossingList crossings(pts.GetSize(), most);
    const SegmentGrid grid(pts, segments.first_points, segments.box);
    grid.for_each_close_pair([&](int a, int b) { crossings.test(pts, a, b); },
                             [&] { return crossings.is_full(); });
    // Where rounding can make far segments cross, it moves no segment by more than 2^-17 units from
    // the other one's line.
    const std::int64_t longest = longest_exact_segment(segments.box);
    const auto is_short = [&](int p) { return segment_span(pts, p) <= longest; };
    std::vector<int> tested_with(static_cast<std::size_t>(pts.GetSize()), -1);
    for (std::size_t i = 0; i < segments.first_points.size(); ++i) {
        const int a = segments.first_points[i];
        if (!is_short(a) && !crossings.is_full()) {
            grid.for_each_on_line(a, [&](int b) {
                const bool is_new = std::exchange(tested_with[b], a) != a;
                if (is_new && (b < a || is_short(b))) {
                    crossings.test(pts, a, b);
                }
            });
            check_point("testing long segments", static_cast<long long>(i) + 1,
                        static_cast<long long>(segments.first_points.size()));
        }
    }
    return crossings.take();
}

bool line_crossing(const tagPOINT& p1, const tagPOINT& p2, double& r1, const tagPOINT& p3,
                   const tagPOINT& p4, double& r2) {
    const LineMeeting meeting(p1, p2, p3, p4);
    if (meeting.is_parallel()) {
        return false;
    }
    r1 = meeting.part1 / meeting.whole;
    r2 = meeting.part2 / meeting.whole;
    return true;
}

namespace {

Segments::Segments(const CArray<tagPOINT>& pts, const CurveSpans& curves) {
    for (int curve = 0; curve < curves.size(); ++curve) {
        for (int p = curves.start(curve); p + 1 < curves.end(curve); ++p) {
            first_points.push_back(p);
            box.include(pts[p]);
            box.include(pts[p + 1]);
        }
    }
}

/// Up to this length the crossing formula's products, of a difference of coordinates anywhere in
/// the network and one along a segment, have exact sums in double. Segments then cross by the
/// formula exactly when they do, and only where their boxes meet.
std::int64_t longest_exact_segment(const IntBox& box) {
    constexpr std::int64_t exact_product = std::int64_t{1} << 51;
    const std::int64_t span = std::max(static_cast<std::int64_t>(box.x_max) - box.x_min,
                                       static_cast<std::int64_t>(box.y_max) - box.y_min);
    // Divided, since the product of two spans may not fit 64 bits.
    return exact_product / std::max<std::int64_t>(span, 1);
}

/// The larger side of the box around a segment.
std::int64_t segment_span(const CArray<tagPOINT>& pts, int p) {
    return std::max(std::abs(static_cast<std::int64_t>(pts[p + 1].x) - pts[p].x),
                    std::abs(static_cast<std::int64_t>(pts[p + 1].y) - pts[p].y));
}

void CrossingList::test(const CArray<tagPOINT>& pts, int a, int b) {
    // A segment and its two neighbours on the same curve do not split each other. The segments
    // on both sides of the step from one curve to the next are two apart.
    if (std::abs(a - b) <= 1) {
        return;
    }
    // The formula is symmetric to the last bit, so one test serves both segments.
    const LineMeeting meeting(pts[a], pts[a + 1], pts[b], pts[b + 1]);
    if (!meeting.is_parallel() && meeting.is_within_both()) {
        add({a, meeting.part1 / meeting.whole});
        add({b, meeting.part2 / meeting.whole});
        if (found_.size() >= thin_at_) {
            thin();
            thin_at_ = std::max(thin_at_, 2 * found_.size());
        }
    }
}

/// Adds a crossing; one at an end of its segment, where busy points are, only the first time.
void CrossingList::add(const Crossing& crossing) {
    if (crossing.ratio == 0 || crossing.ratio == 1) {
        char& ends_met = ends_met_[crossing.segment];
        const char end = crossing.ratio == 0 ? 1 : 2;
        if ((ends_met & end) != 0) {
            return;
        }
        ends_met = static_cast<char>(ends_met | end);
    }
    found_.push_back(crossing);
}

/// Sorts by segment and ratio, and keeps each ratio of a segment once.
void CrossingList::thin() {
    // Laid out by segment first: most segments have a few crossings at most.
    std::vector<std::size_t> ends(ends_met_.size() + 1, 0);
    for (const Crossing& crossing : found_) {
        ++ends[crossing.segment + 1];
    }
    std::partial_sum(ends.begin(), ends.end(), ends.begin());
    std::vector<double> ratios(found_.size());
    for (const Crossing& crossing : found_) {
        ratios[ends[crossing.segment]++] = crossing.ratio;
    }
    found_.clear();
    auto ratio = ratios.begin();
    for (std::size_t segment = 0; segment + 1 < ends.size(); ++segment) {
        const auto end = ratios.begin() + static_cast<std::ptrdiff_t>(ends[segment]);
        std::sort(ratio, end);
        for (const auto last = std::unique(ratio, end); ratio != last; ++ratio) {
            found_.push_back({static_cast<int>(segment), *ratio});
        }
        ratio = end;
    }
    is_full_ = is_full_ || found_.size() > most_;
}

std::optional<std::vector<Crossing>> CrossingList::take() {
    thin();
    return is_full_ ? std::nullopt : std::optional(std::move(found_));
}

} // namespace
} // namespace korvel
