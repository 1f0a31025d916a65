#include "korvel/body/body3d.h"

#include "korvel/base/members.h"

BODY3D::BODY3D(const BODY3D& src) {
    *this = src;
}

BODY3D& BODY3D::operator=(const BODY3D& src) {
    if (this == &src) {
        return *this; // self-assignment keeps the object
    }
    korvel::copy_members(*this, src, &BODY3D::polys, &BODY3D::lines, &BODY3D::verts,
                         &BODY3D::neighbour_bodies, &BODY3D::volume, &BODY3D::param_1,
                         &BODY3D::body_flags, &BODY3D::hue, &BODY3D::saturation, &BODY3D::lightness,
                         &BODY3D::alpha, &BODY3D::param_2, &BODY3D::param_3, &BODY3D::model_min,
                         &BODY3D::model_max, &BODY3D::view_mid, &BODY3D::view_span,
                         &BODY3D::view_min, &BODY3D::view_max, &BODY3D::change_dirt);
    return *this;
}

void BODY3D::Copy(const BODY3D& src) {
    *this = src;
}

void BODY3D::RemoveAll() {
    korvel::remove_lists(*this, &BODY3D::polys, &BODY3D::lines, &BODY3D::verts,
                         &BODY3D::neighbour_bodies);
}
