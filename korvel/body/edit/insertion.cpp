// Insertion of a vertex at the picked point, on a face or on an edge.

#include <algorithm>
#include <cmath>
#include <vector>

#include "korvel/base/equal_sides.h"
#include "korvel/base/indices.h"
#include "korvel/body/derive/derivation.h"
#include "korvel/body/derive/edge_chains.h"
#include "korvel/body/edit/edit_state.h"
#include "korvel/body/tmod3d.h"

using korvel::has_element;
using korvel::Side;

namespace {

/// A face, and the sides that a new vertex makes triangles with.
struct Fan {
    int face;
    std::vector<Side> sides;
};

struct Vector {
    double x;
    double y;
    double z;
};

Vector normal_of(const double* p, const double* q, const double* r) {
    const Vector u{q[0] - p[0], q[1] - p[1], q[2] - p[2]};
    const Vector w{r[0] - p[0], r[1] - p[1], r[2] - p[2]};
    return {u.y * w.z - u.z * w.y, u.z * w.x - u.x * w.z, u.x * w.y - u.y * w.x};
}

double dot(Vector a, Vector b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// Whether each triangle of the fan around `point` has an area and is turned like its face.
bool is_proper(const TMOD3D& model, const Fan& fan, const double* point) {
    constexpr double flat = 1e-12; // of the face's area
    const CArray<int>& corners = model.polys[fan.face].verts;
    const auto at = [&](int v) { return model.verts[v].model_xyz; };
    const Vector face_normal = normal_of(at(corners[0]), at(corners[1]), at(corners[2]));
    const double size = dot(face_normal, face_normal);
    return size > 0 && std::all_of(fan.sides.begin(), fan.sides.end(), [&](const Side& side) {
               return dot(face_normal, normal_of(at(side.a), at(side.b), point)) > flat * size;
           });
}

/// Whether a point lies on a face's plane, to the precision that turning it into the view and back
/// leaves.
bool lies_on_plane(const TMOD3D& model, int face, const double* point) {
    constexpr double near = 1e-6; // of the model's radius
    const double* const plane = model.polys[face].plane;
    const double distance =
        plane[0] * point[0] + plane[1] * point[1] + plane[2] * point[2] + plane[3];
    return std::fabs(distance) <= near * model.wrap_radius;
}

bool names_vertices(const TMOD3D& model, int face) {
    const CArray<int>& corners = model.polys[face].verts;
    return corners.GetSize() >= 3 && std::all_of(corners.begin(), corners.end(), [&](int v) {
               return has_element(model.verts, v);
           });
}

/// The face's sides but those between the two ends of a cut edge.
Fan fan_without(const TMOD3D& model, int face, int end_a, int end_b) {
    Fan fan{face, {}};
    const CArray<int>& corners = model.polys[face].verts;
    for (int i = 0; i < corners.GetSize(); ++i) {
        const int a = corners[i];
        const int b = corners[i + 1 < corners.GetSize() ? i + 1 : 0];
        if (!(a == end_a && b == end_b) && !(a == end_b && b == end_a)) {
            fan.sides.push_back({a, b});
        }
    }
    return fan;
}

void set_triangle(POLY3D& face, int a, int b, int c) {
    face.verts.SetSize(3);
    face.verts[0] = a;
    face.verts[1] = b;
    face.verts[2] = c;
}

/// Puts a vertex at `point` and replaces each fan's face by its triangles, in every body; then
/// builds edges and everything derived again.
void insert_vertex(TMOD3D& model, const double* point, const std::vector<Fan>& fans) {
    const int vertex = model.verts.GetSize();
    model.verts.SetSize(vertex + 1);
    std::copy_n(point, 3, model.verts[vertex].model_xyz);

    for (const Fan& fan : fans) {
        const int first_added = model.polys.GetSize();
        const int added = static_cast<int>(fan.sides.size()) - 1;
        model.polys.SetSize(first_added + added);
        set_triangle(model.polys[fan.face], fan.sides[0].a, fan.sides[0].b, vertex);
        for (int i = 0; i < added; ++i) {
            const Side& side = fan.sides[i + 1];
            set_triangle(model.polys[first_added + i], side.a, side.b, vertex);
        }
        for (BODY3D& body : model.bodies) {
            if (std::find(body.polys.begin(), body.polys.end(), fan.face) != body.polys.end()) {
                for (int i = 0; i < added; ++i) {
                    body.polys.Add(first_added + i);
                }
            }
        }
    }

    model.lines.RemoveAll();
    korvel::find_all_sides(model, 0);
    korvel::derive_all(model);
    model.edit_state[korvel::picked_vertex] = vertex;
    model.edit_state[korvel::is_picked] = 0; // its face is no longer what was picked
}

} // namespace

bool TMOD3D::insert_point_on_poly() {
    const int face = edit_state[korvel::picked_face];
    const double* const point = pick_data;
    if (edit_state[korvel::is_picked] != 1 || !has_element(polys, face) ||
        !names_vertices(*this, face) || !lies_on_plane(*this, face, point)) {
        return false;
    }
    const Fan fan = fan_without(*this, face, -1, -1);
    if (!is_proper(*this, fan, point)) {
        return false;
    }
    const double at[3] = {point[0], point[1], point[2]};
    insert_vertex(*this, at, {fan});
    return true;
}

bool TMOD3D::insert_point_on_side() {
    const int edge = edit_state[korvel::picked_edge];
    const double* const point = pick_data + korvel::picked_on_edge;
    if (edit_state[korvel::is_picked] != 1 || !has_element(lines, edge)) {
        return false;
    }
    const int a = lines[edge].start_vert;
    const int b = lines[edge].end_vert;
    std::vector<Fan> fans;
    for (const int face : lines[edge].faces) {
        if (!has_element(polys, face) || !names_vertices(*this, face) ||
            !lies_on_plane(*this, face, point)) {
            return false;
        }
        fans.push_back(fan_without(*this, face, a, b));
        // A face that the edge does not bound once has no fan that covers it.
        if (static_cast<int>(fans.back().sides.size()) != polys[face].verts.GetSize() - 1 ||
            !is_proper(*this, fans.back(), point)) {
            return false;
        }
    }
    if (fans.empty()) {
        return false;
    }
    const double at[3] = {point[0], point[1], point[2]};
    insert_vertex(*this, at, fans);
    return true;
}
