// What lies under a click, which body contains a point, and a body's volume.

#include <cmath>

#include "korvel/base/indices.h"
#include "korvel/body/derive/orientation.h"
#include "korvel/body/edit/edit_state.h"
#include "korvel/geometry/marks.h"
#include "korvel/geometry/view_transform.h"

using korvel::has_element;

namespace {

/// Where the line of view through a click meets a face; no face is −1.
struct Hit {
    int face = -1;
    int body = -1;
    double depth = 0;
};

Hit nearest_hit(TMOD3D& model, double* p);
bool faces_viewer_at(TMOD3D& model, int face, double* p);
void record_pick(TMOD3D& model, const Hit& hit, double* p);
bool is_in_bounds(const double* bounds, const double* p);
bool is_in_body(TMOD3D& model, const BODY3D& body, const double* p, const double* dir);
bool is_met_ahead(TMOD3D& model, POLY3D& face, const double* p, const double* dir);

} // namespace

int TMOD3D::get_point_xyz(double* p) {
    const Hit hit = nearest_hit(*this, p);
    if (hit.face < 0) {
        return 1;
    }
    record_pick(*this, hit, p);
    return 0;
}

int TMOD3D::detect_a_point_in_body(double* p, double* dir) {
    if (!is_in_bounds(wrap_cuboid, p)) {
        return -1;
    }
    for (int b = 0; b < bodies.GetSize(); ++b) {
        if (is_in_body(*this, bodies[b], p, dir)) {
            return b;
        }
    }
    return -1;
}

double TMOD3D::get_pt_bady_v(int i) {
    return has_element(bodies, i) ? korvel::body_volume(*this, bodies[i]) : 0;
}

namespace {

/// The hit with the greatest depth; of equal ones the first body's, and there the first face's.
Hit nearest_hit(TMOD3D& model, double* p) {
    Hit nearest;
    // Hits lie above this start, except in a model that is flat in the view.
    nearest.depth = -std::fabs(10.0 * (model.view_bounds[5] - model.view_bounds[4]));
    for (int b = 0; b < model.bodies.GetSize(); ++b) {
        for (const int f : model.bodies[b].polys) {
            if (!has_element(model.polys, f) || !faces_viewer_at(model, f, p)) {
                continue;
            }
            const double* const plane = model.polys[f].rotated_plane;
            const double depth = -(plane[0] * p[0] + plane[1] * p[1] + plane[3]) / plane[2];
            if (depth > nearest.depth) {
                nearest = {f, b, depth};
            }
        }
    }
    return nearest;
}

bool faces_viewer_at(TMOD3D& model, int face, double* p) {
    POLY3D& candidate = model.polys[face];
    return (candidate.state_flags & korvel::face_mark::faces_viewer) != 0 &&
           candidate.det_point_in_con_poly(p, &model.verts);
}

void record_pick(TMOD3D& model, const Hit& hit, double* p) {
    p[2] = hit.depth;
    double seen[3] = {p[0] + model.view_center[0], p[1] + model.view_center[1],
                      hit.depth + model.view_center[2]};
    rotate_point(model.ant_matrix, seen, model.pick_data + korvel::pick_point);
    POLY3D& face = model.polys[hit.face];
    model.edit_state[korvel::edit_is_picked] = 1;
    model.edit_state[korvel::edit_picked_face] = hit.face;
    model.edit_state[korvel::edit_picked_body] = hit.body;
    model.edit_state[korvel::edit_picked_vertex] = face.get_uvw_near_point(model.verts, p);
    model.edit_state[korvel::edit_picked_edge] = face.get_uvw_near_side(
        model.verts, model.lines, p, model.pick_data + korvel::pick_edge_point);
}

/// Bounds are pairs of minimum and maximum, which belong to them. A coordinate that is not a number
/// is in every bounds.
bool is_in_bounds(const double* bounds, const double* p) {
    for (int k = 0; k < 3; ++k) {
        if (p[k] < bounds[2 * k] || p[k] > bounds[2 * k + 1]) {
            return false;
        }
    }
    return true;
}

/// Whether the ray from p along `dir` meets an odd number of the body's faces.
bool is_in_body(TMOD3D& model, const BODY3D& body, const double* p, const double* dir) {
    int met = 0;
    for (const int f : body.polys) {
        if (has_element(model.polys, f) && is_met_ahead(model, model.polys[f], p, dir)) {
            ++met;
        }
    }
    return met % 2 == 1;
}

bool is_met_ahead(TMOD3D& model, POLY3D& face, const double* p, const double* dir) {
    const double* const plane = face.plane;
    // A ray along the face divides by zero, and the infinite result counts as a hit.
    const double t = -(plane[0] * p[0] + plane[1] * p[1] + plane[2] * p[2] + plane[3]) /
                     (plane[0] * dir[0] + plane[1] * dir[1] + plane[2] * dir[2]);
    if (!(t > 0)) {
        return false;
    }
    double point[3] = {p[0] + t * dir[0], p[1] + t * dir[1], p[2] + t * dir[2]};
    return face.det_3dpoint_in_con_poly(point, model.verts);
}

} // namespace
