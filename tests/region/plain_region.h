#pragma once

#include <array>
#include <ostream>
#include <utility>
#include <vector>

#include "korvel/region/cregion.h"
#include "tests/support/lists.h"

namespace korvel::test {

struct Pt {
    int x;
    int y;
    bool operator==(const Pt&) const = default;
};
inline std::ostream& operator<<(std::ostream& out, Pt pt) {
    return out << pt.x << "," << pt.y;
}

using Pts = std::vector<Pt>;
using Curves = std::vector<Pts>;
using Lists = std::vector<Ints>;

/// Reads curves written as "0,0 5,5; 0,5 5,0".
Curves curves_from(const char* text);

/// A network in the form that the library takes.
struct Network {
    explicit Network(const Curves& curves);

    CArray<tagPOINT> pts;
    CArray<int> counts;
};

/// The curves that are packed into two arrays; the counts must add up to the points.
Curves curves_in(const CArray<tagPOINT>& pts, const CArray<int>& counts);

/// Everything that `CREGION::SetPtsInfo` and `CalcInExRing` find, field by field.
struct Analysis {
    Curves cleaned; ///< the caller's curves afterwards
    Curves split;
    Pts nodes;
    std::vector<std::array<int, 5>> curve_to_node;
    Ints curve_num;
    Lists curve_ids;
    Lists rings;
    std::vector<double> areas;
    Lists in_rings; ///< the ring around the seed point, if there is one
    Lists ex_rings; ///< the rings directly inside it
    Pts unique_pts;
    Ints pt_index;
    Lists ring_pts;
    std::vector<double> kept_areas;
    Ints is_hole;
    std::vector<std::pair<int, int>> sides;
    Lists rings_at;
    Lists sides_at;
    Lists regions;
};

/// The analysis in its plain form, everything against everything, without the library.
Analysis analyse_plainly(const Curves& curves, Pt seed, double tolerance);

/// What the library has found.
Analysis analysis_of(const CREGION& region);

} // namespace korvel::test
