#pragma once

#include <utility>

#include "korvel/platform/framework.h"

namespace korvel {

/// Shell's sort (D. L. Shell, 1959) with gaps halving from half the length. It is not stable across
/// gap chains, and the order in which it leaves equal elements is part of the library's answers.
/// `goes_after(x, key)` returns whether x must come after key.
template <class List, class GoesAfter>
void shell_sort(List& list, int size, GoesAfter goes_after) {
    for (int gap = size / 2; gap > 0; gap /= 2) {
        for (int i = gap; i < size; ++i) {
            auto key = std::move(list[i]);
            int slot = i;
            while (slot >= gap && goes_after(list[slot - gap], key)) {
                list[slot] = std::move(list[slot - gap]);
                slot -= gap;
            }
            list[slot] = std::move(key);
        }
    }
}

} // namespace korvel
