#include "korvel/region/crossings.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <numeric>
#include <utility>

#include "korvel/plane/live_points.h"

namespace korvel {
namespace {

/// Up to this size the crossing formula's products, of a difference of coordinates anywhere in the
/// network and one along a segment, have exact sums in double. Segments then cross by the formula
/// exactly when they do, and only where their boxes meet.
constexpr std::int64_t exact_product = std::int64_t{1} << 51;

/// The larger side of the box around a segment.
std::int64_t segment_span(const CArray<tagPOINT>& pts, int p) {
    return std::max(std::abs(static_cast<std::int64_t>(pts[p + 1].x) - pts[p].x),
                    std::abs(static_cast<std::int64_t>(pts[p + 1].y) - pts[p].y));
}

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

    void test(const CArray<tagPOINT>& pts, int a, int b) {
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

    std::optional<std::vector<Crossing>> take() {
        thin();
        return is_full_ ? std::nullopt : std::optional(std::move(found_));
    }

private:
    /// Adds a crossing; one at an end of its segment, where busy points are, only the first time.
    void add(const Crossing& crossing) {
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
    void thin() {
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

    std::size_t most_;
    bool is_full_ = false;
    std::vector<char> ends_met_; ///< of the segment from each point: 1 its first, 2 its second
    std::vector<Crossing> found_;
    std::size_t thin_at_ = std::size_t{1} << 20U;
};

/// A box within a square cell, in one word: four numbers of 15 bits, each with a spare bit above
/// it. They may be coarser than coordinates; then boxes may seem to meet that just miss.
class CellBox {
public:
    CellBox() = default;
    /// What lies of a box in the cell of 2^shift units each way from (x, y) on, its far borders
    /// included; the nearest border of a box beside it.
    CellBox(const IntBox& box, std::int64_t x, std::int64_t y, int shift)
        : highs_and_lows_(scaled(box.x_max - x, shift) | scaled(box.y_max - y, shift) << 16U |
                          (size(shift) - scaled(box.x_min - x, shift)) << 32U |
                          (size(shift) - scaled(box.y_min - y, shift)) << 48U) {}

    /// A box to compare many of the same cell with.
    class Mask {
    public:
        Mask(CellBox box, int shift)
            : lows_and_highs_(ones * size(shift) - std::rotl(box.highs_and_lows_, 32)) {}

        /// Each high against the other's low: nothing is borrowed from the spare bits.
        bool meets(CellBox other) const {
            return (((other.highs_and_lows_ | spare_bits) - lows_and_highs_) & spare_bits) ==
                   spare_bits;
        }

    private:
        std::uint64_t lows_and_highs_;
    };

private:
    static constexpr std::uint64_t ones = 0x0001'0001'0001'0001U;
    static constexpr std::uint64_t spare_bits = 0x8000 * ones;
    static constexpr int most_bits = 14;

    static std::uint64_t size(int shift) {
        return std::uint64_t{1} << static_cast<unsigned>(std::min(shift, most_bits));
    }
    static std::uint64_t scaled(std::int64_t from_corner, int shift) {
        const std::int64_t clipped =
            std::clamp(from_corner, std::int64_t{0}, std::int64_t{1} << shift);
        return static_cast<std::uint64_t>(clipped >> std::max(shift - most_bits, 0));
    }

    std::uint64_t highs_and_lows_ = 0;
};

/// Square cells over the network, each with the segments that pass through it. Cells are a power of
/// two wide and borders are integers, so that the cell of a point is exact.
class SegmentGrid {
public:
    SegmentGrid(const CArray<tagPOINT>& pts, const std::vector<int>& segments, const IntBox& box)
        : pts_(pts), segments_(segments), box_(box) {
        choose_cell_size();
        ends_.assign(static_cast<std::size_t>(columns_ * rows_) + 1, 0);
        for (const int segment : segments) {
            for_each_cell(segment, [&](std::int64_t column, std::int64_t row) {
                ++ends_[cell(column, row) + 1];
            });
        }
        std::partial_sum(ends_.begin(), ends_.end(), ends_.begin());
        entries_.resize(ends_.back());
        for (const int segment : segments) {
            const IntBox around = segment_box(segment);
            for_each_cell(segment, [&](std::int64_t column, std::int64_t row) {
                const CellBox part(around, box_.x_min + (column << shift_),
                                   box_.y_min + (row << shift_), shift_);
                entries_[ends_[cell(column, row)]++] = {part, segment};
            });
        }
    }

    /// Calls `test(a, b)` at least once for each pair of segments whose boxes meet within a shared
    /// cell, as those of all that cross in truth do, until `is_enough()`.
    template <class Test, class IsEnough>
    void for_each_close_pair(Test test, IsEnough is_enough) const {
        std::size_t start = 0;
        for (std::size_t cell = 0; cell + 1 < ends_.size() && !is_enough(); ++cell) {
            for (std::size_t i = start; i < ends_[cell]; ++i) {
                const CellBox::Mask mask(entries_[i].box, shift_);
                for (std::size_t j = start; j < i; ++j) {
                    if (mask.meets(entries_[j].box)) {
                        test(entries_[i].segment, entries_[j].segment);
                    }
                }
            }
            start = ends_[cell];
        }
    }

    /// Calls `visit(b)` at least once for each segment that comes within a thousandth of a unit of
    /// the whole line through a.
    template <class Visit>
    void for_each_on_line(int a, Visit visit) const {
        if (columns_ + rows_ > static_cast<std::int64_t>(segments_.size())) { // a narrow network
            std::for_each(segments_.begin(), segments_.end(), visit);
            return;
        }
        for_each_cell_on_line(a, box_, [&](std::int64_t column, std::int64_t row) {
            const std::size_t here = cell(column, row);
            for (std::size_t i = here == 0 ? 0 : ends_[here - 1]; i < ends_[here]; ++i) {
                visit(entries_[i].segment);
            }
        });
    }

private:
    struct Entry {
        CellBox box;
        int segment = 0;
    };

    /// The smallest cells with which neither the cells nor the entries outgrow the segments.
    void choose_cell_size() {
        constexpr double most_per_segment = 4;
        double steps = 0;
        for (const int segment : segments_) {
            const IntBox box = segment_box(segment);
            steps += static_cast<double>(box.x_max) - box.x_min;
            steps += static_cast<double>(box.y_max) - box.y_min;
        }
        const double most = most_per_segment * static_cast<double>(segments_.size()) + 16;
        for (shift_ = 0;; ++shift_) {
            columns_ = column(box_.x_max) + 1;
            rows_ = row(box_.y_max) + 1;
            const double entries =
                static_cast<double>(segments_.size()) + std::ldexp(steps, -shift_);
            if (static_cast<double>(columns_) * static_cast<double>(rows_) <= most &&
                entries <= most) {
                return;
            }
        }
    }

    std::size_t cell(std::int64_t column, std::int64_t row) const {
        return static_cast<std::size_t>(column * rows_ + row);
    }
    std::int64_t column(std::int64_t x) const { return (x - box_.x_min) >> shift_; }
    std::int64_t row(std::int64_t y) const { return (y - box_.y_min) >> shift_; }

    IntBox segment_box(int segment) const {
        IntBox box;
        box.include(pts_[segment]);
        box.include(pts_[segment + 1]);
        return box;
    }

    template <class Visit>
    void for_each_cell(int segment, Visit visit) const {
        for_each_cell_on_line(segment, segment_box(segment), visit);
    }

    /// Walks the columns that the line through a segment passes within a box that it goes through,
    /// and in each the rows; both are taken a little too wide, never too narrow.
    template <class Visit>
    void for_each_cell_on_line(int segment, const IntBox& within, Visit visit) const {
        const tagPOINT& from = pts_[segment];
        const tagPOINT& to = pts_[segment + 1];
        const bool is_upright = from.x == to.x;
        const std::int64_t first = column(is_upright ? from.x : within.x_min);
        const std::int64_t last = column(is_upright ? from.x : within.x_max);
        if (first == last) {
            visit_rows(first, within.y_min, within.y_max, visit);
            return;
        }
        const double slope =
            (static_cast<double>(to.y) - from.y) / (static_cast<double>(to.x) - from.x);
        const auto height = [&](std::int64_t x) {
            const std::int64_t inside = std::clamp<std::int64_t>(x, within.x_min, within.x_max);
            return from.y + slope * static_cast<double>(inside - from.x);
        };
        for (std::int64_t c = first; c <= last; ++c) {
            constexpr std::int64_t beside = 1; // what is near the line may be in the next column
            const double at_from = height(box_.x_min + (c << shift_) - beside);
            const double at_to = height(box_.x_min + ((c + 1) << shift_) + beside);
            constexpr double margin = 2; // for rounding, and for truncation toward zero
            const double low = std::max<double>(std::min(at_from, at_to) - margin, within.y_min);
            const double high = std::min<double>(std::max(at_from, at_to) + margin, within.y_max);
            if (low <= high) {
                visit_rows(c, static_cast<std::int64_t>(low), static_cast<std::int64_t>(high),
                           visit);
            }
        }
    }

    template <class Visit>
    void visit_rows(std::int64_t column, std::int64_t low, std::int64_t high, Visit visit) const {
        const std::int64_t last = row(high);
        for (std::int64_t r = row(low); r <= last; ++r) {
            visit(column, r);
        }
    }

    const CArray<tagPOINT>& pts_;
    const std::vector<int>& segments_;
    IntBox box_;
    int shift_ = 0;
    std::int64_t columns_ = 0;
    std::int64_t rows_ = 0;
    std::vector<Entry> entries_;    ///< by cell
    std::vector<std::size_t> ends_; ///< of the entries of each cell
};

} // namespace

std::optional<std::vector<Crossing>> find_crossings(const CArray<tagPOINT>& pts,
                                                    const CurveSpans& curves, int most) {
    std::vector<int> segments;
    IntBox box;
    for (int curve = 0; curve < curves.size(); ++curve) {
        for (int p = curves.start(curve); p + 1 < curves.end(curve); ++p) {
            segments.push_back(p);
            box.include(pts[p]);
            box.include(pts[p + 1]);
        }
    }
    if (segments.empty()) {
        return std::vector<Crossing>();
    }
    const std::int64_t span = std::max(static_cast<std::int64_t>(box.x_max) - box.x_min,
                                       static_cast<std::int64_t>(box.y_max) - box.y_min);
    // Divided, since the product of two spans may not fit 64 bits.
    const std::int64_t longest = exact_product / std::max<std::int64_t>(span, 1);
    const auto is_short = [&](int p) { return segment_span(pts, p) <= longest; };

    CrossingList crossings(pts.GetSize(), most);
    const SegmentGrid grid(pts, segments, box);
    grid.for_each_close_pair([&](int a, int b) { crossings.test(pts, a, b); },
                             [&] { return crossings.is_full(); });
    // Where rounding can make far segments cross, it moves no segment by more than 2^-17 units from
    // the other one's line.
    std::vector<int> tested_with(static_cast<std::size_t>(pts.GetSize()), -1);
    for (const int a : segments) {
        if (!is_short(a) && !crossings.is_full()) {
            grid.for_each_on_line(a, [&](int b) {
                const bool is_new = std::exchange(tested_with[b], a) != a;
                if (is_new && (b < a || is_short(b))) {
                    crossings.test(pts, a, b);
                }
            });
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

} // namespace korvel
