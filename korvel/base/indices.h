#pragma once

#include <algorithm>
#include <limits>
#include <numeric>
#include <span>
#include <utility>
#include <vector>

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
    return std::all_of(indices.begin(), indices.end(),
                       [&](int index) { return has_element(list, index); });
}

/// An index moved on by a number of records; one that no list can hold stays outside of every list.
inline int shifted_index(int index, int by) {
    const long long moved = static_cast<long long>(index) + by;
    return static_cast<int>(std::clamp<long long>(moved, std::numeric_limits<int>::min(),
                                                  std::numeric_limits<int>::max()));
}

/// Makes `target`, which may hold anything, `count` elements long, whose values are not told. It is
/// sized once, and not at all where it had that many before.
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
    std::copy_n(from, count, target.begin());
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

/// Many lists of ints in one array. `each_pair(add)` calls `add(list, value)` for every entry,
/// twice over: first to count, then to fill. Entries keep the order of the calls.
class PackedLists {
public:
    template <class EachPair>
    PackedLists(int lists, EachPair each_pair) : starts_(static_cast<std::size_t>(lists) + 2, 0) {
        each_pair([&](int list, int) { ++starts_[list + 2]; });
        std::partial_sum(starts_.begin(), starts_.end(), starts_.begin());
        values_.resize(starts_.back());
        // Filling moves the start of each list, which stands one too far, on to its end.
        each_pair([&](int list, int value) { values_[starts_[list + 1]++] = value; });
    }

    std::span<const int> operator[](int list) const {
        const auto at = static_cast<std::size_t>(list);
        return {values_.data() + starts_[at], starts_[at + 1] - starts_[at]};
    }

private:
    std::vector<std::size_t> starts_;
    std::vector<int> values_;
};

/// Fills `lists` lists at once with the entries of `each_pair` as above, each sized once.
/// `list_of(i)` gives list i; all are emptied first. By way of one array, which is written in any
/// order sooner than many small ones.
template <class EachPair, class ListOf>
void distribute(int lists, EachPair each_pair, ListOf list_of) {
    const PackedLists packed(lists, each_pair);
    for (int i = 0; i < lists; ++i) {
        assign_list(list_of(i), packed[i]);
    }
}

} // namespace korvel
