// The view of a model: matrices, view coordinates, bounds and visibility.

#include <algorithm>
#include <cmath>
#include <utility>

#include "korvel/base/indices.h"
#include "korvel/body/derive/flat_model.h"
#include "korvel/geometry/view_transform.h"

using korvel::has_element;

namespace {

/// Widens the pairs (minimum, maximum) of three axes by a point.
void widen(double* bounds, const double* point) {
    for (int k = 0; k < 3; ++k) {
        if (bounds[2 * k] > point[k]) {
            bounds[2 * k] = point[k];
        }
        if (bounds[2 * k + 1] < point[k]) {
            bounds[2 * k + 1] = point[k];
        }
    }
}

void start_bounds(double* bounds, const double* point) {
    for (int k = 0; k < 3; ++k) {
        bounds[2 * k] = bounds[2 * k + 1] = point[k];
    }
}

/// Minimum, maximum and corners from the bounds; corner numbers count z fastest.
void set_cuboid_corners(TMOD3D& model) {
    for (int k = 0; k < 3; ++k) {
        model.cuboid_min[k] = model.wrap_cuboid[2 * k];
        model.cuboid_max[k] = model.wrap_cuboid[2 * k + 1];
    }
    for (int corner = 0; corner < 8; ++corner) {
        const bool at_max[3] = {(corner & 4) != 0, (corner & 2) != 0, (corner & 1) != 0};
        for (int k = 0; k < 3; ++k) {
            model.cuboid_corners[corner][k] = at_max[k] ? model.cuboid_max[k] : model.cuboid_min[k];
        }
    }
}

/// Radius and corners from the bounds.
void finish_wrap_cuboid(TMOD3D& model) {
    double squares = 0;
    for (int k = 0; k < 3; ++k) {
        const double extent = model.wrap_cuboid[2 * k + 1] - model.wrap_cuboid[2 * k];
        squares += extent * extent;
    }
    model.wrap_radius = 0.5 * std::sqrt(squares);
    set_cuboid_corners(model);
}

/// Moves the bounds of the turned vertices, and what else stands in the view, to their middle.
void centre_view(TMOD3D& model) {
    for (int k = 0; k < 3; ++k) {
        model.view_center[k] = (model.view_bounds[2 * k] + model.view_bounds[2 * k + 1]) * 0.5;
    }
    for (int k = 0; k < 3; ++k) {
        model.view_bounds[2 * k] -= model.view_center[k];
        model.view_bounds[2 * k + 1] -= model.view_center[k];
    }
    model.roate_wrap_cuboid();
}

} // namespace

void TMOD3D::inti_vis_plan() {
    // The second angle is handed in first.
    rate_xyz_matrix(vis_angle_2, vis_angle_1, ant_matrix, rot_matrix, view_dir);
}

void TMOD3D::change_vis_parm() {
    inti_vis_plan();
    rotate_model();
}

void TMOD3D::rotate_model() {
    if (verts.IsEmpty()) {
        return;
    }
    bool is_first = true;
    for (VERT3D& vertex : verts) {
        vertex.rotate(rot_matrix);
        if (std::exchange(is_first, false)) {
            start_bounds(view_bounds, vertex.view_xyz);
        }
        widen(view_bounds, vertex.view_xyz);
    }
    centre_view(*this);
    for (VERT3D& vertex : verts) {
        vertex.trans_uvw_org(view_center);
    }
    for (LINE3D& line : lines) {
        line.set_line_2d_eqt(verts);
    }
    get_vis_poly();
}

void TMOD3D::ant_rotate_model() {
    for (VERT3D& vertex : verts) {
        vertex.ant_rotate(ant_matrix, view_center);
    }
    // Bounds, extents and visibility are left to the caller.
    for (LINE3D& line : lines) {
        line.set_line_eqt(verts);
    }
    for (POLY3D& face : polys) {
        face.set_poly_eql(verts);
    }
}

void TMOD3D::get_vis_poly() {
    for (POLY3D& face : polys) {
        face.get_rotated_poly_eql(verts);
        face.detect_rotated_poly_vis(view_dir);
    }
}

