#pragma once

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "kit/kit.h"

namespace korvel::workbench {

/// The points of a curve in steps of the grid; closed if the first is the last.
using Curve = std::vector<kit::GridPoint>;

/// Curves from `first` on, so many, and what takes their place.
struct CurveChange {
    int first = 0;
    int count = 0;
    std::vector<Curve> by = {};
};

/// Whether a curve of at least three points ends where it starts.
bool is_closed(const Curve& curve);

/// The curves of a map while they are edited, numbered from 0. Points are in steps of the grid of
/// `placement()`.
class Curves {
public:
    Curves() = default;
    explicit Curves(const kit::Network& network);
    explicit Curves(kit::Placement placement) : placement_(std::move(placement)) {}

    // Ask.

    int size() const { return static_cast<int>(curves_.size()); }
    bool empty() const { return curves_.empty(); }
    const Curve& operator[](int index) const { return curves_[static_cast<std::size_t>(index)]; }
    auto begin() const { return curves_.begin(); }
    auto end() const { return curves_.end(); }
    int point_count() const { return points_; }

    /// The grid of the points, and the reference system of the user's coordinates.
    const kit::Placement& placement() const { return placement_; }

    kit::Point2 to_user(const kit::GridPoint& point) const {
        return placement_.grid.to_user(point);
    }
    kit::GridPoint nearest(const kit::Point2& user) const { return placement_.grid.nearest(user); }

    /// Around a curve, in steps.
    const kit::BoxTree::Box& box(int index) const {
        return boxes_[static_cast<std::size_t>(index)];
    }

    /// In the user's coordinates; empty without points. Linear in the number of curves.
    kit::Rectangle bounds() const;

    /// A copy for `find_regions` and files. Linear.
    kit::Network network() const;

    // Change.

    /// Replaces the curves from `first` to `first + count` − 1 by others, more or fewer, and
    /// returns them. Curves behind are numbered on.
    std::vector<Curve> replace(int first, int count, std::vector<Curve> by);

    /// The same for several, in ascending order and apart; all numbers are those of before. Returns
    /// what takes it back. Linear in the number of curves.
    std::vector<CurveChange> replace(std::vector<CurveChange> changes);

private:
    std::vector<Curve> curves_;
    std::vector<kit::BoxTree::Box> boxes_; // of the curves
    int points_ = 0;
    kit::Placement placement_;
};

/// The bytes that curves take.
std::size_t bytes_of(std::span<const Curve> curves);

} // namespace korvel::workbench
