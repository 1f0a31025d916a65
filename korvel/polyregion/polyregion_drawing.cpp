// Drawing a polygon-region set: its sides as lines, its regions filled.

#include "korvel/base/indices.h"
#include "korvel/plane/device_point.h"
#include "korvel/plane/fill.h"
#include "korvel/polyregion/ccploy2drg.h"
#include "korvel/polyregion/side_topology.h"

using korvel::DeviceMapping;
using korvel::has_element;

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
