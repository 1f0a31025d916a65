#include "korvel/geometry/vert3d.h"

#include <algorithm>

#include "korvel/geometry/view_transform.h"

VERT3D::VERT3D(const VERT3D& src) {
    *this = src;
}

VERT3D& VERT3D::operator=(const VERT3D& src) {
    if (this == &src) {
        return *this;
    }
    std::copy_n(src.model_xyz, 3, model_xyz);
    std::copy_n(src.backup_xyz, 3, backup_xyz);
    std::copy_n(src.temp_view_xyz, 3, temp_view_xyz);
    std::copy_n(src.view_xyz, 3, view_xyz);
    spare_int_1 = src.spare_int_1;
    spare_int_2 = src.spare_int_2;
    spare_int_3 = src.spare_int_3;
    state_flags = src.state_flags;
    faces.Copy(src.faces);
    lines.Copy(src.lines);
    neighbours.Copy(src.neighbours);
    bodies.Copy(src.bodies);
    return *this;
}

void VERT3D::Copy(const VERT3D& src) {
    *this = src;
}

void VERT3D::RemoveAll() {
    faces.RemoveAll();
    lines.RemoveAll();
    neighbours.RemoveAll();
    bodies.RemoveAll();
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
