// A face's equations, and its predicates and measures from coordinates.

#include <algorithm>
#include <cmath>

#include "korvel/base/indices.h"
#include "korvel/base/ring_sides.h"
#include "korvel/geometry/marks.h"
#include "korvel/geometry/poly3d.h"
#include "korvel/geometry/vectors.h"
#include "korvel/plane/turn.h"

using korvel::has_element;
using korvel::PlanePoint;

namespace {

using Verts = CArray<VERT3D, VERT3D&>;

/// The coordinates of the face's first three vertices; `exist` is false where it has fewer.
struct FirstCorners {
    FirstCorners(const CArray<int>& face, Verts& verts, double (VERT3D::*xyz)[3]) {
        if (face.GetSize() < 3) {
            return;
        }
        for (int k = 0; k < 3; ++k) {
            if (!has_element(verts, face[k])) {
                return;
            }
            at[k] = verts[face[k]].*xyz;
        }
        exist = true;
    }

    bool exist = false;
    const double* at[3] = {};
};

/// The sum of the turn signs of the boundary's sides around p; `project(v)` returns the position of
/// vertex v in the plane. A face with an index outside the vertices gives 0.
template <class Project>
int sum_of_turns(const CArray<int>& face, const Verts& verts, PlanePoint p, Project project) {
    if (!korvel::has_elements(verts, face)) {
        return 0;
    }
    int sum = 0;
    korvel::for_each_side(face, face.GetSize(), [&](int, int a, int b) {
        sum += korvel::closed_turn_sign(project(verts[a]), project(verts[b]), p);
    });
    return sum;
}

double squared_distance(const double* p, const double* q) {
    return (p[0] - q[0]) * (p[0] - q[0]) + (p[1] - q[1]) * (p[1] - q[1]);
}

double distance_to_line(const double* p, const double* line) {
    return std::fabs(line[0] * p[0] + line[1] * p[1] + line[2]) /
           std::sqrt(line[0] * line[0] + line[1] * line[1]);
}

} // namespace

void POLY3D::set_poly_eql(CArray<VERT3D, VERT3D&>& verts) {
    const FirstCorners corners(this->verts, verts, &VERT3D::model_xyz);
    if (corners.exist) {
        korvel::plane_through(corners.at[0], corners.at[1], corners.at[2], plane);
        main_axis = korvel::main_axis_of(plane);
    }
}

void POLY3D::get_rotated_poly_eql(CArray<VERT3D, VERT3D&>& verts) {
    const FirstCorners corners(this->verts, verts, &VERT3D::view_xyz);
    if (corners.exist) {
        korvel::plane_through(corners.at[0], corners.at[1], corners.at[2], rotated_plane);
    }
}

void POLY3D::detect_rotated_poly_vis(double* /*p*/) {
    if (rotated_plane[2] > 0.0) {
        state_flags |= korvel::face_mark::faces_viewer;
    } else {
        state_flags &= ~korvel::face_mark::faces_viewer;
    }
}

bool POLY3D::det_point_in_con_poly(double* p, CArray<VERT3D, VERT3D&>* verts) {
    const int n = this->verts.GetSize();
    return n >= 3 && sum_of_turns(this->verts, *verts, {p[0], p[1]}, [](const VERT3D& v) {
                         return PlanePoint{v.view_xyz[0], v.view_xyz[1]};
                     }) == n;
}

bool POLY3D::det_3dpoint_in_con_poly(double* p, CArray<VERT3D, VERT3D&>& verts) {
    const int n = this->verts.GetSize();
    if (n < 3 || main_axis < 0 || main_axis > 2) {
        return false;
    }
    const int first = (main_axis + 2) % 3;
    const int second = (main_axis + 1) % 3;
    // A point on the border counts as +1 for every side, so clockwise projections exclude it.
    const int sum = sum_of_turns(this->verts, verts, {p[first], p[second]}, [&](const VERT3D& v) {
        return PlanePoint{v.model_xyz[first], v.model_xyz[second]};
    });
    return sum == n || sum == -n;
}

double POLY3D::poly_volume(CArray<VERT3D, VERT3D&>& verts) {
    const FirstCorners corners(this->verts, verts, &VERT3D::model_xyz);
    return corners.exist ? korvel::triple_product(corners.at[0], corners.at[1], corners.at[2]) : 0;
}

int POLY3D::get_uvw_near_point(CArray<VERT3D, VERT3D&>& verts, double* p) {
    int nearest = 0;
    double smallest = 0;
    for (int i = 0; i < this->verts.GetSize(); ++i) {
        const int v = this->verts[i];
        if (!has_element(verts, v)) {
            continue;
        }
        const double distance = squared_distance(p, verts[v].view_xyz);
        if (i == 0 || distance < smallest) {
            nearest = v;
            smallest = distance;
        }
    }
    return nearest;
}

int POLY3D::get_uvw_near_side(CArray<VERT3D, VERT3D&>& verts, CArray<LINE3D, LINE3D&>& lines,
                              double* p, double* q) {
    int nearest = -1;
    double smallest = 0;
    for (const int e : this->lines) {
        if (!has_element(lines, e)) {
            continue;
        }
        const double distance = distance_to_line(p, lines[e].line_2d_eqt);
        if (nearest < 0 || distance < smallest) {
            nearest = e;
            smallest = distance;
        }
    }
    if (nearest < 0) {
        return 0;
    }
    const LINE3D& edge = lines[nearest];
    if (!has_element(verts, edge.start_vert) || !has_element(verts, edge.end_vert)) {
        return nearest;
    }
    // The foot of the perpendicular, on the end side of the start whatever side p is on, and not
    // limited to the edge. A radicand that rounds below 0 gives a point that is not finite.
    const VERT3D& start = verts[edge.start_vert];
    const double along = std::sqrt(squared_distance(p, start.view_xyz) - smallest * smallest);
    const double seen_length =
        std::sqrt(squared_distance(start.view_xyz, verts[edge.end_vert].view_xyz));
    const double t = along / seen_length * edge.length;
    for (int k = 0; k < 3; ++k) {
        q[k] = start.model_xyz[k] + t * edge.direction[k];
    }
    return nearest;
}
