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
        : place_(points.size()), alive_(points.size(), 0) {
        constexpr std::size_t most_in_leaf = 8;
        while (leaves_ * most_in_leaf < points.size()) {
            leaves_ *= 2;
        }
        nodes_.resize(2 * leaves_);
        places_.reserve(points.size());
        for (const POINT& point : points) {
            places_.push_back({point, static_cast<int>(places_.size())});
        }
        build(1, 0, leaves_);
        for (std::size_t place = 0; place < places_.size(); ++place) {
            place_[places_[place].index] = place;
        }
    }

    void set_alive(int point, bool alive) {
        const std::size_t place = place_[point];
        if (alive_[place] == static_cast<char>(alive)) {
            return;
        }
        alive_[place] = static_cast<char>(alive);
        const std::size_t leaf = ((place + 1) * leaves_ - 1) / places_.size();
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
    struct Place {
        POINT point;
        int index;
    };

    // The places are dealt out evenly to the leaves, of which each child has half of its parent's.
    std::size_t first_place(std::size_t leaf) const { return leaf * places_.size() / leaves_; }

    void build(std::size_t node, std::size_t leaf, std::size_t leaves) {
        const auto place_of = [&](std::size_t of) {
            return places_.begin() + static_cast<std::ptrdiff_t>(first_place(of));
        };
        IntBox& box = nodes_[node].box;
        for (auto place = place_of(leaf); place != place_of(leaf + leaves); ++place) {
            box.include(place->point);
        }
        if (leaves == 1) {
            return;
        }
        const bool wide = static_cast<double>(box.x_max) - box.x_min >=
                          static_cast<double>(box.y_max) - box.y_min;
        std::nth_element(place_of(leaf), place_of(leaf + leaves / 2), place_of(leaf + leaves),
                         [&](const Place& a, const Place& b) {
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
        for (std::size_t place = first_place(leaf); place < first_place(leaf + 1); ++place) {
            if (alive_[place] != 0 && box.contains(places_[place].point)) {
                found.push_back(places_[place].index);
            }
        }
    }

    std::vector<Place> places_;      ///< the points in the order of the leaves
    std::vector<std::size_t> place_; ///< of each point
    std::vector<char> alive_;        ///< by place
    std::size_t leaves_ = 1;         ///< a power of two
    std::vector<Node> nodes_;        ///< the root is 1, the children of k are 2k and 2k + 1
};

} // namespace korvel
