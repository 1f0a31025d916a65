#pragma once

#include "korvel/base/members.h"
#include "korvel/platform/framework.h"

/// A closed sequence of points; the last point is joined to the first.
struct RING {
    int tag0 = 0; ///< carried along by copies
    int tag1 = 0;
    CArray<int> pts;   ///< point indices in ring order
    CArray<int> sides; ///< entry k joins `pts[k]` and `pts[(k + 1) mod n]`; see `creat_top_rel`

    RING() = default;
    RING(const RING& src) { *this = src; }
    RING(RING&&) noexcept = default;
    RING& operator=(RING&&) noexcept = default;
    ~RING() = default;

    RING& operator=(const RING& src) {
        if (this != &src) {
            korvel::copy_members(*this, src, &RING::tag0, &RING::tag1, &RING::pts, &RING::sides);
        }
        return *this;
    }
};
