#pragma once

#include <bit>
#include <cstdint>
#include <vector>

namespace korvel {

/// A set of the indices below a size, as a priority queue: a bit for each index, and above each
/// level a level with a bit for each of its words that is not 0. Both operations cost one step for
/// each factor of 64 in the size.
class IndexSet {
public:
    explicit IndexSet(int size) {
        auto words = static_cast<std::size_t>(size);
        do {
            words = words / 64 + 1;
            levels_.emplace_back(words, 0);
        } while (words > 1);
    }

    bool is_empty() const { return levels_.back()[0] == 0; }

    void insert(int index) {
        auto at = static_cast<std::size_t>(index);
        for (std::vector<std::uint64_t>& level : levels_) {
            std::uint64_t& word = level[at / 64];
            const bool is_known_above = word != 0;
            word |= std::uint64_t{1} << at % 64;
            if (is_known_above) {
                return;
            }
            at /= 64;
        }
    }

    /// Removes and returns the smallest index. There must be one.
    int take_first() {
        std::size_t at = 0;
        for (std::size_t level = levels_.size(); level-- > 0;) {
            at = 64 * at + static_cast<std::size_t>(std::countr_zero(levels_[level][at]));
        }
        const auto first = static_cast<int>(at);
        for (std::vector<std::uint64_t>& level : levels_) {
            std::uint64_t& word = level[at / 64];
            word &= word - 1;
            if (word != 0) {
                break;
            }
            at /= 64;
        }
        return first;
    }

private:
    std::vector<std::vector<std::uint64_t>> levels_; ///< the indices themselves first
};

} // namespace korvel
