#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <vector>

#include "korvel/base/bloom_filter.h"
#include "korvel/base/key_index.h"
#include "korvel/polyregion/plydt.h"

namespace korvel {

/// Answers whether a triangle list contains a triangle already, with its corners in any order.
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
        const PointSet points(set, region);
        for (; taken_ < list_.GetSize(); ++taken_) {
            if (points.has_corners_of(list_[taken_])) {
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
    /// The points of a region, as a byte for each index from the smallest to the largest and one
    /// for all others. It is asked for every listed triangle, and most of these belong to other
    /// regions: the answer takes no branch.
    class PointSet {
    public:
        PointSet(const PLYDT& set, const PLYDT::PyToRg& region) {
            std::uint32_t high = 0;
            const auto each_point = [&](auto use) {
                for (const int ring : region.rings) {
                    for (const int pt : set.ring_list[ring].pts) {
                        use(static_cast<std::uint32_t>(pt));
                    }
                }
            };
            each_point([&](std::uint32_t pt) {
                low_ = std::min(low_, pt);
                high = std::max(high, pt);
            });
            others_ = high < low_ ? 0 : high - low_ + 1;
            has_.assign(std::size_t{others_} + 1, 0);
            each_point([&](std::uint32_t pt) { has_[pt - low_] = 1; });
        }

        bool has_corners_of(const PLYDT::TRG& t) const {
            return (has(t.va) & has(t.vb) & has(t.vc)) != 0;
        }

    private:
        unsigned has(int pt) const {
            return has_[std::min(static_cast<std::uint32_t>(pt) - low_, others_)];
        }

        std::uint32_t low_ = std::numeric_limits<std::uint32_t>::max();
        std::uint32_t others_ = 0; ///< where `has_` answers for all other indices
        std::vector<unsigned char> has_;
    };

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
            // With two equal corners it is the same as every triangle that has both of its points.
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
