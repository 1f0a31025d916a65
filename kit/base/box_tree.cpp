#include "kit/base/box_tree.h"

namespace korvel::kit {

// Boxes are halved by their middles along the axis in which the middles are farther apart.
void BoxTree::build(std::size_t node, std::size_t first, std::size_t last) {
    const auto begin = items_.begin() + static_cast<std::ptrdiff_t>(first);
    const auto end = items_.begin() + static_cast<std::ptrdiff_t>(last);
    Box& box = nodes_[node];
    std::for_each(begin, end, [&](const Item& item) { box.take_in(item.box); });
    if (last - first <= most_in_leaf) {
        return;
    }
    const bool is_wide = std::int64_t{box.right} - box.left >= std::int64_t{box.top} - box.bottom;
    const auto twice_middle = [&](const Item& item) {
        return is_wide ? std::int64_t{item.box.left} + item.box.right
                       : std::int64_t{item.box.bottom} + item.box.top;
    };
    const std::size_t middle = first + (last - first) / 2;
    std::nth_element(
        begin, items_.begin() + static_cast<std::ptrdiff_t>(middle), end,
        [&](const Item& a, const Item& b) { return twice_middle(a) < twice_middle(b); });
    build(2 * node, first, middle);
    build(2 * node + 1, middle, last);
}

} // namespace korvel::kit
