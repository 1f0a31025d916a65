#include "korvel/geometry/poly3d_cplx.h"

#include "korvel/base/indices.h"
#include "korvel/base/members.h"
#include "korvel/geometry/cmycolor.h"
#include "korvel/plane/device_point.h"
#include "korvel/plane/fill.h"

using korvel::has_element;

namespace {

bool is_axis(int axis) {
    return axis >= 0 && axis < 3;
}

} // namespace

POLY3D_CPLX::POLY3D_CPLX(const POLY3D_CPLX& src) {
    *this = src;
}

POLY3D_CPLX& POLY3D_CPLX::operator=(const POLY3D_CPLX& src) {
    korvel::copy_members(*this, src, &POLY3D_CPLX::area, &POLY3D_CPLX::rgb, &POLY3D_CPLX::aux_value,
                         &POLY3D_CPLX::aux_int, &POLY3D_CPLX::hue, &POLY3D_CPLX::saturation,
                         &POLY3D_CPLX::lightness, &POLY3D_CPLX::aux_xyz_1, &POLY3D_CPLX::aux_xyz_2,
                         &POLY3D_CPLX::polys, &POLY3D_CPLX::list_2, &POLY3D_CPLX::list_3,
                         &POLY3D_CPLX::list_4);
    return *this;
}

void POLY3D_CPLX::Copy(const POLY3D_CPLX& src) {
    *this = src;
}

void POLY3D_CPLX::RemoveAll() {
    korvel::remove_lists(*this, &POLY3D_CPLX::polys, &POLY3D_CPLX::list_2, &POLY3D_CPLX::list_3,
                         &POLY3D_CPLX::list_4);
}

void POLY3D_CPLX::cpgn_area(CArray<POLY3D, POLY3D&>& polys) {
    area = 0;
    for (const POLY3D& face : polys) {
        area += face.area;
    }
}

void POLY3D_CPLX::rgb_color() {
    constexpr float group_lightness = 0.6F; // `lightness` is not read
    unsigned char r = 0;
    unsigned char g = 0;
    unsigned char b = 0;
    CMYColor().HLSToRGBi(static_cast<float>(hue), group_lightness, static_cast<float>(saturation),
                         r, g, b);
    rgb = (b * 256 + g) * 256 + r;
    lightness = group_lightness;
}

void POLY3D_CPLX::draw_a_fill_poly(int ax_u, int ax_v, CArray<POLY3D, POLY3D&>& polys,
                                   CArray<VERT3D, VERT3D&>& verts, int dev_x, int dev_y,
                                   double org_u, double org_v, double unit_u, double unit_v,
                                   double scale, CDC* dc) {
    if (dc == nullptr || !is_axis(ax_u) || !is_axis(ax_v)) {
        return;
    }
    const korvel::DeviceMapping to_device{dev_x, dev_y, org_u, org_v, unit_u, unit_v, scale};
    korvel::PolygonGroup group;
    for (const int face : this->polys) {
        if (!has_element(polys, face)) {
            continue;
        }
        const CArray<int>& chain = polys[face].verts;
        if (korvel::has_elements(verts, chain)) {
            for (const int v : chain) {
                const double* p = verts[v].model_xyz;
                group.points.push_back(to_device(p[ax_u], p[ax_v]));
            }
            group.counts.push_back(chain.GetSize()); // a face without vertices too
        }
    }
    dc->SetPolyFillMode(ALTERNATE);
    group.fill(*dc, static_cast<COLORREF>(rgb));
}
