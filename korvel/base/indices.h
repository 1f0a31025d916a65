#pragma once

#include <algorithm>
#include <limits>
#include <utility>

#include "korvel/platform/framework.h"

namespace korvel {

/// Whether `index` names an element of `list`. Hosts fill index lists by hand and from files, so
/// whatever walks one asks first.
template <class List>
bool has_element(const List& list, int index) {
    return index >= 0 && index < list.GetSize();
}

/// Whether all of `indices` name elements of `list`.
template <class List>
bool has_elements(const List& list, const CArray<int>& indices) {
    return std::all_of(begin(indices), end(indices),
                       [&](int index) { return has_element(list, index); });
}

/// An index moved on by a number of records; one that no list can hold stays outside of every list.
inline int shifted_index(int index, int by) {
    const long long moved = static_cast<long long>(index) + by;
    return static_cast<int>(std::clamp<long long>(moved, std::numeric_limits<int>::min(),
                                                  std::numeric_limits<int>::max()));
}

/// Makes `target`, which may hold anything, `count` elements long; their values are unspecified. It
/// is sized once, and not at all where it had that many before.
template <class Target>
void set_length(Target& target, int count) {
    if (target.GetSize() == count) {
        return;
    }
    if (!target.IsEmpty()) {
        target.SetSize(0);
    }
    target.SetSize(count);
}

/// Fills `target`, which may hold anything, with `count` elements.
template <class Target, class Element>
void assign_range(Target& target, const Element* from, int count) {
    set_length(target, count);
    std::copy_n(from, count, begin(target));
}

/// The same with the elements of a vector.
template <class Target, class Source>
void assign_list(Target& target, const Source& source) {
    assign_range(target, source.data(), static_cast<int>(source.size()));
}

/// Removes every element for which `goes` holds; the others keep their order. Linear, where
/// removing one by one would shift the rest each time.
template <class List, class Predicate>
void remove_elements(List& list, Predicate goes) {
    int kept = 0;
    for (int i = 0; i < list.GetSize(); ++i) {
        if (!goes(list[i])) {
            if (kept != i) {
                list[kept] = std::move(list[i]);
            }
            ++kept;
        }
    }
    list.SetSize(kept);
}

} // namespace korvel
