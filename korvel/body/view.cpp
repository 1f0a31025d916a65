// The view of a model: matrices, view coordinates, bounds and visibility.

#include <algorithm>
#include <cmath>

#include "korvel/base/indices.h"
#include "korvel/body/derive/flat_model.h"
#include "korvel/geometry/box_tree.h"
#include "korvel/geometry/view_transform.h"

using korvel::has_element;

namespace {

/// Bounds of points, included one by one. The first point starts them, so that a coordinate of it
/// that is not a number stays.
class Bounds {
public:
    void include(const double* point) {
        if (is_empty_) {
            std::copy_n(point, 3, box_.low);
            std::copy_n(point, 3, box_.high);
            is_empty_ = false;
        } else {
            box_.include(point);
        }
    }
    bool is_empty() const { return is_empty_; }
    const double* low() const { return box_.low; }
    const double* high() const { return box_.high; }

    /// Writes minimum and maximum of x, of y and of z.
    void write_pairs(double* pairs) const {
        for (int k = 0; k < 3; ++k) {
            pairs[2 * k] = box_.low[k];
            pairs[2 * k + 1] = box_.high[k];
        }
    }

private:
    korvel::Box3 box_;
    bool is_empty_ = true;
};

void centre_view(TMOD3D& model);
void renew_equations(TMOD3D& model);
void finish_wrap_cuboid(TMOD3D& model);
void set_cuboid_corners(TMOD3D& model);

} // namespace

void TMOD3D::change_vis_parm() {
    inti_vis_plan();
    rotate_model();
}

void TMOD3D::inti_vis_plan() {
    // The second angle comes first.
    rate_xyz_matrix(vis_angle_2, vis_angle_1, ant_matrix, rot_matrix, view_dir);
}

void TMOD3D::rotate_model() {
    if (verts.IsEmpty()) {
        return;
    }
    Bounds bounds;
    for (VERT3D& vertex : verts) {
        vertex.rotate(rot_matrix);
        bounds.include(vertex.view_xyz);
    }
    bounds.write_pairs(view_bounds);
    centre_view(*this);
    for (VERT3D& vertex : verts) {
        vertex.trans_uvw_org(view_center);
    }
    for (LINE3D& line : lines) {
        line.set_line_2d_eqt(verts);
    }
    get_vis_poly();
}

void TMOD3D::get_vis_poly() {
    for (POLY3D& face : polys) {
        face.get_rotated_poly_eql(verts);
        face.detect_rotated_poly_vis(view_dir);
    }
}

void TMOD3D::ant_rotate_model() {
    for (VERT3D& vertex : verts) {
        vertex.ant_rotate(ant_matrix, view_center);
    }
    renew_equations(*this); // bounds, extents and visibility are left to the caller
}

void TMOD3D::trans_model_orig(double* p) {
    // A copy, since p may be a point of this model.
    const double shift[3] = {p[0], p[1], p[2]};
    std::copy_n(shift, 3, orig); // replaced, not added to
    std::copy_n(shift, 3, orig_shift);
    for (VERT3D& vertex : verts) {
        for (int k = 0; k < 3; ++k) {
            vertex.model_xyz[k] -= shift[k];
        }
    }
    renew_equations(*this);
    // Before the model is turned, so the extents in the view are those of before the move.
    for (int b = 0; b < bodies.GetSize(); ++b) {
        get_body_span(b);
    }
    for (int k = 0; k < 3; ++k) {
        wrap_cuboid[2 * k] -= shift[k];
        wrap_cuboid[2 * k + 1] -= shift[k];
    }
    set_cuboid_corners(*this);
    rotate_model();
}

void TMOD3D::model_wrap_cuboid() {
    if (verts.IsEmpty()) {
        return;
    }
    Bounds bounds;
    for (const VERT3D& vertex : verts) {
        bounds.include(vertex.model_xyz);
    }
    bounds.write_pairs(wrap_cuboid);
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
    Bounds in_model;
    Bounds in_view;
    for (const int v : body.verts) {
        if (has_element(verts, v)) {
            in_model.include(verts[v].model_xyz);
            in_view.include(verts[v].view_xyz);
        }
    }
    if (in_model.is_empty()) {
        return;
    }
    std::copy_n(in_model.low(), 3, body.model_min);
    std::copy_n(in_model.high(), 3, body.model_max);
    std::copy_n(in_view.low(), 3, body.view_min);
    std::copy_n(in_view.high(), 3, body.view_max);
    for (int k = 0; k < 3; ++k) {
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

void renew_view(TMOD3D& model, std::vector<FlatModel::Point>& points) {
    if (points.empty()) {
        return;
    }
    Bounds in_model;
    Bounds in_view;
    for (FlatModel::Point& point : points) {
        rotate_point(model.rot_matrix, point.model, point.view);
        in_model.include(point.model);
        in_view.include(point.view);
    }
    in_model.write_pairs(model.wrap_cuboid);
    in_view.write_pairs(model.view_bounds);
    finish_wrap_cuboid(model);
    centre_view(model);
    for (FlatModel::Point& point : points) {
        for (int k = 0; k < 3; ++k) {
            point.view[k] -= model.view_center[k];
        }
    }
}

} // namespace korvel

namespace {

/// Makes the middle of the turned vertices' bounds the origin of the view, and turns the wrap
/// cuboid.
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

void renew_equations(TMOD3D& model) {
    for (LINE3D& line : model.lines) {
        line.set_line_eqt(model.verts);
    }
    for (POLY3D& face : model.polys) {
        face.set_poly_eql(model.verts);
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

} // namespace