void TMOD3D::trans_model_orig(double* p) {
    // A copy, since p may be a point of this model.
    const double shift[3] = {p[0], p[1], p[2]};
    std::copy_n(shift, 3, orig); // replaced, not added to
    for (VERT3D& vertex : verts) {
        for (int k = 0; k < 3; ++k) {
            vertex.model_xyz[k] -= shift[k];
        }
    }
    for (LINE3D& line : lines) {
        line.set_line_eqt(verts);
    }
    for (POLY3D& face : polys) {
        face.set_poly_eql(verts);
    }
    // Before the model is turned, so the extents in the view are those of before the move.
    for (int b = 0; b < bodies.GetSize(); ++b) {
        get_body_span(b);
    }
    for (int k = 0; k < 3; ++k) {
        wrap_cuboid[2 * k] -= shift[k];
        wrap_cuboid[2 * k + 1] -= shift[k];
        orig_shift[k] = shift[k];
    }
    set_cuboid_corners(*this);
    rotate_model();
}

void TMOD3D::model_wrap_cuboid() {
    if (verts.IsEmpty()) {
        return;
    }
    start_bounds(wrap_cuboid, verts[0].model_xyz);
    for (const VERT3D& vertex : verts) {
        widen(wrap_cuboid, vertex.model_xyz);
    }
    finish_wrap_cuboid(*this);
}

void TMOD3D::roate_wrap_cuboid() {
    for (int corner = 0; corner < 8; ++corner) {
        rotate_point(rot_matrix, cuboid_corners[corner], rotated_corners[corner]);
        for (int k = 0; k < 3; ++k) {
            rotated_corners[corner][k] -= view_center[k];
        }
    }
}

void TMOD3D::get_body_span(int i) {
    if (!has_element(bodies, i)) {
        return;
    }
    BODY3D& body = bodies[i];
    bool is_first = true;
    double model_bounds[6] = {};
    double seen_bounds[6] = {};
    for (const int v : body.verts) {
        if (!has_element(verts, v)) {
            continue;
        }
        if (is_first) {
            start_bounds(model_bounds, verts[v].model_xyz);
            start_bounds(seen_bounds, verts[v].view_xyz);
            is_first = false;
        }
        widen(model_bounds, verts[v].model_xyz);
        widen(seen_bounds, verts[v].view_xyz);
    }
    if (is_first) {
        return;
    }
    for (int k = 0; k < 3; ++k) {
        body.model_min[k] = model_bounds[2 * k];
        body.model_max[k] = model_bounds[2 * k + 1];
        body.view_min[k] = seen_bounds[2 * k];
        body.view_max[k] = seen_bounds[2 * k + 1];
        body.view_mid[k] = (body.view_max[k] + body.view_min[k]) * 0.5;
        body.view_span[k] = body.view_max[k] - body.view_min[k];
    }
}

void TMOD3D::back_all_vert() {
    for (VERT3D& vertex : verts) {
        vertex.backvert();
    }
}

void TMOD3D::back_rel_vert() {
    for (const int v : relat_list_2) {
        if (has_element(verts, v)) {
            verts[v].backvert();
        }
    }
}

namespace korvel {

void renew_view(TMOD3D& model, UnsetVector<FlatModel::Point>& points) {
    if (points.empty()) {
        return;
    }
    start_bounds(model.wrap_cuboid, points[0].model);
    bool is_first = true;
    for (FlatModel::Point& point : points) {
        rotate_point(model.rot_matrix, point.model, point.view);
        if (std::exchange(is_first, false)) {
            start_bounds(model.view_bounds, point.view);
        }
        widen(model.view_bounds, point.view);
        widen(model.wrap_cuboid, point.model);
    }
    finish_wrap_cuboid(model);
    centre_view(model);
    for (FlatModel::Point& point : points) {
        for (int k = 0; k < 3; ++k) {
            point.view[k] -= model.view_center[k];
        }
    }
}

} // namespace korvel
