#pragma once

#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "korvel/base/key_index.h"
#include "korvel/region/curve_spans.h"

namespace korvel {

/// Finds the first node within the snap radius of a point: a hash table of square cells, one radius
/// wide. No node lies within the radius of an earlier one, so a cell holds only a few.
class NodeFinder {
public:
    NodeFinder(double radius, int expected)
        : radius_(radius), cell_size_(cell_size_for(radius)), cells_(expected) {}

    /// Moves a point onto the first node closer than the radius, or makes it a new node where there
    /// is none. The first wins, not the nearest. Returns whether the point has moved.
    bool snap(tagPOINT& pt) {
        const int next = static_cast<int>(nodes_.size());
        if (radius_ <= 1) { // only the same point is nearer than that
            if (cells_.find_or_add(key(pt.x, pt.y), next) == next) {
                nodes_.push_back(pt);
            }
            return false;
        }
        const int found = first_near(pt);
        if (found >= 0) {
            const tagPOINT from = std::exchange(pt, nodes_[found]);
            return !same_point(pt, from);
        }
        nodes_.push_back(pt);
        next_in_cell_.push_back(-1);
        const int head = cells_.find_or_add(key(cell(pt.x), cell(pt.y)), next);
        if (head != next) {
            int& after_head = next_in_cell_[head];
            next_in_cell_.back() = std::exchange(after_head, next);
        }
        return false;
    }

    /// Has the cell of a point fetched that is snapped soon after.
    void prefetch(const tagPOINT& pt) const { cells_.prefetch(key(cell(pt.x), cell(pt.y))); }

    const std::vector<tagPOINT>& nodes() const { return nodes_; }

private:
    int first_near(const tagPOINT& pt) const {
        int first = -1;
        for (std::int64_t x = cell(pt.x) - 1; x <= cell(pt.x) + 1; ++x) {
            for (std::int64_t y = cell(pt.y) - 1; y <= cell(pt.y) + 1; ++y) {
                int node = cells_.find(key(x, y));
                for (; node >= 0; node = next_in_cell_[node]) {
                    if ((first < 0 || node < first) && is_near(pt, node)) {
                        first = node;
                    }
                }
            }
        }
        return first;
    }

    static std::int64_t cell_size_for(double radius) {
        constexpr double whole_plane = 8'589'934'592.0; // 2^33
        return radius > 1 ? static_cast<std::int64_t>(std::ceil(std::min(radius, whole_plane))) : 1;
    }
    std::int64_t cell(std::int64_t coordinate) const {
        return (coordinate - (coordinate < 0 ? cell_size_ - 1 : 0)) / cell_size_;
    }
    static std::uint64_t key(std::int64_t x, std::int64_t y) {
        // Wrapping at 32 bits may join far cells; the distance decides anyway.
        return pair_key(static_cast<int>(x), static_cast<int>(y));
    }
    bool is_near(const tagPOINT& pt, int node) const {
        const tagPOINT& at = nodes_[node];
        const double dx = static_cast<double>(pt.x) - at.x;
        const double dy = static_cast<double>(pt.y) - at.y;
        return std::sqrt(dx * dx + dy * dy) < radius_;
    }

    double radius_;
    std::int64_t cell_size_;
    std::vector<tagPOINT> nodes_;
    std::vector<int> next_in_cell_;
    KeyIndex cells_;
};

} // namespace korvel
