#pragma once

#include <array>
#include <initializer_list>
#include <vector>

#include "korvel/platform/framework.h"

namespace korvel::test {

using Ints = std::vector<int>;
using Point = std::array<double, 3>;

inline Ints ints(const CArray<int>& list) {
    return Ints(begin(list), end(list));
}

inline Point point(const double* p) {
    return {p[0], p[1], p[2]};
}

inline void set_ints(CArray<int>& list, const Ints& values) {
    list.RemoveAll();
    for (const int value : values) {
        list.Add(value);
    }
}

} // namespace korvel::test
