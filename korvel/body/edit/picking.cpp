// What lies under a click, which body holds a point, and a body's volume.

#include <cmath>

#include "korvel/base/indices.h"
#include "korvel/body/derive/derivation.h"
#include "korvel/body/edit/edit_state.h"
#include "korvel/geometry/view_transform.h"

using korvel::has_element;

namespace {

constexpr int faces_viewer = 16;

/// Whether the ray from p along dir meets an odd number of the body's faces ahead of p.
bool ray_test(TMOD3D& model, const BODY3D& body, const double* p, const double* dir) {
    int crossed = 0;
    for (const int f : body.polys) {
        if (!has_element(model.polys, f)) {
            continue;
        }
        POLY3D& face = model.polys[f];
        const double* const plane = face.plane;
        // A ray along the face divides by zero, and the infinite result counts as a hit.
        const double t = -(plane[0] * p[0] + plane[1] * p[1] + plane[2] * p[2] + plane[3]) /
                         (plane[0] * dir[0] + plane[1] * dir[1] + plane[2] * dir[2]);
        if (t > 0) {
            double point[3] = {p[0] + t * dir[0], p[1] + t * dir[1], p[2] + t * dir[2]};
            if (face.det_3dpoint_in_con_poly(point, model.verts)) {
                ++crossed;
            }
        }
    }
    return crossed % 2 == 1;
}

} // namespace

int TMOD3D::get_point_xyz(double* p) {
    int best_face = -1;
    int best_body = -1;
    double best_depth = -std::fabs(10.0 * (view_bounds[5] - view_bounds[4]));
    for (int b = 0; b < bodies.GetSize(); ++b) {
        for (const int f : bodies[b].polys) {
            if (!has_element(polys, f) || (polys[f].state_flags & faces_viewer) == 0 ||
                !polys[f].det_point_in_con_poly(p, &verts)) {
                continue;
            }
            const double* const plane = polys[f].rotated_plane;
            const double depth = -(plane[0] * p[0] + plane[1] * p[1] + plane[3]) / plane[2];
            if (depth > best_depth) {
                best_face = f;
                best_body = b;
                best_depth = depth;
            }
        }
    }
    if (best_face < 0) {
        return 1;
    }
    p[2] = best_depth;
    double seen[3] = {p[0] + view_center[0], p[1] + view_center[1], best_depth + view_center[2]};
    rotate_point(ant_matrix, seen, pick_data);
    edit_state[korvel::is_picked] = 1;
    edit_state[korvel::picked_face] = best_face;
    edit_state[korvel::picked_body] = best_body;
    edit_state[korvel::picked_vertex] = polys[best_face].get_uvw_near_point(verts, p);
    edit_state[korvel::picked_edge] =
        polys[best_face].get_uvw_near_side(verts, lines, p, pick_data + korvel::picked_on_edge);
    return 0;
}

int TMOD3D::detect_a_point_in_body(double* p, double* dir) {
    for (int k = 0; k < 3; ++k) {
        if (p[k] < wrap_cuboid[2 * k] || p[k] > wrap_cuboid[2 * k + 1]) {
            return -1;
        }
    }
    for (int b = 0; b < bodies.GetSize(); ++b) {
        if (ray_test(*this, bodies[b], p, dir)) {
            return b;
        }
    }
    return -1;
}

double TMOD3D::get_pt_bady_v(int i) {
    return has_element(bodies, i) ? korvel::body_volume(*this, bodies[i]) : 0;
}
