#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace korvel::kit {

/// Sorts by keys of 64 bits; what has equal keys keeps its order. Linear in time; takes as much
/// memory again as the list has.
template <class T, class KeyOf>
void radix_sort(std::vector<T>& list, KeyOf key_of) {
    constexpr unsigned bits = 11;
    constexpr unsigned key_bits = 64;
    std::vector<T> other(list.size());
    for (unsigned shift = 0; shift < key_bits; shift += bits) {
        const auto digit = [&](const T& item) {
            return static_cast<std::size_t>((key_of(item) >> shift) & ((1U << bits) - 1));
        };
        std::array<std::size_t, std::size_t{1} << bits> places = {};
        for (const T& item : list) {
            ++places[digit(item)];
        }
        if (list.empty() || places[digit(list.front())] == list.size()) {
            continue; // the same digit in all keys
        }
        std::size_t first = 0;
        for (std::size_t& place : places) {
            first += std::exchange(place, first);
        }
        for (const T& item : list) {
            other[places[digit(item)]++] = item;
        }
        list.swap(other);
    }
}

} // namespace korvel::kit
