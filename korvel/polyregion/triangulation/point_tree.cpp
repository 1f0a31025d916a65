#include "korvel/polyregion/triangulation/point_tree.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace korvel {

void PointTree::start() {
    shape_.start(points_.count());
    vertices_.resize(static_cast<std::size_t>(points_.count()));
    std::iota(vertices_.begin(), vertices_.end(), 0);
    local_.resize(vertices_.size());
    boxes_.assign(shape_.boxes());
    for (int number = SlotTree::root; number < shape_.boxes(); ++number) {
        const int first = shape_.first_slot(number);
        const int end = shape_.end_slot(number);
        if (first == end) {
            continue;
        }
        for (int slot = first; slot < end; ++slot) {
            local_.set(slot, points_.local(vertex(slot)));
        }
        const OrientedBox box = box_around(local_, first, end, tolerance::box * points_.extent());
        boxes_.set(number, box);
        if (order_ == Order::by_nearness && !shape_.is_leaf(number)) {
            divide(number, box);
        }
    }
}

/// Sorts the vertices of a box into its halves.
void PointTree::divide(int number, const OrientedBox& box) {
    const auto along = [&](int p) {
        return points_.local(p).x * box.ux + points_.local(p).y * box.uy;
    };
    const auto middle = vertices_.begin() + shape_.first_slot(SlotTree::second_half(number));
    const auto end = vertices_.begin() + shape_.end_slot(number);
    if (middle != end) {
        std::nth_element(vertices_.begin() + shape_.first_slot(number), middle, end,
                         [&](int p, int q) { return along(p) < along(q); });
    }
}

int PointTree::point_inside(int a, int b, int c) const {
    const PlanePoint at_a = points_.local(a);
    const PlanePoint at_b = points_.local(b);
    const PlanePoint at_c = points_.local(c);
    const std::array<LineForm, 3> sides{left_of(at_a, at_b), left_of(at_b, at_c),
                                        left_of(at_c, at_a)};
    // A point is inside where all three turns have one sign. Unless the area may be rounding, one
    // of them is surely that of the triangle.
    const double area = sides[0].at(at_c);
    const double margin = points_.area_margin();
    const bool may_be_right = area < tolerance::triangle_area * margin;
    const bool may_be_left = area > -tolerance::triangle_area * margin;
    int inner = none;
    any_point(
        [&](int first) {
            unsigned left = may_be_left ? 3U : 0U;
            unsigned right = may_be_right ? 3U : 0U;
            for (const LineForm& side : sides) {
                const OrientedBoxes::Signs boxes = boxes_.signs(first, side, margin);
                left &= ~boxes.below;
                right &= ~boxes.above;
            }
            return left | right;
        },
        [&](int leaf) {
            SlotTree::Bits left = may_be_left ? shape_.all(leaf) : 0;
            SlotTree::Bits right = may_be_right ? shape_.all(leaf) : 0;
            for (const LineForm& side : sides) {
                const SlotTree::Signs bits = shape_.signs(leaf, local_, side, margin);
                left &= ~bits.below;
                right &= ~bits.above;
            }
            return left | right;
        },
        [&](int p) {
            inner = points_.is_inside(a, b, c, p) ? p : none;
            return inner != none;
        });
    return inner;
}

} // namespace korvel
