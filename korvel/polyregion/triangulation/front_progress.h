#pragma once

#include <algorithm>

#include "korvel/platform/check_point.h"
#include "korvel/polyregion/plydt.h"

namespace korvel {

/// Calls the check point while the front of one region advances. What is done is counted in
/// triangles, of as many as a simple region has.
class FrontProgress {
public:
    FrontProgress() = default;
    FrontProgress(const PLYDT& set, const PLYDT::PyToRg& region)
        : first_triangle_(set.trg_list.GetSize()), triangles_(2LL * region.rings.GetSize() - 4) {
        for (const int ring : region.rings) {
            triangles_ += set.ring_list[ring].pts.GetSize();
        }
    }

    /// To be called when another edge has been closed.
    void edge_is_closed(const PLYDT& set, int step) {
        if (++edges_ % step == 0) {
            const long long found = set.trg_list.GetSize() - first_triangle_;
            const long long all = std::max(triangles_, 1LL); // a ring of a point or two has none
            check_point("advancing the front", std::min(found, all), all);
        }
    }

private:
    int first_triangle_ = 0;
    long long triangles_ = 0;
    long long edges_ = 0;
};

} // namespace korvel
