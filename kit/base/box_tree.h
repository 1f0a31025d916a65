#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace korvel::kit {

/// Finds, of a fixed set of rectangles with integer corners, those that meet another one: a static
/// tree of boxes, sorted into leaves by halving (J. L. Bentley, 1975). Building it takes n log n.
class BoxTree {
public:
    struct Box {
        std::int32_t left = std::numeric_limits<std::int32_t>::max();
        std::int32_t bottom = std::numeric_limits<std::int32_t>::max();
        std::int32_t right = std::numeric_limits<std::int32_t>::min();
        std::int32_t top = std::numeric_limits<std::int32_t>::min();

        bool meets(const Box& other) const {
            return left <= other.right && other.left <= right && bottom <= other.top &&
                   other.bottom <= top;
        }
        void take_in(const Box& other) {
            left = std::min(left, other.left);
            bottom = std::min(bottom, other.bottom);
            right = std::max(right, other.right);
            top = std::max(top, other.top);
        }
    };

    BoxTree() = default;

    /// Of `count` rectangles, `box_of(i)` each.
    template <class BoxOf>
    BoxTree(std::size_t count, BoxOf box_of) {
        items_.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            items_.push_back({box_of(i), i});
        }
        if (count > 0) {
            nodes_.resize(2 * std::bit_ceil(count / most_in_leaf + 1));
            build(1, 0, count);
        }
    }

    /// Calls `found(i)` for each rectangle that meets the box, in an unspecified order.
    template <class Found>
    void for_each_at(const Box& box, Found found) const {
        for_each_in([&](const Box& other) { return other.meets(box); }, found);
    }

    /// Calls `found(i)` for each rectangle for which `may_hold` is true, which must be true for a
    /// box around such a rectangle too. It may become false for more boxes with each call. Upper
    /// and right ones come first, roughly.
    template <class MayHold, class Found>
    void for_each_in(MayHold may_hold, Found found) const {
        if (!items_.empty()) {
            search(1, 0, items_.size(), may_hold, found);
        }
    }

    /// Calls `found(i, j)` once for each pair of rectangles that meet, in either order, and for
    /// each rectangle with itself.
    template <class Found>
    void for_each_pair(Found found) const {
        if (!items_.empty()) {
            find_pairs({1, 0, items_.size()}, {1, 0, items_.size()}, found);
        }
    }

private:
    // A node of the tree with its items.
    struct Part {
        std::size_t node;
        std::size_t first;
        std::size_t last;

        bool is_leaf() const { return last - first <= most_in_leaf; }
        std::size_t middle() const { return first + (last - first) / 2; }
        Part lower() const { return {2 * node, first, middle()}; }
        Part upper() const { return {2 * node + 1, middle(), last}; }
    };

    struct Item {
        Box box;
        std::size_t index;
    };

    static constexpr std::size_t most_in_leaf = 4;

    void build(std::size_t node, std::size_t first, std::size_t last);

    template <class MayHold, class Found>
    void search(std::size_t node, std::size_t first, std::size_t last, MayHold& may_hold,
                Found& found) const {
        if (!may_hold(nodes_[node])) {
            return;
        }
        if (last - first <= most_in_leaf) {
            for (std::size_t i = first; i < last; ++i) {
                if (may_hold(items_[i].box)) {
                    found(items_[i].index);
                }
            }
            return;
        }
        const std::size_t middle = first + (last - first) / 2;
        search(2 * node + 1, middle, last, may_hold, found);
        search(2 * node, first, middle, may_hold, found);
    }

    template <class Found>
    void find_pairs(const Part& a, const Part& b, Found& found) const {
        if (a.node != b.node && !nodes_[a.node].meets(nodes_[b.node])) {
            return;
        }
        if (a.is_leaf() && b.is_leaf()) {
            for (std::size_t i = a.first; i < a.last; ++i) {
                for (std::size_t k = a.node == b.node ? i : b.first; k < b.last; ++k) {
                    if (items_[i].box.meets(items_[k].box)) {
                        found(items_[i].index, items_[k].index);
                    }
                }
            }
        } else if (a.node == b.node) {
            find_pairs(a.lower(), a.lower(), found);
            find_pairs(a.lower(), a.upper(), found);
            find_pairs(a.upper(), a.upper(), found);
        } else if (b.is_leaf() || (!a.is_leaf() && a.last - a.first >= b.last - b.first)) {
            find_pairs(a.lower(), b, found);
            find_pairs(a.upper(), b, found);
        } else {
            find_pairs(a, b.lower(), found);
            find_pairs(a, b.upper(), found);
        }
    }

    std::vector<Item> items_; // in the order of the leaves
    std::vector<Box> nodes_;  // the root is 1, the children of k are 2k and 2k + 1
};

} // namespace korvel::kit
