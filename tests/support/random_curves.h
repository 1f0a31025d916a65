#pragma once

#include <vector>

#include "korvel/module/korvel.h"
#include "tests/support/dice.h"

namespace korvel::test {

/// A few random closed curves on a small grid, which touch themselves and one another.
inline std::vector<std::vector<tagPOINT>> random_curves(Dice& dice) {
    const int size = dice(4, 9);
    std::vector<std::vector<tagPOINT>> curves(static_cast<std::size_t>(dice(3, 9)));
    for (std::vector<tagPOINT>& curve : curves) {
        const int corners = dice(2, 6);
        for (int i = 0; i < corners; ++i) {
            const int x = dice(0, size); // in this order with every compiler
            curve.push_back({x, dice(0, size)});
        }
        curve.push_back(curve.front());
    }
    return curves;
}

} // namespace korvel::test
