#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <vector>

#include "korvel/plane/live_points.h"
#include "korvel/platform/check_point.h"
#include "korvel/platform/framework.h"

namespace korvel {

/// A box within a square cell, in one word, so that two boxes are compared in one subtraction: four
/// numbers of 15 bits, each with a spare bit above it. They may be coarser than coordinates; then
/// boxes that just miss each other may count as meeting.
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

/// Square cells over a network, each with the segments that pass through it. The width of a cell is
/// a power of two and its borders are integers, so that the cell of a point is exact. A segment is
/// named by the index of its first point.
class SegmentGrid {
public:
    SegmentGrid(const CArray<tagPOINT>& pts, const std::vector<int>& segments, const IntBox& box)
        : pts_(pts), segments_(segments), box_(box) {
        choose_cell_size();
        count_entries();
        fill_entries();
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
                check_point_after(static_cast<long long>(i),
                                  static_cast<long long>(entries_.size()), 1024,
                                  "splitting curves");
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

    void count_entries() {
        ends_.assign(static_cast<std::size_t>(columns_ * rows_) + 1, 0);
        for (const int segment : segments_) {
            for_each_cell(segment, [&](std::int64_t column, std::int64_t row) {
                ++ends_[cell(column, row) + 1];
            });
        }
        std::partial_sum(ends_.begin(), ends_.end(), ends_.begin());
        entries_.resize(ends_.back());
    }

    /// Moves the start of each cell's entries on to their end.
    void fill_entries() {
        for (const int segment : segments_) {
            const IntBox around = segment_box(segment);
            for_each_cell(segment, [&](std::int64_t column, std::int64_t row) {
                const CellBox part(around, box_.x_min + (column << shift_),
                                   box_.y_min + (row << shift_), shift_);
                entries_[ends_[cell(column, row)]++] = {part, segment};
            });
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

    /// Calls `visit(column, row)` for each cell that the line through a segment passes within a
    /// box, which it must meet, column by column. Cells next to the line may be visited too.
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

} // namespace korvel
