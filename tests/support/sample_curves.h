#pragma once

#include <fstream>
#include <stdexcept>
#include <string>

#include "korvel/platform/framework.h"

namespace korvel::test {

/// A curve network as the two arrays that `CREGION::SetPtsInfo` takes.
struct CurveArrays {
    CArray<tagPOINT> pts;
    CArray<int> counts;
};

/// The first `quarters` quarters of the curves of a file in data/, mirrored: y grows downward.
/// Which rings and triangles the exact classes find, and how fast, depends on the direction.
inline CurveArrays sample_curves(const std::string& name, long long quarters = 4) {
    std::ifstream in(KORVEL_DATA_DIR "/" + name + ".curves");
    int curve_count = 0;
    in >> curve_count;
    CurveArrays curves;
    for (int i = 0; i < curve_count * quarters / 4; ++i) {
        int count = 0;
        in >> count;
        curves.counts.Add(count);
        for (int k = 0; k < count; ++k) {
            tagPOINT pt{};
            in >> pt.x >> pt.y;
            pt.y = -pt.y;
            curves.pts.Add(pt);
        }
    }
    if (!in || curves.pts.IsEmpty()) {
        throw std::runtime_error("cannot read the sample " + name);
    }
    return curves;
}

} // namespace korvel::test
