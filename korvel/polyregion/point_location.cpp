// Finding the region of a polygon-region set that contains a point.

#include <algorithm>

#include "korvel/base/indices.h"
#include "korvel/plane/winding.h"
#include "korvel/polyregion/ccploy2drg.h"
#include "korvel/polyregion/side_topology.h"

int CCPloy2DRg::search_pt_polyrg(double* p) {
    for (int region = 0; region < region_list.GetSize(); ++region) {
        if (ptInPlyRegen(p, region_list[region]) == 1) {
            return region;
        }
    }
    return -1;
}

int CCPloy2DRg::ptInPlyRegen(double* p, PyToRg& rg) {
    const auto contains_point = [&](int ring) {
        return korvel::has_element(ring_list, ring) && PtInRing(p, ring_list[ring]) == 1;
    };
    if (rg.rings.IsEmpty() || !contains_point(rg.rings[0])) {
        return 0;
    }
    return std::any_of(begin(rg.rings) + 1, end(rg.rings), contains_point) ? 0 : 1;
}

int CCPloy2DRg::PtInRing(double* p, RING& ring) {
    const int n = ring.pts.GetSize();
    if (n < 3 || !korvel::has_all_points(ring, pt_list)) {
        return 0;
    }
    const auto corner = [&](int k) {
        const VERT2D& at = pt_list[ring.pts[k]];
        return korvel::PlanePoint{at.x - p[0], at.y - p[1]};
    };
    return korvel::winding_encloses(n, corner) ? 1 : 0;
}
