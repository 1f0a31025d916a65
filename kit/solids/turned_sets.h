#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace korvel::kit {

/// Disjoint sets of faces, in each of which it is known who runs like whom.
class TurnedSets {
public:
    explicit TurnedSets(std::size_t faces) : parents_(faces), is_against_(faces, 0) {
        for (std::size_t face = 0; face < faces; ++face) {
            parents_[face] = static_cast<int>(face);
        }
    }

    /// Returns the first face of the set and whether the face runs against it.
    std::pair<int, bool> root(int face) {
        bool is_against = false;
        while (parents_[face] != face) {
            const int parent = parents_[face];
            is_against_[face] = static_cast<char>(is_against_[face] ^ is_against_[parent]);
            parents_[face] = parents_[parent];
            is_against ^= is_against_[face] != 0;
            face = parents_[face];
        }
        return {face, is_against};
    }

    /// The first relation that is stated counts, on surfaces that cannot be oriented.
    void join(int a, int b, bool run_against) {
        const auto [root_a, a_is_against] = root(a);
        const auto [root_b, b_is_against] = root(b);
        if (root_a != root_b) {
            const bool is_against = (a_is_against != b_is_against) != run_against;
            const auto [first, second] = std::minmax(root_a, root_b);
            parents_[second] = first;
            is_against_[second] = static_cast<char>(is_against);
        }
    }

private:
    std::vector<int> parents_;
    std::vector<char> is_against_; // the parent
};

} // namespace korvel::kit
