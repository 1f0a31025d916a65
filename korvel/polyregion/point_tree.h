#pragma once

#include <cmath>
#include <vector>

#include "korvel/polyregion/region_points.h"
#include "korvel/polyregion/slot_tree.h"
#include "korvel/polyregion/turned_box.h"

namespace korvel {

/// The points of a region in a binary tree of boxes, each divided across its longer side.
class PointTree {
public:
    static constexpr int none = RegionPoints::none;

    explicit PointTree(const RegionPoints& points) : points_(points) {}

    /// To be called when the points have started over.
    void start();

    const SlotTree& shape() const { return shape_; }
    const TurnedBox& box(int number) const { return boxes_[static_cast<std::size_t>(number)]; }
    int place(int slot) const { return places_[static_cast<std::size_t>(slot)]; }
    PlanePoint local(int slot) const { return local_[slot]; }

    SlotTree::Sorted sorted(int leaf, const LineForm& form, double margin) const {
        return shape_.sorted(leaf, local_, form, margin);
    }

    /// A place strictly inside the triangle, or `none`.
    int point_inside(int a, int b, int c) const;

    /// Calls `visit(place)` for the places within a distance of one of some lines, given by their
    /// distances.
    template <class Lines, class Visit>
    void each_point_near(const Lines& lines, double reach, Visit visit) const {
        any_point(
            [&](const TurnedBox& box) {
                return std::all_of(lines.begin(), lines.end(), [&](const LineForm& line) {
                    return std::fabs(line.at(box.centre)) > box.spread(line) + reach;
                });
            },
            [&](int leaf) {
                SlotTree::Bits near = 0;
                for (const LineForm& line : lines) {
                    near |= shape_.sorted(leaf, local_, line, reach).within();
                }
                return near;
            },
            [&](int p) {
                visit(p);
                return false;
            });
    }

private:
    /// Goes through the leaves in boxes that are not missed, and calls `visit(place)` for the slots
    /// that `pick(leaf)` leaves, until a call returns true.
    template <class Misses, class Pick, class Visit>
    void any_point(Misses misses, Pick pick, Visit visit) const {
        shape_.any_box([&](int number) {
            if (misses(box(number))) {
                return SlotTree::Next::pass;
            }
            if (shape_.is_leaf(number)) {
                const int first = shape_.first_slot(number);
                for (SlotTree::Bits left = pick(number) & shape_.all(number); left != 0;
                     left &= left - 1) {
                    if (visit(place(first + std::countr_zero(left)))) {
                        return SlotTree::Next::stop;
                    }
                }
            }
            return SlotTree::Next::enter;
        });
    }

    void divide(int number);

    const RegionPoints& points_;
    SlotTree shape_;
    std::vector<TurnedBox> boxes_;
    std::vector<int> places_; ///< of each slot
    Coordinates local_;
};

} // namespace korvel
