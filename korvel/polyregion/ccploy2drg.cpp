// The records of a polygon-region set and its derived sides.

#include "korvel/polyregion/ccploy2drg.h"

#include "korvel/base/members.h"
#include "korvel/plane/line_equation.h"
#include "korvel/polyregion/side_topology.h"

CCPloy2DRg::CCPloy2DRg(const CCPloy2DRg& src) {
    *this = src;
}

CCPloy2DRg::~CCPloy2DRg() {
    RemoveAll();
}

CCPloy2DRg& CCPloy2DRg::operator=(const CCPloy2DRg& src) {
    if (this != &src) {
        RemoveAll();
        korvel::copy_members(*this, src, &CCPloy2DRg::pt_list, &CCPloy2DRg::side_list,
                             &CCPloy2DRg::ring_list, &CCPloy2DRg::region_list);
    }
    return *this;
}

void CCPloy2DRg::Copy(const CCPloy2DRg& src) {
    *this = src;
}

CCPloy2DRg::PyToRg& CCPloy2DRg::PyToRg::operator=(const PyToRg& src) {
    if (this != &src) {
        korvel::copy_members(*this, src, &PyToRg::tag0, &PyToRg::tag1, &PyToRg::attr, &PyToRg::red,
                             &PyToRg::green, &PyToRg::blue, &PyToRg::rings);
    }
    return *this;
}

void CCPloy2DRg::RemoveAll() {
    korvel::remove_lists(*this, &CCPloy2DRg::pt_list, &CCPloy2DRg::side_list,
                         &CCPloy2DRg::ring_list, &CCPloy2DRg::region_list);
}

void CCPloy2DRg::translate_cood(int ox, int oy, double x0, double y0, double sx, double sy,
                                double s) {
    for (VERT2D& pt : pt_list) {
        pt.x = (pt.x - ox) * sx / s + x0;
        pt.y = (pt.y - oy) * sy / s + y0;
    }
}

void CCPloy2DRg::creat_top_rel() {
    korvel::derive_sides(*this, [&](int a, int b) {
        const korvel::LineEquation line = korvel::side_line_through(
            korvel::plane_point(pt_list[a]), korvel::plane_point(pt_list[b]));
        LINE2D side;
        side.p0 = a;
        side.p1 = b;
        side.a = line.a;
        side.b = line.b;
        side.c = line.c;
        return side;
    });
}
