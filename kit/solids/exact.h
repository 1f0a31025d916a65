#pragma once

#include <span>

#include "korvel/module/korvel.h"

namespace korvel::kit {

/// A model for operations of the exact class that are not declared `const`, but only read, or write
/// nothing but their marks.
inline TMOD3D& operand(const TMOD3D& model) {
    return const_cast<TMOD3D&>(model);
}

inline std::span<const int> span_of(const CArray<int>& list) {
    return {list.begin(), list.end()};
}

} // namespace korvel::kit
