#pragma once

#include "korvel/region/cregion.h"
#include "tests/region/plain_region.h"
#include "tests/support/lists.h"

namespace korvel::test {

/// A network and the results of the library.
struct Analysed {
    explicit Analysed(const Curves& curves, double tolerance = 1) : network(curves) {
        region.SetTolerance(tolerance);
        region.SetPtsInfo(network.pts, network.counts);
    }
    explicit Analysed(const char* curves, double tolerance = 1)
        : Analysed(curves_from(curves), tolerance) {}

    Lists regions() const { return analysis_of(region).regions; }
    Ints selected() const {
        Ints marks;
        for (const CREGION::PyToRg& one : region.regions) {
            marks.push_back(one.is_select);
        }
        return marks;
    }

    Network network;
    CREGION region;
};

} // namespace korvel::test
