#include "korvel/geometry/vert3d.h"

#include <algorithm>

#include "korvel/base/members.h"
#include "korvel/geometry/view_transform.h"

VERT3D::VERT3D(const VERT3D& src) {
    *this = src;
}

VERT3D& VERT3D::operator=(const VERT3D& src) {
    korvel::copy_members(*this, src, &VERT3D::model_xyz, &VERT3D::backup_xyz,
                         &VERT3D::temp_view_xyz, &VERT3D::view_xyz, &VERT3D::spare_int_1,
                         &VERT3D::spare_int_2, &VERT3D::spare_int_3, &VERT3D::state_flags,
                         &VERT3D::faces, &VERT3D::lines, &VERT3D::neighbours, &VERT3D::bodies);
    return *this;
}

void VERT3D::Copy(const VERT3D& src) {
    *this = src;
}

void VERT3D::RemoveAll() {
    korvel::remove_lists(*this, &VERT3D::faces, &VERT3D::lines, &VERT3D::neighbours,
                         &VERT3D::bodies);
}

void VERT3D::backvert() {
    std::copy_n(model_xyz, 3, backup_xyz);
}

void VERT3D::restorvert() {
    std::copy_n(backup_xyz, 3, model_xyz);
}

void VERT3D::backtempvert() {
    std::copy_n(view_xyz, 3, temp_view_xyz);
}

void VERT3D::copytemvert() {
    std::copy_n(temp_view_xyz, 3, view_xyz);
}

void VERT3D::rotate(double* m) {
    rotate_point(m, model_xyz, view_xyz);
}

void VERT3D::ant_rotate(double* m, double* org) {
    double moved[3] = {view_xyz[0] + org[0], view_xyz[1] + org[1], view_xyz[2] + org[2]};
    rotate_point(m, moved, model_xyz);
}

void VERT3D::trans_uvw_org(double* org) {
    for (int k = 0; k < 3; ++k) {
        view_xyz[k] = view_xyz[k] - org[k];
    }
}
