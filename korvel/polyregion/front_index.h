#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "korvel/geometry/first_index.h"
#include "korvel/geometry/plane_point.h"
#include "korvel/polyregion/triangle_tests.h"

namespace korvel {

/// Square cells over the points of a region, about one point to a cell.
class CellGrid {
public:
    explicit CellGrid(const std::vector<PlanePoint>& pts);

    /// The larger side of the box around the points.
    double extent() const { return extent_; }
    PlanePoint centre() const { return {low_.x + width_ / 2, low_.y + height_ / 2}; }
    std::size_t cells() const { return static_cast<std::size_t>(columns_) * rows_; }

    std::size_t cell_of(PlanePoint p) const { return cell(column(p.x), row(p.y)); }

    bool is_covered_by(PlanePoint low, PlanePoint high) const {
        return low.x <= low_.x && low.y <= low_.y && high.x >= low_.x + width_ &&
               high.y >= low_.y + height_;
    }

    /// Calls `visit(cell)` for each cell that a box meets, until a call returns true; tells whether
    /// one did.
    template <class Visit>
    bool any_cell_in_box(PlanePoint low, PlanePoint high, Visit visit) const {
        for (int c = column(low.x); c <= column(high.x); ++c) {
            for (int r = row(low.y); r <= row(high.y); ++r) {
                if (visit(cell(c, r))) {
                    return true;
                }
            }
        }
        return false;
    }

    /// The same for the cells near the segment from → to: at least all that come as near to it as
    /// `base` plus `slope` times the distance from `from`. `slope` must be small, below 0.01.
    template <class Visit>
    bool any_cell_in_band(PlanePoint from, PlanePoint to, double base, double slope,
                          Visit visit) const {
        const bool steep = std::fabs(to.y - from.y) > std::fabs(to.x - from.x);
        return steep ? any_cell_in_rows(from, to, base, slope, visit)
                     : any_cell_in_columns(from, to, base, slope, visit);
    }

private:
    // Beyond √2, the most by which a distance grows when it is taken along an axis.
    static constexpr double axis_factor = 1.5;

    static int clamped_cell(double offset, double cell_size, int cells) {
        const double at = offset / cell_size;
        return at > 0 ? static_cast<int>(std::min(at, static_cast<double>(cells - 1))) : 0;
    }
    int column(double x) const { return clamped_cell(x - low_.x, cell_size_, columns_); }
    int row(double y) const { return clamped_cell(y - low_.y, cell_size_, rows_); }
    std::size_t cell(int column, int row) const {
        return static_cast<std::size_t>(column) * static_cast<std::size_t>(rows_) +
               static_cast<std::size_t>(row);
    }

    /// What a band that runs from `from` to `to` along its main axis spans across it, between two
    /// places of the main axis.
    struct Span {
        double low;
        double high;
    };
    static Span band_span(double from_main, double from_cross, double per_main, double base,
                          double slope, double begin, double end) {
        const double at_begin = from_cross + (begin - from_main) * per_main;
        const double at_end = from_cross + (end - from_main) * per_main;
        const double reach =
            std::max(std::fabs(begin - from_main), std::fabs(end - from_main)) * axis_factor;
        const double half_width = (base + slope * reach) * axis_factor;
        return {std::min(at_begin, at_end) - half_width, std::max(at_begin, at_end) + half_width};
    }

    template <class Visit>
    bool any_cell_in_columns(PlanePoint from, PlanePoint to, double base, double slope,
                             Visit visit) const {
        const double per_x = to.x == from.x ? 0 : (to.y - from.y) / (to.x - from.x);
        const double margin = base + slope * std::fabs(to.x - from.x);
        const double begin = std::min(from.x, to.x) - margin;
        const double end = std::max(from.x, to.x) + margin;
        for (int c = column(begin); c <= column(end); ++c) {
            const double x = low_.x + c * cell_size_;
            const Span span = band_span(from.x, from.y, per_x, base + rounding_, slope,
                                        std::max(x, begin), std::min(x + cell_size_, end));
            if (span.high < low_.y || span.low > low_.y + height_) {
                continue;
            }
            for (int r = row(span.low); r <= row(span.high); ++r) {
                if (visit(cell(c, r))) {
                    return true;
                }
            }
        }
        return false;
    }

