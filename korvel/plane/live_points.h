#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "korvel/plane/int_box.h"

namespace korvel {

/// Points that are switched on and off, with queries for those alive in a box: a balanced k-d tree
/// (J. L. Bentley, 1975) whose nodes count what is alive below them. Switching a point costs the
/// logarithm at most, a query about the square root of all points plus its answer.
class LivePoints {
public:
    explicit LivePoints(const std::vector<POINT>& points)
        : slot_of_(points.size()), alive_(points.size(), 0) {
        constexpr std::size_t most_in_leaf = 8;
        while (leaves_ * most_in_leaf < points.size()) {
            leaves_ *= 2;
        }
        nodes_.resize(2 * leaves_);
        slots_.reserve(points.size());
        for (const POINT& point : points) {
            slots_.push_back({point, static_cast<int>(slots_.size())});
        }
        build(1, 0, leaves_);
        for (std::size_t slot = 0; slot < slots_.size(); ++slot) {
            slot_of_[slots_[slot].index] = slot;
        }
    }

    void set_alive(int point, bool alive) {
        const std::size_t slot = slot_of_[point];
        if (alive_[slot] == static_cast<char>(alive)) {
            return;
        }
        alive_[slot] = static_cast<char>(alive);
        const std::size_t leaf = ((slot + 1) * leaves_ - 1) / slots_.size();
        for (std::size_t node = leaves_ + leaf; node > 0; node /= 2) {
            int& below = nodes_[node].alive;
            below += alive ? 1 : -1;
            if (below != (alive ? 1 : 0)) {
                return; // nothing changes further up
            }
        }
    }

    /// The live points in the box, ascending.
    void collect(const IntBox& box, std::vector<int>& found) const {
        found.clear();
        collect_below(1, 0, leaves_, box, found);
        std::sort(found.begin(), found.end());
    }

private:
    struct Node {
        IntBox box;
        int alive = 0; ///< the live points of a leaf, else the children with any below them
    };
    struct Slot {
        POINT point;
        int index;
    };

    // The slots are divided evenly among the leaves, of which each child has half of its parent's.
    std::size_t first_slot(std::size_t leaf) const { return leaf * slots_.size() / leaves_; }

    void build(std::size_t node, std::size_t leaf, std::size_t leaves) {
        const auto slot_at = [&](std::size_t of) {
            return slots_.begin() + static_cast<std::ptrdiff_t>(first_slot(of));
        };
        IntBox& box = nodes_[node].box;
        for (auto slot = slot_at(leaf); slot != slot_at(leaf + leaves); ++slot) {
            box.include(slot->point);
        }
        if (leaves == 1) {
            return;
        }
        const bool wide = static_cast<double>(box.x_max) - box.x_min >=
                          static_cast<double>(box.y_max) - box.y_min;
        std::nth_element(slot_at(leaf), slot_at(leaf + leaves / 2), slot_at(leaf + leaves),
                         [&](const Slot& a, const Slot& b) {
                             return wide ? a.point.x < b.point.x : a.point.y < b.point.y;
                         });
        build(2 * node, leaf, leaves / 2);
        build(2 * node + 1, leaf + leaves / 2, leaves / 2);
    }

    void collect_below(std::size_t node, std::size_t leaf, std::size_t leaves, const IntBox& box,
                       std::vector<int>& found) const {
        if (nodes_[node].alive == 0 || !nodes_[node].box.meets(box)) {
            return;
        }
        if (leaves > 1) {
            collect_below(2 * node, leaf, leaves / 2, box, found);
            collect_below(2 * node + 1, leaf + leaves / 2, leaves / 2, box, found);
            return;
        }
        for (std::size_t slot = first_slot(leaf); slot < first_slot(leaf + 1); ++slot) {
            if (alive_[slot] != 0 && box.contains(slots_[slot].point)) {
                found.push_back(slots_[slot].index);
            }
        }
    }

    std::vector<Slot> slots_;          ///< the points in the order of the leaves
    std::vector<std::size_t> slot_of_; ///< of each point
    std::vector<char> alive_;          ///< by slot
    std::size_t leaves_ = 1;           ///< a power of two
    std::vector<Node> nodes_;          ///< the root is 1, the children of k are 2k and 2k + 1
};

} // namespace korvel
