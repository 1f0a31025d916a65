#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "korvel/base/key_index.h"
#include "korvel/polyregion/plydt.h"

namespace korvel {

/// Answers whether a triangle list contains a triangle already, with its corners in any order.
class ListedTriangles {
public:
    /// Knows of no triangle yet; `list` must outlive this object.
    ListedTriangles(const CArray<PLYDT::TRG>& list, int expected) : list_(list), known_(expected) {}

    /// Takes in what has been appended to the list since the last call.
    void add_new_triangles() {
        for (; taken_ < list_.GetSize(); ++taken_) {
            add(taken_);
        }
    }

    /// Takes in the triangles of the list whose corners are all points of the region, and possibly
    /// a few others, which the region cannot have. Reads the whole list.
    void add_triangles_of(const PLYDT& set, const PLYDT::PyToRg& region) {
        const PointFilter points(set, region);
        const PLYDT::TRG* const triangles = list_.GetData();
        const int count = list_.GetSize();
        for (int i = taken_; i < count; ++i) {
            const PLYDT::TRG& t = triangles[i];
            if (points.may_have(t.va) && points.may_have(t.vb) && points.may_have(t.vc)) {
                add(i);
            }
        }
        taken_ = count;
    }

    bool contains(int a, int b, int c) const {
        const std::array<int, 3> corners = sorted(a, b, c);
        std::uint64_t key = key_of(corners);
        for (int listed = known_.find(key); listed >= 0; listed = known_.find(key)) {
            if (corners_of(listed) == corners) {
                return true;
            }
            key = mix_bits(key);
        }
        const auto is_corner = [&](int v) { return v == a || v == b || v == c; };
        return std::any_of(degenerate_.begin(), degenerate_.end(), [&](int listed) {
            const PLYDT::TRG& t = list_[listed];
            return is_corner(t.va) && is_corner(t.vb) && is_corner(t.vc);
        });
    }

private:
    /// A one-hash Bloom filter of the points of a region: excludes about 31 of 32 other indices,
    /// so that the branch in the loop over all triangles is predictable. It takes 32 to 64 bytes
    /// for each ring entry of the region, however large the set is.
    class PointFilter {
    public:
        PointFilter(const PLYDT& set, const PLYDT::PyToRg& region) {
            std::size_t entries = 0;
            for (const int ring : region.rings) {
                entries += static_cast<std::size_t>(set.ring_list[ring].pts.GetSize());
            }
            const auto bits = static_cast<int>(std::bit_width(32 * entries + 1));
            has_.assign(std::size_t{1} << static_cast<unsigned>(bits), 0);
            shift_ = 64U - static_cast<unsigned>(bits);
            for (const int ring : region.rings) {
                for (const int pt : set.ring_list[ring].pts) {
                    has_[slot_of(pt)] = 1;
                }
            }
        }

        bool may_have(int pt) const { return has_[slot_of(pt)] != 0; }

    private:
        /// Multiplicative hashing by the golden ratio: indices that follow one another spread.
        std::size_t slot_of(int pt) const {
            return (static_cast<std::uint64_t>(static_cast<std::uint32_t>(pt)) *
                    0x9e3779b97f4a7c15U) >>
                   shift_;
        }

        std::vector<unsigned char> has_;
        unsigned shift_ = 63;
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
            first_equal(known_, key_of(corners), triangle,
                        [&](int i, int j) { return corners_of(i) == corners_of(j); });
        }
    }

    const CArray<PLYDT::TRG>& list_;
    KeyIndex known_;
    std::vector<int> degenerate_;
    int taken_ = 0;
};

} // namespace korvel
