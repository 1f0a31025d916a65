#pragma once

#include "korvel/platform/framework.h"
#include "tests/fuzz/bytes.h"

namespace korvel::test {

/// Coordinates on a small lattice, where curves meet, or anywhere.
inline void load_curves(CArray<tagPOINT>& pts, CArray<int>& counts, Bytes& bytes) {
    const int scale = bytes.chance(4) ? 1 << bytes.choice(25) : 1;
    const int points = bytes.choice(128);
    for (int i = 0; i < points && !bytes.is_empty(); ++i) {
        tagPOINT point{};
        const bool is_anywhere = bytes.chance(32);
        point.x = is_anywhere ? bytes.word() : bytes.choice(16) * scale;
        point.y = is_anywhere ? bytes.word() : bytes.choice(16) * scale;
        pts.Add(point);
    }
    int left = points;
    while (left > 0 && counts.GetSize() < 32) {
        const int count = bytes.chance(32) ? bytes.integer() : bytes.choice(12);
        counts.Add(count);
        left -= count > 0 && count <= left ? count : 1;
    }
}

} // namespace korvel::test
