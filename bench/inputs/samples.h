#pragma once

#include <string>

#include "korvel/region/cregion.h"
#include "tests/support/sample_curves.h"

namespace korvel::bench {

using test::CurveArrays;
using test::sample_curves;

/// The regions of the first `quarters` quarters of the curves of a file in data/.
template <class RegionSet>
void sample_regions(const std::string& name, long long quarters, RegionSet& set) {
    CurveArrays curves = sample_curves(name, quarters);
    CREGION region;
    region.SetPtsInfo(curves.pts, curves.counts);
    region.GetAllRegion(set);
}

} // namespace korvel::bench
