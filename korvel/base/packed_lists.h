#pragma once

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <span>
#include <utility>
#include <vector>

#include "korvel/base/indices.h"

namespace korvel {

/// Many lists of ints in one array, where a pass over all of them reads memory in order.
class PackedLists {
public:
    /// No lists, to be filled list after list by `add` and `end_list`.
    PackedLists() : starts_(1, 0) {}

    /// `lists` lists. `each_pair(add)` calls `add(list, entry)` for every entry, twice over: first
    /// to count, then to fill. Entries keep the order of the calls.
    template <class EachPair>
    PackedLists(int lists, EachPair each_pair);

    /// Lists of three, one after the other.
    explicit PackedLists(std::vector<int> triples)
        : entries_(std::move(triples)), are_triples_(true) {}

    void reserve(int lists, std::size_t entries) {
        starts_.reserve(static_cast<std::size_t>(lists) + 1);
        entries_.reserve(entries);
    }
    void add(int entry) { entries_.push_back(entry); }
    void end_list() { starts_.push_back(entries_.size()); }

    int size() const {
        return static_cast<int>(are_triples_ ? entries_.size() / 3 : starts_.size() - 1);
    }

    std::span<const int> operator[](int list) const {
        return {entries_.data() + start(list), entries_.data() + start(list + 1)};
    }
    std::span<int> operator[](int list) {
        return {entries_.data() + start(list), entries_.data() + start(list + 1)};
    }

    /// The position of a list's first entry among all entries; for `size()` the number of entries.
    std::size_t start(int list) const {
        return are_triples_ ? 3 * static_cast<std::size_t>(list) : starts_[list];
    }

    /// For each of `indices` indices the lists that contain it, ascending.
    PackedLists inverted(int indices) const {
        return PackedLists(indices, [&](auto add) {
            for (int list = 0; list < size(); ++list) {
                for (const int index : (*this)[list]) {
                    add(index, list);
                }
            }
        });
    }

private:
    std::vector<std::size_t> starts_; ///< of each list and, last, the end of the last list
    std::vector<int> entries_;
    bool are_triples_ = false;
};

template <class EachPair>
PackedLists::PackedLists(int lists, EachPair each_pair)
    : starts_(static_cast<std::size_t>(lists) + 2, 0) {
    std::size_t* const starts = starts_.data();
    each_pair([=](int list, int) { ++starts[list + 2]; });
    std::partial_sum(starts_.begin(), starts_.end(), starts_.begin());
    entries_.resize(starts_.back());
    // Filling list i moves element i + 1, which starts as the start of list i, to its end.
    int* const entries = entries_.data();
    each_pair([=](int list, int entry) { entries[starts[list + 1]++] = entry; });
    starts_.pop_back();
}

/// Replaces `lists` separate lists by the entries of `each_pair` as above; `list_of(i)` returns
/// list i. Each is sized once, and one array is written at random in place of many small ones.
template <class EachPair, class ListOf>
void distribute(int lists, EachPair each_pair, ListOf list_of) {
    const PackedLists packed(lists, each_pair);
    for (int i = 0; i < lists; ++i) {
        assign_list(list_of(i), packed[i]);
    }
}

/// Whether an index comes up for the first time within a list. Lists are visited one at a time.
class FirstTimes {
public:
    explicit FirstTimes(int indices) : last_list_(static_cast<std::size_t>(indices), -1) {}

    bool is_first(int index, int list) { return std::exchange(last_list_[index], list) != list; }

private:
    std::vector<int> last_list_;
};

} // namespace korvel
