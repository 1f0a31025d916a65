#include "korvel/body/body3d.h"

#include <algorithm>

BODY3D::BODY3D(const BODY3D& src) {
    *this = src;
}

BODY3D& BODY3D::operator=(const BODY3D& src) {
    if (this == &src) {
        return *this;
    }
    polys.Copy(src.polys);
    lines.Copy(src.lines);
    verts.Copy(src.verts);
    neighbour_bodies.Copy(src.neighbour_bodies);
    volume = src.volume;
    param_1 = src.param_1;
    body_flags = src.body_flags;
    hue = src.hue;
    saturation = src.saturation;
    lightness = src.lightness;
    alpha = src.alpha;
    param_2 = src.param_2;
    param_3 = src.param_3;
    std::copy_n(src.model_min, 3, model_min);
    std::copy_n(src.model_max, 3, model_max);
    std::copy_n(src.view_mid, 3, view_mid);
    std::copy_n(src.view_span, 3, view_span);
    std::copy_n(src.view_min, 3, view_min);
    std::copy_n(src.view_max, 3, view_max);
    change_dirt = src.change_dirt;
    return *this;
}

void BODY3D::Copy(const BODY3D& src) {
    *this = src;
}

void BODY3D::RemoveAll() {
    polys.RemoveAll();
    lines.RemoveAll();
    verts.RemoveAll();
    neighbour_bodies.RemoveAll();
}
