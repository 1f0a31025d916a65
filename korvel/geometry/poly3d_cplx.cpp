#include "korvel/geometry/poly3d_cplx.h"

#include <algorithm>

#include "korvel/base/indices.h"
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
    if (this == &src) {
        return *this;
    }
    area = src.area;
    rgb = src.rgb;
    aux_value = src.aux_value;
    aux_int = src.aux_int;
    hue = src.hue;
    saturation = src.saturation;
    lightness = src.lightness;
    std::copy_n(src.aux_xyz_1, 3, aux_xyz_1);
    std::copy_n(src.aux_xyz_2, 3, aux_xyz_2);
    polys.Copy(src.polys);
    list_2.Copy(src.list_2);
    list_3.Copy(src.list_3);
    list_4.Copy(src.list_4);
    return *this;
}

void POLY3D_CPLX::Copy(const POLY3D_CPLX& src) {
    *this = src;
}

void POLY3D_CPLX::RemoveAll() {
    polys.RemoveAll();
    list_2.RemoveAll();
    list_3.RemoveAll();
    list_4.RemoveAll();
}

void POLY3D_CPLX::cpgn_area(CArray<POLY3D, POLY3D&>& polys) {
    area = 0;
    for (const POLY3D& face : polys) {
        area += face.area;
    }
}

void POLY3D_CPLX::rgb_color() {
    constexpr float group_lightness = 0.6F; // whatever `lightness` held
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
    const auto is_vertex = [&](int v) { return has_element(verts, v); };
    korvel::PolygonGroup group;
    for (const int face : this->polys) {
        if (!has_element(polys, face)) {
            continue;
        }
        const CArray<int>& chain = polys[face].verts;
        if (std::all_of(chain.begin(), chain.end(), is_vertex)) {
            for (const int v : chain) {
                const double* p = verts[v].model_xyz;
                group.points.push_back(to_device(p[ax_u], p[ax_v]));
            }
            group.counts.push_back(chain.GetSize()); // a face without vertices counts as well
        }
    }
    dc->SetPolyFillMode(ALTERNATE);
    group.fill(*dc, static_cast<COLORREF>(rgb));
}
