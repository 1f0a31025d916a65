#pragma once

#include <string>

#include "korvel/region/cregion.h"

namespace korvel::bench {

/// A curve network as the two arrays that `CREGION::SetPtsInfo` takes.
struct CurveArrays {
    CArray<tagPOINT> pts;
    CArray<int> counts;
};

/// The first `quarters` quarters of the curves of a file in data/.
CurveArrays sample_curves(const std::string& name, long long quarters);

/// The regions of these curves, appended to a set.
template <class RegionSet>
void sample_regions(const std::string& name, long long quarters, RegionSet& set) {
    CurveArrays curves = sample_curves(name, quarters);
    CREGION region;
    region.SetPtsInfo(curves.pts, curves.counts);
    region.GetAllRegion(set);
}

} // namespace korvel::bench
