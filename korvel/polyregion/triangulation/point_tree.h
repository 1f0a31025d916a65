#pragma once

#include <cmath>
#include <vector>

#include "korvel/polyregion/triangulation/oriented_box.h"
#include "korvel/polyregion/triangulation/region_points.h"
#include "korvel/polyregion/triangulation/slot_tree.h"

namespace korvel {

/// The points of a region in a binary tree of boxes. Either its slots are the vertices, so that
/// what follows one another on a ring lies together, or each box is divided across its longer side.
class PointTree {
public:
    static constexpr int none = RegionPoints::none;

    enum class Order { by_number, by_nearness };

    PointTree(const RegionPoints& points, Order order) : points_(points), order_(order) {}

    /// To be called when the points have started over.
    void start();

    const SlotTree& shape() const { return shape_; }
    int vertex(int slot) const { return vertices_[slot]; }
    OrientedBox box(int number) const { return boxes_[number]; }
    const OrientedBoxes& boxes() const { return boxes_; }

    SlotTree::Signs signs(int leaf, const LineForm& form, double margin) const {
        return shape_.signs(leaf, local_, form, margin);
    }

    /// A vertex strictly inside the triangle, or `none`.
    int point_inside(int a, int b, int c) const;

    /// Calls `visit(vertex)` for the vertices within a distance of a line, given by its distances,
    /// and on the left of another or less than a margin on its right.
    template <class Visit>
    void each_point_near(const LineForm& line, double reach, const LineForm& beside, double margin,
                         Visit visit) const {
        any_point(
            [&](int first) {
                const OrientedBoxes::Signs off = boxes_.signs(first, line, reach);
                return ~(off.above | off.below | boxes_.signs(first, beside, margin).below);
            },
            [&](int leaf) {
                return shape_.signs(leaf, local_, line, reach).within() &
                       ~shape_.signs(leaf, local_, beside, margin).below;
            },
            [&](int p) {
                visit(p);
                return false;
            });
    }

    /// Calls `visit(vertex)` for the vertices in a disk, on the left of a line or less than a
    /// margin on its right, until a call returns true.
    template <class Visit>
    void any_point_beside(const LineForm& line, double margin, const Disk& disk,
                          Visit visit) const {
        any_point(
            [&](int first) {
                return ~(boxes_.signs(first, line, margin).below | boxes_.outside(first, disk));
            },
            [&](int leaf) {
                return ~(shape_.signs(leaf, local_, line, margin).below |
                         shape_.outside(leaf, local_, disk));
            },
            visit);
    }

private:
    /// Goes down to the leaves in halves that `pick_boxes(first half)` leaves, and calls
    /// `visit(vertex)` for the slots that `pick_slots(leaf)` leaves, until a call returns true.
    template <class PickBoxes, class PickSlots, class Visit>
    void any_point(PickBoxes pick_boxes, PickSlots pick_slots, Visit visit) const {
        shape_.any_box(
            [&](int box) {
                if (shape_.is_leaf(box)) {
                    const int first = shape_.first_slot(box);
                    for (SlotTree::Bits left = pick_slots(box) & shape_.all(box); left != 0;
                         left &= left - 1) {
                        if (visit(vertex(first + std::countr_zero(left)))) {
                            return true;
                        }
                    }
                }
                return false;
            },
            pick_boxes);
    }

    void divide(int number, const OrientedBox& box);

    const RegionPoints& points_;
    Order order_;
    SlotTree shape_;
    OrientedBoxes boxes_;
    std::vector<int> vertices_; ///< of each slot
    Coordinates local_;
};

} // namespace korvel