    template <class Visit>
    bool any_cell_in_rows(PlanePoint from, PlanePoint to, double base, double slope,
                          Visit visit) const {
        const double per_y = (to.x - from.x) / (to.y - from.y);
        const double margin = base + slope * std::fabs(to.y - from.y);
        const double begin = std::min(from.y, to.y) - margin;
        const double end = std::max(from.y, to.y) + margin;
        for (int r = row(begin); r <= row(end); ++r) {
            const double y = low_.y + r * cell_size_;
            const Span span = band_span(from.y, from.x, per_y, base + rounding_, slope,
                                        std::max(y, begin), std::min(y + cell_size_, end));
            if (span.high < low_.x || span.low > low_.x + width_) {
                continue;
            }
            for (int c = column(span.low); c <= column(span.high); ++c) {
                if (visit(cell(c, r))) {
                    return true;
                }
            }
        }
        return false;
    }

    PlanePoint low_;
    double width_ = 0;
    double height_ = 0;
    double extent_ = 0;
    double rounding_ = 0; ///< more than cell borders can be off
    double cell_size_ = 1;
    int columns_ = 1;
    int rows_ = 1;
};

/// The points of a region by cells.
class PointIndex {
public:
    PointIndex(const CellGrid& grid, const std::vector<PlanePoint>& pts);

    /// Calls `visit(point)` for the points of a cell until a call returns true.
    template <class Visit>
    bool any_point_in_cell(std::size_t cell, Visit visit) const {
        for (std::size_t i = starts_[cell]; i < starts_[cell + 1]; ++i) {
            if (visit(points_[i])) {
                return true;
            }
        }
        return false;
    }

private:
    std::vector<std::size_t> starts_;
    std::vector<int> points_;
};

/// The sides that a new triangle side must not cross, the region's boundary and the front, with
/// what it takes to find those that the crossing test could take for crossed.
///
/// A side that truly crosses shares a cell with the other. Rounding can also report a crossing of
/// two far sides whose directions differ by rounding alone and which lie on nearly the same line;
/// those are found by their lines.
class SideIndex {
public:
    SideIndex(const CellGrid& grid, const std::vector<PlanePoint>& pts);

    enum class Kind { boundary, front };

    /// A side is listed as what it was first added as.
    void add(int p0, int p1, Direction direction, Kind kind);

    bool has(int p0, int p1, Kind kind) const;

    /// A side that the side from p0 to p1 crosses, or −1: one of the boundary, unless the side is
    /// part of that, or one of the front, unless it is part of that.
    int find_crossed(int p0, int p1) const;

    /// Whether `find_crossed` could answer this side.
    bool is_crossed(int p0, int p1, int side) const;

    /// Calls `visit(point)` for every point that a side joins with this one.
    template <class Visit>
    void for_each_neighbour(int pt, Visit visit) const {
        for (int end = first_end_[static_cast<std::size_t>(pt)]; end >= 0;
             end = ends_[static_cast<std::size_t>(end)].next) {
            visit(ends_[static_cast<std::size_t>(end)].other);
        }
    }

private:
    struct Side {
        int p0;
        int p1;
        Direction direction;
        Kind kind;
    };
    /// A link of a list in an array.
    struct Link {
        int side;
        int next;
    };
    struct End {
        int other;
        int next;
    };
    /// Sides of exactly one direction, whichever way they run, within one bucket of lines.
    struct Bundle {
        double ux;
        double uy;
        int first;       ///< into bundle_links_
        int next_bundle; ///< in the same bucket
    };
    /// A side under test, with what decides which sides it may cross.
    struct Tested {
        int p0;
        int p1;
        PlanePoint start;
        Direction direction;
        bool on_boundary;
        bool on_front;
    };
    /// Where a line stands among the buckets.
    struct LinePlace {
        int slope;
        int offset;
    };

    Tested tested_side(int p0, int p1) const;
    bool crosses(const Tested& tested, int side_number) const;
    void add_to_cells(int side);
    void add_to_lines(int side);
    LinePlace place_of_line(PlanePoint on_line, Direction direction, bool steep) const;
    static std::uint64_t line_key(LinePlace place, bool steep);

    const CellGrid& grid_;
    const std::vector<PlanePoint>& pts_;
    double near_ = 0; ///< sides that come closer than this share a cell
    std::vector<Side> sides_;
    FirstIndex boundary_at_;
    FirstIndex front_at_;
    std::vector<int> first_in_cell_;
    std::vector<Link> cell_links_;
    FirstIndex buckets_;
    std::vector<Bundle> bundles_;
    std::vector<Link> bundle_links_;
    std::vector<int> first_end_;
    std::vector<End> ends_;
};

} // namespace korvel
