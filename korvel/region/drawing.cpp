// Drawing of the selected regions.

#include "korvel/base/indices.h"
#include "korvel/plane/fill.h"
#include "korvel/region/cregion.h"

void CREGION::Draw_Regon(CDC* dc) {
    if (dc == nullptr) {
        return;
    }
    dc->SetPolyFillMode(ALTERNATE);
    const long long count = regions.GetSize();
    for (int k = 0; k < regions.GetSize(); ++k) {
        if (regions[k].is_select == 1) {
            Draw_Poly(static_cast<int>(255LL * k / count), regions[k], dc);
        }
    }
}

void CREGION::Draw_Poly(int colour_index, PyToRg& region, CDC* dc) {
    if (dc == nullptr) {
        return;
    }
    korvel::PolygonGroup group;
    for (const int ring : region.rings) {
        if (!korvel::has_element(ring_pts, ring) ||
            !korvel::has_elements(unique_pts, ring_pts[ring].pts)) {
            continue;
        }
        for (const int pt : ring_pts[ring].pts) {
            group.points.push_back(unique_pts[pt]);
        }
        group.counts.push_back(ring_pts[ring].pts.GetSize());
    }
    group.fill(*dc, korvel::ramp_colour(colour_index));
}
