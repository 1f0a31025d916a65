#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace korvel {

/// Leaves the elements of a vector unset that are all going to be written before they are read.
template <class Number>
struct Unset : std::allocator<Number> {
    template <class Other>
    struct rebind {
        using other = Unset<Other>;
    };

    template <class Other, class... Values>
    void construct(Other* at, Values&&... values) {
        if constexpr (sizeof...(Values) == 0) {
            ::new (static_cast<void*>(at)) Other;
        } else {
            std::construct_at(at, std::forward<Values>(values)...);
        }
    }
};

template <class Number>
using UnsetVector = std::vector<Number, Unset<Number>>;

/// Lists of indices, one after the other: what passes over all records read and write instead of
/// the records.
class IndexLists {
public:
    IndexLists(int lists, std::size_t entries) {
        ends_.reserve(static_cast<std::size_t>(lists));
        entries_.reserve(entries);
    }

    /// Lists of three.
    explicit IndexLists(UnsetVector<int> entries)
        : entries_(std::move(entries)), are_triples_(true) {}

    void add(int entry) { entries_.push_back(entry); }
    void end_list() { ends_.push_back(static_cast<int>(entries_.size())); }

    int size() const { return static_cast<int>(are_triples_ ? entries_.size() / 3 : ends_.size()); }
    std::size_t entries() const { return entries_.size(); }

    struct Range {
        const int* first;
        const int* last;
        const int* begin() const { return first; }
        const int* end() const { return last; }
        int size() const { return static_cast<int>(last - first); }
    };
    Range operator[](int list) const {
        const int* const data = entries_.data();
        return {data + start(list), data + start(list + 1)};
    }

    /// The first entry of a list, to change it.
    int* first_of(int list) { return entries_.data() + start(list); }

    /// Where list `list` starts among all entries; for one past the last list their end.
    int start(int list) const {
        if (are_triples_) {
            return 3 * list;
        }
        return list == 0 ? 0 : ends_[list - 1];
    }

    /// The list in which an entry stands.
    int list_at(int entry) const {
        if (are_triples_) {
            return entry / 3;
        }
        return static_cast<int>(std::upper_bound(ends_.begin(), ends_.end(), entry) -
                                ends_.begin());
    }

    /// One list for each of `listed` indices: `each_pair(add)` calls `add(index, entry)` for every
    /// entry, twice over, first to count, then to fill. Entries keep the order of the calls.
    template <class EachPair>
    static IndexLists by_index(int listed, EachPair each_pair);

    /// For each of `listed` indices the lists that name it, ascending.
    IndexLists turned_round(int listed) const {
        return by_index(listed, [&](auto add) {
            for (int list = 0; list < size(); ++list) {
                for (const int index : (*this)[list]) {
                    add(index, list);
                }
            }
        });
    }

private:
    std::vector<int> ends_;
    UnsetVector<int> entries_;
    bool are_triples_ = false;
};

template <class EachPair>
IndexLists IndexLists::by_index(int listed, EachPair each_pair) {
    IndexLists lists(0, 0);
    // The end of a list is one further on than the start of the next while they are filled.
    lists.ends_.assign(static_cast<std::size_t>(listed) + 1, 0);
    int* const ends = lists.ends_.data();
    each_pair([=](int index, int) { ++ends[index + 1]; });
    for (int i = 0; i < listed; ++i) {
        ends[i + 1] += ends[i];
    }
    lists.entries_.resize(static_cast<std::size_t>(ends[listed]));
    int* const entries = lists.entries_.data();
    each_pair([=](int index, int entry) { entries[ends[index]++] = entry; });
    lists.ends_.pop_back();
    return lists;
}

/// Tells whether an index comes up for the first time within a list.
class FirstTimes {
public:
    explicit FirstTimes(int size) : last_list_(static_cast<std::size_t>(size), -1) {}

    bool is_first(int index, int list) { return std::exchange(last_list_[index], list) != list; }

private:
    std::vector<int> last_list_;
};

} // namespace korvel
