#pragma once

#include "korvel/base/members.h"
#include "korvel/platform/framework.h"

/// A side of a `CCPloy2DRg`: two points that follow one another on a ring, stored once however many
/// rings run along it.
struct LINE2D {
    int p0 = 0; ///< point indices, in the direction in which the side was first met
    int p1 = 0;
    CArray<int> list_a; ///< carried along by copies; the library never fills them
    CArray<int> list_b;
    int flags = 0; ///< carried along by copies
    double a = 0;  ///< line a·x + b·y + c = 0, scaled so that a² + b² + c² = 1
    double b = 0;
    double c = 0;

    LINE2D() = default;
    LINE2D(const LINE2D& src) { *this = src; }
    LINE2D(LINE2D&&) noexcept = default;
    LINE2D& operator=(LINE2D&&) noexcept = default;
    ~LINE2D() = default;

    LINE2D& operator=(const LINE2D& src) {
        if (this != &src) {
            korvel::copy_members(*this, src, &LINE2D::p0, &LINE2D::p1, &LINE2D::list_a,
                                 &LINE2D::list_b, &LINE2D::flags, &LINE2D::a, &LINE2D::b,
                                 &LINE2D::c);
        }
        return *this;
    }
};
