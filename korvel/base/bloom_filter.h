#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace korvel {

/// A Bloom filter (B. H. Bloom, 1970) with one hash function: excludes most keys that were not
/// added, by one bit, in a table small enough for the processor's cache.
class BloomFilter {
public:
    /// Removes all keys. With more keys than expected it excludes fewer.
    void start(int expected_keys) {
        const auto words = std::bit_ceil(static_cast<std::size_t>(expected_keys) / 8 + 1);
        words_.assign(words, 0);
    }

    /// `hash` is a key with its bits spread, as by `mix_bits`.
    void add(std::uint64_t hash) { word(hash) |= bit(hash); }
    /// False only for a key that was not added.
    bool may_have(std::uint64_t hash) const {
        return (const_cast<BloomFilter*>(this)->word(hash) & bit(hash)) != 0;
    }

private:
    std::uint64_t& word(std::uint64_t hash) { return words_[(hash >> 6U) & (words_.size() - 1)]; }
    static std::uint64_t bit(std::uint64_t hash) { return std::uint64_t{1} << (hash & 63U); }

    std::vector<std::uint64_t> words_ = {0};
};

} // namespace korvel
