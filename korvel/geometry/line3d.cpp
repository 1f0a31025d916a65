#include "korvel/geometry/line3d.h"

#include <cmath>

#include "korvel/base/indices.h"
#include "korvel/base/members.h"
#include "korvel/geometry/poly3d.h"
#include "korvel/geometry/vectors.h"
#include "korvel/plane/line_equation.h"

using korvel::has_element;

LINE3D::LINE3D(const LINE3D& src) {
    *this = src;
}

LINE3D& LINE3D::operator=(const LINE3D& src) {
    korvel::copy_members(*this, src, &LINE3D::start_vert, &LINE3D::end_vert, &LINE3D::direction,
                         &LINE3D::length, &LINE3D::line_2d_eqt, &LINE3D::state_flags,
                         &LINE3D::main_axis, &LINE3D::faces, &LINE3D::bodies);
    return *this;
}

void LINE3D::Copy(const LINE3D& src) {
    *this = src;
}

void LINE3D::RemoveAll() {
    korvel::remove_lists(*this, &LINE3D::faces, &LINE3D::bodies);
}

void LINE3D::set_line_point(int a, int b) {
    start_vert = a;
    end_vert = b;
}

void LINE3D::set_line_eqt(CArray<VERT3D, VERT3D&>& verts) {
    if (!has_element(verts, start_vert) || !has_element(verts, end_vert)) {
        return;
    }
    length =
        korvel::direction_to(verts[start_vert].model_xyz, verts[end_vert].model_xyz, direction);
    main_axis = korvel::main_axis_of(direction);
}

void LINE3D::set_line_2d_eqt(CArray<VERT3D, VERT3D&>& verts) {
    if (!has_element(verts, start_vert) || !has_element(verts, end_vert)) {
        return;
    }
    const double* from = verts[start_vert].view_xyz;
    const double* to = verts[end_vert].view_xyz;
    const korvel::LineEquation line = korvel::line_through({from[0], from[1]}, {to[0], to[1]});
    line_2d_eqt[0] = line.a;
    line_2d_eqt[1] = line.b;
    line_2d_eqt[2] = line.c;
}

int LINE3D::det_vert_at(int v) {
    if (start_vert == v) {
        return end_vert;
    }
    return end_vert == v ? start_vert : -1;
}

bool LINE3D::detect_line_cross_poly(POLY3D& face, CArray<VERT3D, VERT3D&>& verts) {
    double point[3] = {};
    return has_element(verts, start_vert) &&
           korvel::segment_meets_plane(verts[start_vert].model_xyz, direction, length, face.plane,
                                       point) &&
           face.det_3dpoint_in_con_poly(point, verts);
}
