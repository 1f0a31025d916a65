#pragma once

#include <cstddef>
#include <iterator>
#include <utility>

namespace korvel::kit {

/// The items 0 … size − 1 of a list, each made by a function of its index when it is asked for.
/// Iterators contain a copy of the function, so that they may outlive the range.
template <class MakeItem>
class IndexedRange {
public:
    class iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using difference_type = std::ptrdiff_t;
        using value_type = decltype(std::declval<const MakeItem&>()(0));
        using reference = value_type;
        using pointer = void;

        iterator() = default;
        iterator(MakeItem make, int index) : make_(std::move(make)), index_(index) {}
        value_type operator*() const { return make_(index_); }
        iterator& operator++() {
            ++index_;
            return *this;
        }
        iterator operator++(int) {
            iterator before = *this;
            ++index_;
            return before;
        }
        bool operator==(const iterator& other) const { return index_ == other.index_; }

    private:
        MakeItem make_{};
        int index_ = 0;
    };

    IndexedRange(int size, MakeItem make) : size_(size), make_(std::move(make)) {}

    int size() const { return size_; }
    bool empty() const { return size_ == 0; }
    auto operator[](int index) const { return make_(index); }
    iterator begin() const { return {make_, 0}; }
    iterator end() const { return {make_, size_}; }

private:
    int size_;
    MakeItem make_;
};

} // namespace korvel::kit
