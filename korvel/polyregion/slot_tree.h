#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#endif

#include "korvel/polyregion/region_points.h"

namespace korvel {

/// The points of slots, in the coordinates of the search.
struct Coordinates {
    std::vector<double> x;
    std::vector<double> y;

    void resize(std::size_t slots) {
        x.resize(slots);
        y.resize(slots);
    }
    void set(int slot, PlanePoint p) {
        x[static_cast<std::size_t>(slot)] = p.x;
        y[static_cast<std::size_t>(slot)] = p.y;
    }
    PlanePoint operator[](int slot) const {
        return {x[static_cast<std::size_t>(slot)], y[static_cast<std::size_t>(slot)]};
    }
};

/// The shape of a binary tree over the slots of an array. Boxes are numbered from the root, 1,
/// those below box i being 2 i and 2 i + 1; a leaf has up to 64 slots that follow one another.
class SlotTree {
public:
    static constexpr int root = 1;

    /// Few slots make one leaf, where everything is looked at; more are divided into smaller ones.
    void start(int slots) {
        constexpr int most_undivided = 64;
        slots_ = slots;
        leaf_bits_ = slots <= most_undivided ? 6 : 4;
        leaves_ = static_cast<int>(
            std::bit_ceil(static_cast<unsigned>((std::max(slots, 1) - 1) >> leaf_bits_) + 1));
    }

    int boxes() const { return 2 * leaves_; }
    bool is_undivided() const { return leaves_ == 1; }
    bool is_leaf(int box) const { return box >= leaves_; }
    int first_slot(int box) const { return std::min(slots_, shifted(box, 0)); }
    int end_slot(int box) const { return std::min(slots_, shifted(box, 1)); }
    bool has_slots(int box) const { return first_slot(box) < slots_; }
    int leaf_of(int slot) const { return leaves_ + (slot >> leaf_bits_); }

    static int first_half(int box) { return 2 * box; }
    static int second_half(int box) { return 2 * box + 1; }

    enum class Next { pass, enter, stop };

    /// Goes down from the root: `look(box)` tells what to do with each box that has slots.
    template <class Look>
    void any_box(Look look) const {
        std::array<int, 64> waiting; // one to a level and one more
        std::size_t count = 0;
        waiting[count++] = root;
        while (count > 0) {
            const int box = waiting[--count];
            const Next next = look(box);
            if (next == Next::stop) {
                return;
            }
            if (next == Next::enter && !is_leaf(box)) {
                if (has_slots(second_half(box))) {
                    waiting[count++] = second_half(box);
                }
                waiting[count++] = first_half(box);
            }
        }
    }

    /// Slots of a leaf: bit i stands for the i-th of them.
    using Bits = std::uint64_t;

    /// The slots of a leaf where a form is above a margin, and those where it is below −margin.
    struct Sorted {
        Bits above = 0;
        Bits below = 0;

        Bits within() const { return ~(above | below); }
    };
    Sorted sorted(int leaf, const Coordinates& points, const LineForm& form, double margin) const {
        Sorted bits;
        const int first = first_slot(leaf);
        const int count = end_slot(leaf) - first;
        const double* const x = points.x.data() + first;
        const double* const y = points.y.data() + first;
        int i = 0;
#if defined(__SSE2__) || defined(_M_X64)
        const __m128d nx = _mm_set1_pd(form.nx);
        const __m128d ny = _mm_set1_pd(form.ny);
        const __m128d c = _mm_set1_pd(form.c);
        const __m128d high = _mm_set1_pd(margin);
        const __m128d low = _mm_set1_pd(-margin);
        for (; i + 1 < count; i += 2) {
            const __m128d value = _mm_add_pd(_mm_add_pd(_mm_mul_pd(nx, _mm_loadu_pd(x + i)),
                                                        _mm_mul_pd(ny, _mm_loadu_pd(y + i))),
                                             c);
            bits.above |= static_cast<Bits>(_mm_movemask_pd(_mm_cmpgt_pd(value, high))) << i;
            bits.below |= static_cast<Bits>(_mm_movemask_pd(_mm_cmplt_pd(value, low))) << i;
        }
#endif
        for (; i < count; ++i) {
            const double value = form.nx * x[i] + form.ny * y[i] + form.c;
            bits.above |= static_cast<Bits>(value > margin) << i;
            bits.below |= static_cast<Bits>(value < -margin) << i;
        }
        return bits;
    }
    Bits all(int leaf) const {
        return ~Bits{0} >> (64 - (end_slot(leaf) - first_slot(leaf)));
    }

private:
    /// Where the slots of a box, or of the one `next` boxes on, begin.
    int shifted(int box, int next) const {
        const int level = std::bit_width(static_cast<unsigned>(box)) - 1;
        const int below = std::bit_width(static_cast<unsigned>(leaves_)) - 1 - level + leaf_bits_;
        return static_cast<int>(
            std::min<std::int64_t>(slots_, std::int64_t{box + next - (1 << level)} << below));
    }

    int slots_ = 0;
    int leaf_bits_ = 0;
    int leaves_ = 1;
};

} // namespace korvel
