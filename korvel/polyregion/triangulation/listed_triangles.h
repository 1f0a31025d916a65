#pragma once

#include <algorithm>
#include <array>
#include <vector>

#include "korvel/base/bloom_filter.h"
#include "korvel/base/key_index.h"
#include "korvel/polyregion/plydt.h"

namespace korvel {

/// Answers whether a triangle stands in a triangle list already, with its corners in any order.
class ListedTriangles {
public:
    /// Knows of no triangle yet; `list` must outlive this object.
    ListedTriangles(const CArray<PLYDT::TRG>& list, int expected) : list_(list), known_(expected) {
        filter_.start(expected);
    }

    /// Takes in what has been appended to the list since the last call.
    void add_new_triangles() {
        for (; taken_ < list_.GetSize(); ++taken_) {
            add(taken_);
        }
    }

    /// Takes in those triangles of the list whose corners are all points of the region; no other
    /// can be met while it is triangulated.
    void add_triangles_of(const PLYDT& set, const PLYDT::PyToRg& region) {
        KeyIndex points(64);
        for (const int ring : region.rings) {
            for (const int pt : set.ring_list[ring].pts) {
                points.find_or_add(pair_key(0, pt), 0);
            }
        }
        const auto is_point = [&](int v) { return points.find(pair_key(0, v)) >= 0; };
        for (; taken_ < list_.GetSize(); ++taken_) {
            const PLYDT::TRG& t = list_[taken_];
            if (is_point(t.va) && is_point(t.vb) && is_point(t.vc)) {
                add(taken_);
            }
        }
    }

    bool contains(int a, int b, int c) const {
        const std::array<int, 3> corners = sorted(a, b, c);
        std::uint64_t key = key_of(corners);
        if (filter_.may_have(mix_bits(key))) {
            for (int listed = known_.find(key); listed >= 0; listed = known_.find(key)) {
                if (corners_of(listed) == corners) {
                    return true;
                }
                key = mix_bits(key);
            }
        }
        const auto is_corner = [&](int v) { return v == a || v == b || v == c; };
        return std::any_of(degenerate_.begin(), degenerate_.end(), [&](int listed) {
            const PLYDT::TRG& t = list_[listed];
            return is_corner(t.va) && is_corner(t.vb) && is_corner(t.vc);
        });
    }

private:
    static std::array<int, 3> sorted(int a, int b, int c) {
        const int low = std::min({a, b, c});
        const int high = std::max({a, b, c});
        return {low, std::max(std::min(a, b), std::min(std::max(a, b), c)), high};
    }
    static std::uint64_t key_of(const std::array<int, 3>& corners) {
        return mix_bits(pair_key(corners[0], corners[1])) ^ pair_key(0, corners[2]);
    }
    std::array<int, 3> corners_of(int listed) const {
        const PLYDT::TRG& t = list_[listed];
        return sorted(t.va, t.vb, t.vc);
    }

    void add(int triangle) {
        const std::array<int, 3> corners = corners_of(triangle);
        if (corners[0] == corners[1] || corners[1] == corners[2]) {
            // Two corners in one: it is the same as every triangle that has both of its points.
            degenerate_.push_back(triangle);
        } else {
            filter_.add(mix_bits(key_of(corners)));
            first_equal(known_, key_of(corners), triangle,
                        [&](int i, int j) { return corners_of(i) == corners_of(j); });
        }
    }

    const CArray<PLYDT::TRG>& list_;
    KeyIndex known_;
    BloomFilter filter_; ///< of its first keys
    std::vector<int> degenerate_;
    int taken_ = 0;
};

} // namespace korvel
