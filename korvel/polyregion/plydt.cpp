// The records of a triangulated region set, its derived sides, its lifting and its drawing.

#include "korvel/polyregion/plydt.h"

#include <limits>

#include "korvel/base/members.h"
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
    korvel::copy_members(*this, src, &PLYDT::pt_list, &PLYDT::region_list, &PLYDT::trg_list);
    side_list.SetSize(src.side_list.GetSize());
    for (int i = 0; i < side_list.GetSize(); ++i) {
        korvel::copy_members(side_list[i], src.side_list[i], &SIDE::p0, &SIDE::p1, &SIDE::flags,
                             &SIDE::ux, &SIDE::uy, &SIDE::len);
    }
    ring_list.SetSize(src.ring_list.GetSize());
    for (int i = 0; i < ring_list.GetSize(); ++i) {
        // A copied ring has its sides but no points.
        korvel::copy_members(ring_list[i], src.ring_list[i], &RING::tag0, &RING::tag1,
                             &RING::sides);
    }
    return *this;
}

void PLYDT::Copy(const PLYDT& src) {
    *this = src;
}

PLYDT::SIDE& PLYDT::SIDE::operator=(const SIDE& src) {
    if (this != &src) {
        korvel::copy_members(*this, src, &SIDE::p0, &SIDE::p1, &SIDE::list_a, &SIDE::list_b,
                             &SIDE::flags, &SIDE::ux, &SIDE::uy, &SIDE::len);
    }
    return *this;
}

PLYDT::PyToRg& PLYDT::PyToRg::operator=(const PyToRg& src) {
    if (this != &src) {
        // `spare` is not copied.
        korvel::copy_members(*this, src, &PyToRg::tag0, &PyToRg::tag1, &PyToRg::rings);
    }
    return *this;
}

void PLYDT::RemoveAll() {
    korvel::remove_lists(*this, &PLYDT::pt_list, &PLYDT::side_list, &PLYDT::ring_list,
                         &PLYDT::region_list, &PLYDT::trg_list);
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
