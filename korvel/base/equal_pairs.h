#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <numeric>
#include <vector>

#include "korvel/base/key_index.h"

namespace korvel {

/// Two indices whose order does not matter, such as the end points of a side.
struct IndexPair {
    int a;
    int b;
};

namespace equal_pairs {

std::vector<int> by_marks(const std::vector<IndexPair>& pairs, int lowest, std::size_t range);
std::vector<int> by_hash(const std::vector<IndexPair>& pairs);

} // namespace equal_pairs

/// For each pair the index of the first pair of the same two indices, in either order; its own
/// index where no pair before it equals it. Takes time linear in the pairs.
inline std::vector<int> first_equal_pairs(const std::vector<IndexPair>& pairs) {
    if (pairs.empty()) {
        return {};
    }
    int lowest = std::numeric_limits<int>::max();
    int highest = std::numeric_limits<int>::min();
    for (const IndexPair& pair : pairs) {
        lowest = std::min({lowest, pair.a, pair.b});
        highest = std::max({highest, pair.a, pair.b});
    }
    const auto range = static_cast<std::uint64_t>(static_cast<std::int64_t>(highest) - lowest) + 1;
    return range <= 64 + 4 * static_cast<std::uint64_t>(pairs.size())
               ? equal_pairs::by_marks(pairs, lowest, range)
               : equal_pairs::by_hash(pairs);
}

namespace equal_pairs {

/// Sorts the pairs by their lower index into buckets; within a bucket, a mark for each upper index
/// leads to the first pair that has it. For indices in a small range.
inline std::vector<int> by_marks(const std::vector<IndexPair>& pairs, int lowest,
                                 std::size_t range) {

    struct Upper {
        int index;
        int pair;
    };
    const auto slot = [&](int index) { return static_cast<std::size_t>(index - lowest); };
    std::vector<int> ends(range + 1, 0); // of the buckets, once they are filled
    for (const IndexPair& pair : pairs) {
        ++ends[slot(std::min(pair.a, pair.b)) + 1];
    }
    std::partial_sum(ends.begin(), ends.end(), ends.begin());
    std::vector<Upper> sorted(pairs.size());
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        int& end = ends[slot(std::min(pairs[i].a, pairs[i].b))];
        sorted[end++] = {std::max(pairs[i].a, pairs[i].b), static_cast<int>(i)};
    }
    // A mark below the start of a bucket was set by an earlier bucket.
    std::vector<int> marks(range, -1);
    std::vector<int> first(pairs.size());
    int at = 0;
    for (std::size_t lower = 0; lower < range; ++lower) {
        for (const int start = at; at < ends[lower]; ++at) {
            const Upper& upper = sorted[at];
            int& mark = marks[slot(upper.index)];
            if (mark < start) {
                mark = at;
            }
            first[upper.pair] = sorted[mark].pair;
        }
    }
    return first;
}

inline std::vector<int> by_hash(const std::vector<IndexPair>& pairs) {
    std::vector<int> first(pairs.size());
    KeyIndex table(static_cast<int>(pairs.size()));
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        first[i] = table.find_or_add(side_key(pairs[i].a, pairs[i].b), static_cast<int>(i));
    }
    return first;
}

} // namespace equal_pairs

} // namespace korvel
