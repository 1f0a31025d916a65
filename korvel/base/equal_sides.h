#pragma once

// The names that the body model's derivation uses for pairs of indices.

#include "korvel/base/equal_pairs.h"

namespace korvel {

using Side = IndexPair;

/// The pair of a record that has one index only.
inline Side point_side(int point) {
    return {point, point};
}

inline std::vector<int> first_equal_sides(const std::vector<Side>& sides) {
    return first_equal_pairs(sides);
}

} // namespace korvel
