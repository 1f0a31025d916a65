// Handing out regions: all of them, or those that clicks have selected.

#include "korvel/base/indices.h"
#include "korvel/base/renumbering.h"
#include "korvel/plane/winding.h"
#include "korvel/polyregion/ccploy2drg.h"
#include "korvel/polyregion/plydt.h"
#include "korvel/region/cregion.h"
#include "korvel/region/curve_spans.h"

using korvel::has_element;
using korvel::PlanePoint;

namespace {

template <class RegionSet>
void write_all(RegionSet& out, const CREGION& source);
template <class RegionSet>
void write_point(RegionSet& out, int slot, const tagPOINT& pt);

} // namespace

void CREGION::GetAllRegion(PLYDT& out) {
    if (is_calculated == 0 || regions.IsEmpty()) {
        return;
    }
    orient_and_select_all();
    write_all(out, *this);
}

void CREGION::GetAllRegion(CCPloy2DRg& out) {
    if (is_calculated == 0 || regions.IsEmpty()) {
        return;
    }
    orient_and_select_all();
    write_all(out, *this);
}

void CREGION::orient_and_select_all() {
    for (PyToRg& region : regions) {
        region.is_select = 1;
    }
    for (RToPt& ring : ring_pts) {
        ClockwiseRing(ring, unique_pts);
    }
}

void CREGION::GetSelectRegion(PLYDT& out) {
    if (ring_pts.IsEmpty()) {
        return;
    }
    out.RemoveAll();

    for (RToPt& ring : ring_pts) {
        ring.is_hole = 0;
    }
    int selected = 0;
    for (const PyToRg& region : regions) {
        if (region.is_select == 1) {
            ++selected;
            for (const int ring : region.rings) {
                if (has_element(ring_pts, ring)) {
                    ring_pts[ring].is_hole = 1; // serves as a used mark here
                }
            }
        }
    }
    korvel::Renumbering ring_numbers(ring_pts.GetSize());
    korvel::Renumbering point_numbers(unique_pts.GetSize());
    for (int k = 0; k < ring_pts.GetSize(); ++k) {
        if (ring_pts[k].is_hole == 1) {
            ring_numbers.use(k);
            ClockwiseRing(ring_pts[k], unique_pts);
            point_numbers.use_all(ring_pts[k].pts);
        }
    }

    out.pt_list.SetSize(point_numbers.number());
    for (int i = 0; i < unique_pts.GetSize(); ++i) {
        if (point_numbers[i] >= 0) {
            write_point(out, point_numbers[i], unique_pts[i]);
        }
    }
    out.ring_list.SetSize(ring_numbers.number());
    for (int k = 0; k < ring_pts.GetSize(); ++k) {
        if (ring_numbers[k] >= 0) {
            point_numbers.copy_renumbered(ring_pts[k].pts, out.ring_list[ring_numbers[k]].pts);
        }
    }
    out.region_list.SetSize(selected);
    int slot = 0;
    for (const PyToRg& region : regions) {
        if (region.is_select == 1) {
            ring_numbers.copy_renumbered(region.rings, out.region_list[slot++].rings);
        }
    }
}

void CREGION::AddSelectRegion(tagPOINT pt) {
    if (is_calculated == 0 || ring_pts.IsEmpty()) {
        return;
    }
    for (PyToRg& region : regions) {
        if (!region.rings.IsEmpty() && has_element(ring_pts, region.rings[0]) &&
            PtInRing(pt, ring_pts[region.rings[0]], unique_pts) == 1) {
            region.is_select = 1;
            return;
        }
    }
}

void CREGION::SetSelectRegion(tagPOINT pt) {
    if (is_calculated == 0 || ring_pts.IsEmpty()) {
        return;
    }
    for (PyToRg& region : regions) {
        region.is_select = 0;
    }
    AddSelectRegion(pt);
}

/// Turns a ring the positive way in a frame whose y axis points up, holes like outer rings: the
/// angles that its points sweep, seen from the last one, must not sum up to less than 0.
void CREGION::ClockwiseRing(RToPt& ring, CArray<tagPOINT>& pts) {
    const int n = ring.pts.GetSize();
    if (n < 3) {
        return;
    }
    if (!has_element(pts, ring.pts[n - 1])) {
        return;
    }
    const tagPOINT& pivot = pts[ring.pts[n - 1]];
    const auto from_pivot = [&](int k) { return korvel::vector_to(pts, ring.pts[k], pivot); };
    double sum = 0;
    PlanePoint a = from_pivot(0);
    for (int k = 1; k <= n - 2; ++k) {
        const PlanePoint b = from_pivot(k);
        sum += korvel::signed_angle(a, b);
        a = b;
    }
    if (sum < 0) {
        std::reverse(begin(ring.pts), end(ring.pts));
    }
}

namespace {

/// Writes everything; the rings have their final orientation already.
template <class RegionSet>
void write_all(RegionSet& out, const CREGION& source) {
    out.RemoveAll();
    out.pt_list.SetSize(source.unique_pts.GetSize());
    for (int i = 0; i < out.pt_list.GetSize(); ++i) {
        write_point(out, i, source.unique_pts[i]);
    }
    out.ring_list.SetSize(source.ring_pts.GetSize());
    for (int k = 0; k < out.ring_list.GetSize(); ++k) {
        out.ring_list[k].pts.Copy(source.ring_pts[k].pts);
    }
    out.region_list.SetSize(source.regions.GetSize());
    for (int k = 0; k < out.region_list.GetSize(); ++k) {
        out.region_list[k].rings.Copy(source.regions[k].rings);
    }
}

template <class RegionSet>
void write_point(RegionSet& out, int slot, const tagPOINT& pt) {
    out.pt_list[slot].x = pt.x;
    out.pt_list[slot].y = pt.y;
}

} // namespace
