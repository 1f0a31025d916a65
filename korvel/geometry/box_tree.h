#pragma once

#include <algorithm>
#include <limits>
#include <numeric>
#include <vector>

namespace korvel {

/// An axis-parallel box in space, its borders included; empty at the start.
struct Box3 {
    double low[3] = {std::numeric_limits<double>::infinity(),
                     std::numeric_limits<double>::infinity(),
                     std::numeric_limits<double>::infinity()};
    double high[3] = {-std::numeric_limits<double>::infinity(),
                      -std::numeric_limits<double>::infinity(),
                      -std::numeric_limits<double>::infinity()};

    void include(const double* point) {
        for (int k = 0; k < 3; ++k) {
            low[k] = std::min(low[k], point[k]);
            high[k] = std::max(high[k], point[k]);
        }
    }
    void include(const Box3& other) {
        include(other.low);
        include(other.high);
    }
    bool meets(const Box3& other) const {
        return low[0] <= other.high[0] && other.low[0] <= high[0] && low[1] <= other.high[1] &&
               other.low[1] <= high[1] && low[2] <= other.high[2] && other.low[2] <= high[2];
    }
};

/// Queries for the boxes that meet a given one: a binary tree that divides them in halves along the
/// longest side of their common box. A query costs about the logarithm of their number plus the
/// size of the result.
class BoxTree {
public:
    explicit BoxTree(std::vector<Box3> boxes) : boxes_(std::move(boxes)), order_(boxes_.size()) {
        std::iota(order_.begin(), order_.end(), 0);
        nodes_.reserve(boxes_.size());
        if (!boxes_.empty()) {
            build(0, static_cast<int>(boxes_.size()));
        }
    }

    /// Calls `visit(i)` for each box i that meets the given one, in no particular order.
    template <class Visit>
    void for_each_meeting(const Box3& box, Visit visit) const {
        find_meeting(box, [&](int i) {
            visit(i);
            return false;
        });
    }

    bool has_meeting(const Box3& box) const {
        return find_meeting(box, [](int) { return true; });
    }

private:
    /// Calls `visit(i)` for the boxes that meet the given one, until it returns true.
    template <class Visit>
    bool find_meeting(const Box3& box, Visit visit) const {
        // A node's halves follow it in the list; `skip` is the index behind both.
        for (std::size_t at = 0; at < nodes_.size();) {
            const Node& node = nodes_[at];
            if (!node.box.meets(box)) {
                at = static_cast<std::size_t>(node.skip);
                continue;
            }
            for (int position = node.begin; position < node.end; ++position) {
                const int i = order_[position];
                if (boxes_[i].meets(box) && visit(i)) {
                    return true;
                }
            }
            ++at;
        }
        return false;
    }

    static constexpr int leaf_size = 4;

    struct Node {
        Box3 box;
        int skip = 0;
        int begin = 0; ///< a leaf's boxes are those at order_[begin] … order_[end − 1]
        int end = 0;
    };

    void build(int begin, int end) {
        const std::size_t self = nodes_.size();
        nodes_.emplace_back();
        Box3 box;
        for (int position = begin; position < end; ++position) {
            box.include(boxes_[order_[position]]);
        }
        nodes_[self].box = box;
        if (end - begin <= leaf_size) {
            nodes_[self].begin = begin;
            nodes_[self].end = end;
        } else {
            int axis = 0;
            for (int k = 1; k < 3; ++k) {
                if (box.high[k] - box.low[k] > box.high[axis] - box.low[axis]) {
                    axis = k;
                }
            }
            const int middle = begin + (end - begin) / 2;
            const auto doubled_centre = [&](int i) {
                const Box3& of = boxes_[i];
                return of.low[axis] + of.high[axis];
            };
            std::nth_element(order_.begin() + begin, order_.begin() + middle, order_.begin() + end,
                             [&](int i, int j) { return doubled_centre(i) < doubled_centre(j); });
            build(begin, middle);
            build(middle, end);
        }
        nodes_[self].skip = static_cast<int>(nodes_.size());
    }

    std::vector<Box3> boxes_;
    std::vector<int> order_;
    std::vector<Node> nodes_;
};

} // namespace korvel
