// Drawing a polygon-region set and finding the region under a point.

#include "korvel/base/indices.h"
#include "korvel/plane/device_point.h"
#include "korvel/plane/fill.h"
#include "korvel/plane/winding.h"
#include "korvel/polyregion/ccploy2drg.h"
#include "korvel/polyregion/side_topology.h"

using korvel::DeviceMapping;
using korvel::has_element;
using korvel::PlanePoint;

void CCPloy2DRg::Draw_Poly_Line(int ox, int oy, double x0, double y0, double sx, double sy,
                                double s, CDC* dc) {
    if (side_list.IsEmpty() || dc == nullptr) {
        return;
    }
    const DeviceMapping to_device{ox, oy, x0, y0, sx, sy, s};
    CPen pen(PS_SOLID, 1, RGB(255, 0, 0));
    CPen* const previous = dc->SelectObject(&pen);
    for (const LINE2D& side : side_list) {
        if (has_element(pt_list, side.p0) && has_element(pt_list, side.p1)) {
            const POINT from = to_device(pt_list[side.p0].x, pt_list[side.p0].y);
            const POINT to = to_device(pt_list[side.p1].x, pt_list[side.p1].y);
            dc->MoveTo(from.x, from.y);
            dc->LineTo(to.x, to.y);
        }
    }
    dc->SelectObject(previous);
    pen.DeleteObject();
}

void CCPloy2DRg::Draw_Poly(int ox, int oy, double x0, double y0, double sx, double sy, double s,
                           PyToRg& rg, CDC* dc) {
    if (dc == nullptr) {
        return;
    }
    const COLORREF background = dc->GetBkColor();
    const DeviceMapping to_device{ox, oy, x0, y0, sx, sy, s};
    korvel::PolygonGroup group;
    for (const int ring : rg.rings) {
        if (has_element(ring_list, ring) && korvel::has_all_points(ring_list[ring], pt_list)) {
            for (const int pt : ring_list[ring].pts) {
                group.points.push_back(to_device(pt_list[pt].x, pt_list[pt].y));
            }
            group.counts.push_back(ring_list[ring].pts.GetSize());
        }
    }
    group.fill(*dc, RGB(rg.red, rg.green, rg.blue));
    dc->SetBkColor(background);
}

void CCPloy2DRg::Draw_Regon(int ox, int oy, double x0, double y0, double sx, double sy, double s,
                            CDC* dc) {
    if (dc == nullptr) {
        return;
    }
    dc->SetPolyFillMode(ALTERNATE);
    for (PyToRg& region : region_list) {
        Draw_Poly(ox, oy, x0, y0, sx, sy, s, region, dc);
    }
}

int CCPloy2DRg::search_pt_polyrg(double* p) {
    for (int region = 0; region < region_list.GetSize(); ++region) {
        if (ptInPlyRegen(p, region_list[region]) == 1) {
            return region;
        }
    }
    return -1;
}

int CCPloy2DRg::ptInPlyRegen(double* p, PyToRg& rg) {
    const auto holds_point = [&](int ring) {
        return has_element(ring_list, ring) && PtInRing(p, ring_list[ring]) == 1;
    };
    if (rg.rings.IsEmpty() || !holds_point(rg.rings[0])) {
        return 0;
    }
    return std::any_of(rg.rings.begin() + 1, rg.rings.end(), holds_point) ? 0 : 1;
}

int CCPloy2DRg::PtInRing(double* p, RING& ring) {
    const int n = ring.pts.GetSize();
    if (n < 3 || !korvel::has_all_points(ring, pt_list)) {
        return 0;
    }
    const auto corner = [&](int k) {
        const VERT2D& at = pt_list[ring.pts[k]];
        return PlanePoint{at.x - p[0], at.y - p[1]};
    };
    return korvel::winding_encloses(n, corner) ? 1 : 0;
}
