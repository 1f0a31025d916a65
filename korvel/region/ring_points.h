#pragma once

#include <vector>

#include "korvel/base/indices.h"
#include "korvel/base/packed_lists.h"
#include "korvel/plane/winding.h"
#include "korvel/region/cregion.h"
#include "korvel/region/curve_spans.h"

namespace korvel {

/// Calls `visit(point, ring)` once for each ring through each of `points` points, in ring order.
/// Indices of points that do not exist are passed over.
template <class Visit>
void for_each_ring_at_point(const CArray<CREGION::RToPt>& rings, int points, Visit visit) {
    FirstTimes first_times(points);
    for (int ring = 0; ring < rings.GetSize(); ++ring) {
        for (const int pt : rings[ring].pts) {
            if (pt >= 0 && pt < points && first_times.is_first(pt, ring)) {
                visit(pt, ring);
            }
        }
    }
}

/// The winding test of `CREGION::PtInRing`, linear in the ring.
inline bool ring_encloses(const CREGION::RToPt& ring, const CArray<tagPOINT>& pts, tagPOINT pt) {
    const auto corner = [&](int k) { return vector_to(pts, ring.pts[k], pt); };
    return winding_encloses(ring.pts.GetSize(), corner);
}

inline void remove_marked_rings(CArray<CREGION::RToPt>& rings) {
    remove_elements(rings, [](const CREGION::RToPt& ring) { return ring.is_removed == 1; });
}

} // namespace korvel
