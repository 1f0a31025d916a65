#pragma once

#include "korvel/base/members.h"
#include "korvel/platform/framework.h"

/// A point of a polygon-region set.
struct VERT2D {
    double x = 0; ///< plane coordinates, in the set's units
    double y = 0;
    CArray<int> ring_refs; ///< carried along by copies; the library never fills it
    CArray<int> side_refs; ///< sides that end at the point, ascending; see `creat_top_rel`
    int mark = 0;          ///< carried along by copies

    VERT2D() = default;
    VERT2D(const VERT2D& src) { *this = src; }
    VERT2D(VERT2D&&) noexcept = default;
    VERT2D& operator=(VERT2D&&) noexcept = default;
    ~VERT2D() = default;

    VERT2D& operator=(const VERT2D& src) {
        if (this != &src) {
            korvel::copy_members(*this, src, &VERT2D::x, &VERT2D::y, &VERT2D::ring_refs,
                                 &VERT2D::side_refs, &VERT2D::mark);
        }
        return *this;
    }
};
