#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "korvel/polyregion/triangulation/disk.h"
#include "korvel/polyregion/triangulation/region_points.h"
#include "korvel/polyregion/triangulation/two_doubles.h"

namespace korvel {

/// The points of slots, in the coordinates of the search.
struct Coordinates {
    std::vector<double> x;
    std::vector<double> y;

    void resize(std::size_t slots) {
        x.resize(slots + 1); // so that any slot begins a pair
        y.resize(slots + 1);
    }
    void set(int slot, PlanePoint p) {
        x[slot] = p.x;
        y[slot] = p.y;
    }
    PlanePoint operator[](int slot) const { return {x[slot], y[slot]}; }
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

    /// Goes down from the root. `visit(box)` is called for each box on the way until a call returns
    /// true; the lowest two bits of `pick(first half)` are set for the halves to visit.
    template <class Visit, class Pick>
    void any_box(Visit visit, Pick pick) const {
        std::array<int, 64> waiting; // one to a level and one more
        std::size_t count = 0;
        waiting[count++] = root;
        while (count > 0) {
            const int box = waiting[--count];
            if (visit(box)) {
                return;
            }
            if (!is_leaf(box)) {
                const unsigned picked = pick(first_half(box));
                if ((picked & 2U) != 0 && has_slots(second_half(box))) {
                    waiting[count++] = second_half(box);
                }
                if ((picked & 1U) != 0) {
                    waiting[count++] = first_half(box);
                }
            }
        }
    }

    /// Slots of a leaf: bit i stands for the i-th of them.
    using Bits = std::uint64_t;

    /// The slots where a form is above a margin, and those where it is below −margin; bits beyond
    /// the leaf's slots are unspecified.
    struct Signs {
        Bits above = 0;
        Bits below = 0;

        Bits within() const { return ~(above | below); }
    };
    Signs signs(int leaf, const Coordinates& points, const LineForm& form, double margin) const {
        Signs bits;
        const auto nx = TwoDoubles::both(form.nx);
        const auto ny = TwoDoubles::both(form.ny);
        const auto c = TwoDoubles::both(form.c);
        const auto high = TwoDoubles::both(margin);
        const auto low = TwoDoubles::both(-margin);
        each_pair(leaf, points, [&](TwoDoubles x, TwoDoubles y, int i) {
            const TwoDoubles value = nx * x + ny * y + c;
            bits.above |= Bits{value > high} << i;
            bits.below |= Bits{low > value} << i;
        });
        return bits;
    }

    /// The slots outside of a disk, in the same way.
    Bits outside(int leaf, const Coordinates& points, const Disk& disk) const {
        Bits bits = 0;
        const auto centre_x = TwoDoubles::both(disk.centre.x);
        const auto centre_y = TwoDoubles::both(disk.centre.y);
        const auto most = TwoDoubles::both(disk.radius * disk.radius);
        each_pair(leaf, points, [&](TwoDoubles x, TwoDoubles y, int i) {
            const TwoDoubles dx = x - centre_x;
            const TwoDoubles dy = y - centre_y;
            bits |= Bits{dx * dx + dy * dy > most} << i;
        });
        return bits;
    }

    Bits all(int leaf) const { return ~Bits{0} >> (64 - (end_slot(leaf) - first_slot(leaf))); }

private:
    template <class Use>
    void each_pair(int leaf, const Coordinates& points, Use use) const {
        const int first = first_slot(leaf);
        const int count = end_slot(leaf) - first;
        const double* const x = points.x.data() + first;
        const double* const y = points.y.data() + first;
        for (int i = 0; i < count; i += 2) {
            use(TwoDoubles::load(x + i), TwoDoubles::load(y + i), i);
        }
    }

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
