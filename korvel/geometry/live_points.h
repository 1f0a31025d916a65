#pragma once

#include <algorithm>
#include <limits>
#include <numeric>
#include <vector>

#include "korvel/platform/framework.h"

namespace korvel {

/// An axis-parallel box of integer points, its borders included; empty at the start.
struct IntBox {
    int x_min = std::numeric_limits<int>::max();
    int y_min = std::numeric_limits<int>::max();
    int x_max = std::numeric_limits<int>::min();
    int y_max = std::numeric_limits<int>::min();

    void include(POINT pt) {
        x_min = std::min<int>(x_min, pt.x);
        y_min = std::min<int>(y_min, pt.y);
        x_max = std::max<int>(x_max, pt.x);
        y_max = std::max<int>(y_max, pt.y);
    }
    bool contains(POINT pt) const {
        return pt.x >= x_min && pt.x <= x_max && pt.y >= y_min && pt.y <= y_max;
    }
    bool meets(const IntBox& other) const {
        return x_min <= other.x_max && other.x_min <= x_max && y_min <= other.y_max &&
               other.y_min <= y_max;
    }
};

/// Points that come alive and die, asked for those alive in a box: a balanced k-d tree (J. L.
/// Bentley, 1975) whose nodes count their live points. Switching a point costs the logarithm, a
/// query about the square root of all points plus its answer.
class LivePoints {
public:
    explicit LivePoints(std::vector<POINT> points)
        : points_(std::move(points)), order_(points_.size()), place_(points_.size()) {
        std::iota(order_.begin(), order_.end(), 0);
        nodes_.reserve(2 * points_.size());
        if (!points_.empty()) {
            build(0, static_cast<int>(points_.size()));
        }
        for (std::size_t i = 0; i < order_.size(); ++i) {
            place_[static_cast<std::size_t>(order_[i])] = static_cast<int>(i);
        }
        alive_.resize(points_.size(), 0);
    }

    void set_alive(int point, bool alive) {
        const int place = place_[static_cast<std::size_t>(point)];
        char& state = alive_[static_cast<std::size_t>(place)];
        if (state == static_cast<char>(alive)) {
            return;
        }
        state = static_cast<char>(alive);
        for (int node = 0; node >= 0;) {
            Node& at = nodes_[static_cast<std::size_t>(node)];
            at.alive += alive ? 1 : -1;
            node = at.left < 0 ? -1 : (place < node_end(at.left) ? at.left : at.right);
        }
    }

    /// The live points in the box, ascending.
    void collect(const IntBox& box, std::vector<int>& found) const {
        found.clear();
        if (!nodes_.empty()) {
            collect_below(0, box, found);
        }
        std::sort(found.begin(), found.end());
    }

private:
    static constexpr int leaf_size = 8;

    struct Node {
        IntBox box;
        int begin = 0; ///< its points are order_[begin] … order_[end − 1]
        int end = 0;
        int left = -1;
        int right = -1;
        int alive = 0;
    };

    int node_end(int node) const { return nodes_[static_cast<std::size_t>(node)].end; }
    POINT point_at(int place) const {
        return points_[static_cast<std::size_t>(order_[static_cast<std::size_t>(place)])];
    }

    int build(int begin, int end) {
        Node node;
        node.begin = begin;
        node.end = end;
        for (int place = begin; place < end; ++place) {
            node.box.include(point_at(place));
        }
        const int self = static_cast<int>(nodes_.size());
        nodes_.push_back(node);
        if (end - begin <= leaf_size) {
            return self;
        }
        const bool wide = static_cast<double>(node.box.x_max) - node.box.x_min >=
                          static_cast<double>(node.box.y_max) - node.box.y_min;
        const int middle = begin + (end - begin) / 2;
        std::nth_element(order_.begin() + begin, order_.begin() + middle, order_.begin() + end,
                         [&](int a, int b) {
                             const POINT& pa = points_[static_cast<std::size_t>(a)];
                             const POINT& pb = points_[static_cast<std::size_t>(b)];
                             return wide ? pa.x < pb.x : pa.y < pb.y;
                         });
        const int left = build(begin, middle);
        const int right = build(middle, end);
        nodes_[static_cast<std::size_t>(self)].left = left;
        nodes_[static_cast<std::size_t>(self)].right = right;
        return self;
    }

    void collect_below(int node, const IntBox& box, std::vector<int>& found) const {
        const Node& at = nodes_[static_cast<std::size_t>(node)];
        if (at.alive == 0 || !at.box.meets(box)) {
            return;
        }
        if (at.left >= 0) {
            collect_below(at.left, box, found);
            collect_below(at.right, box, found);
            return;
        }
        for (int place = at.begin; place < at.end; ++place) {
            if (alive_[static_cast<std::size_t>(place)] != 0 && box.contains(point_at(place))) {
                found.push_back(order_[static_cast<std::size_t>(place)]);
            }
        }
    }

    std::vector<POINT> points_;
    std::vector<int> order_; ///< point at each place of the tree
    std::vector<int> place_; ///< place of each point
    std::vector<char> alive_;
    std::vector<Node> nodes_;
};

} // namespace korvel
