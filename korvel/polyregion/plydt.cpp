// The records of a triangulated region set, its derived sides, its lifting and its drawing.

#include "korvel/polyregion/plydt.h"

#include "korvel/plane/device_point.h"
#include "korvel/plane/fill.h"
#include "korvel/polyregion/side_topology.h"
#include "korvel/polyregion/triangle_tests.h"

PLYDT::PLYDT(const PLYDT& src) {
    *this = src;
}

PLYDT::~PLYDT() {
    RemoveAll();
}

PLYDT& PLYDT::operator=(const PLYDT& src) {
    if (this == &src) {
        return *this;
    }
    RemoveAll();
    pt_list.SetSize(src.pt_list.GetSize());
    for (int i = 0; i < pt_list.GetSize(); ++i) {
        pt_list[i] = src.pt_list[i];
    }
    side_list.SetSize(src.side_list.GetSize());
    for (int i = 0; i < side_list.GetSize(); ++i) {
        SIDE& side = side_list[i];
        const SIDE& from = src.side_list[i];
        side.p0 = from.p0;
        side.p1 = from.p1;
        side.flags = from.flags;
        side.ux = from.ux;
        side.uy = from.uy;
        side.len = from.len;
    }
    ring_list.SetSize(src.ring_list.GetSize());
    for (int i = 0; i < ring_list.GetSize(); ++i) {
        // A copied ring has its sides but, on purpose, no points.
        ring_list[i].tag0 = src.ring_list[i].tag0;
        ring_list[i].tag1 = src.ring_list[i].tag1;
        ring_list[i].sides.Copy(src.ring_list[i].sides);
    }
    region_list.SetSize(src.region_list.GetSize());
    for (int i = 0; i < region_list.GetSize(); ++i) {
        region_list[i] = src.region_list[i];
    }
    trg_list.Copy(src.trg_list);
    return *this;
}

void PLYDT::Copy(const PLYDT& src) {
    *this = src;
}

PLYDT::SIDE& PLYDT::SIDE::operator=(const SIDE& src) {
    if (this != &src) {
        p0 = src.p0;
        p1 = src.p1;
        list_a.Copy(src.list_a);
        list_b.Copy(src.list_b);
        flags = src.flags;
        ux = src.ux;
        uy = src.uy;
        len = src.len;
    }
    return *this;
}

PLYDT::PyToRg& PLYDT::PyToRg::operator=(const PyToRg& src) {
    if (this != &src) {
        tag0 = src.tag0;
        tag1 = src.tag1;
        rings.Copy(src.rings); // `spare` is not copied
    }
    return *this;
}

void PLYDT::RemoveAll() {
    pt_list.RemoveAll();
    side_list.RemoveAll();
    ring_list.RemoveAll();
    region_list.RemoveAll();
    trg_list.RemoveAll();
}

void PLYDT::creat_top_rel() {
    korvel::derive_sides(*this, [&](int a, int b) {
        const korvel::Direction direction = korvel::direction_between(
            korvel::plane_point(pt_list[a]), korvel::plane_point(pt_list[b]));
        SIDE side;
        side.p0 = a;
        side.p1 = b;
        side.ux = direction.ux;
        side.uy = direction.uy;
        side.len = direction.len;
        return side;
    });
}

void PLYDT::CoordinatesTrans(int axis, int ox, int oy, double x0, double y0, double sx, double sy,
                             double lo, double hi) {
    prism_pts.RemoveAll();
    const int points = pt_list.GetSize();
    if (points < 2 || points > std::numeric_limits<int>::max() / 2) {
        return;
    }
    prism_pts.SetSize(2 * points);
    const auto lift = [axis](double x, double y, double level) -> PRISM_PT {
        switch (axis) {
        case 1:
            return {x, y, level, 0};
        case 2:
            return {x, level, y, 0};
        case 3:
            return {level, x, y, 0};
        default:
            return {};
        }
    };
    for (int i = 0; i < points; ++i) {
        const double x = (pt_list[i].x - ox) / sx + x0;
        const double y = (pt_list[i].y - oy) / sy + y0;
        prism_pts[i] = lift(x, y, lo);
        prism_pts[points + i] = lift(x, y, hi);
    }
}

void PLYDT::Draw_Trgls(CDC* dc) {
    const int triangles = trg_list.GetSize();
    if (triangles < 1 || dc == nullptr) {
        return;
    }
    dc->SetPolyFillMode(ALTERNATE);
    for (int i = 0; i < triangles; ++i) {
        const TRG& triangle = trg_list[i];
        const int corners[] = {triangle.va, triangle.vb, triangle.vc};
        POINT points[3] = {};
        bool complete = true;
        for (int k = 0; k < 3; ++k) {
            if (!korvel::has_element(pt_list, corners[k])) {
                complete = false;
                break;
            }
            points[k].x = korvel::device_coordinate(pt_list[corners[k]].x);
            points[k].y = korvel::device_coordinate(pt_list[corners[k]].y);
        }
        if (complete) {
            const int step = static_cast<int>(255LL * i / triangles);
            const korvel::SelectedBrush brush(*dc, korvel::ramp_colour(step));
            dc->Polygon(points, 3);
        }
    }
}
