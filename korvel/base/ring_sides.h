#pragma once

namespace korvel {

/// The position after `k` around a closed list of `count` elements, whose last is followed by its
/// first.
inline int next_around(int k, int count) {
    return k + 1 < count ? k + 1 : 0;
}

/// Calls `visit(k, a, b)` for each pair of elements that follow one another around a closed list of
/// `count`: (0, 1), (1, 2), …, (count − 1, 0). A single element is followed by itself.
template <class List, class Visit>
void for_each_side(const List& list, int count, Visit visit) {
    for (int k = 0; k < count; ++k) {
        visit(k, list[k], list[next_around(k, count)]);
    }
}

} // namespace korvel
