// Insertion of a vertex at the picked point, on a face or on an edge.

#include <algorithm>
#include <cmath>
#include <vector>

#include "korvel/base/equal_pairs.h"
#include "korvel/base/indices.h"
#include "korvel/base/ring_sides.h"
#include "korvel/body/derive/derive_all.h"
#include "korvel/body/derive/edge_chains.h"
#include "korvel/body/edit/edit_state.h"
#include "korvel/body/tmod3d.h"

using korvel::has_element;
using korvel::IndexPair;

namespace {

/// A face, and the sides that a new vertex makes triangles with.
struct Fan {
    int face;
    std::vector<IndexPair> sides;
};

bool takes_point(const TMOD3D& model, int face, const double* point);
Fan whole_fan(const TMOD3D& model, int face);
Fan fan_without(const TMOD3D& model, int face, const LINE3D& edge);
bool is_proper(const TMOD3D& model, const Fan& fan, const double* point);
void insert_vertex(TMOD3D& model, const double* point, const std::vector<Fan>& fans);

} // namespace

bool TMOD3D::insert_point_on_poly() {
    const int face = edit_state[korvel::edit_picked_face];
    const double* const point = pick_data + korvel::pick_point;
    if (edit_state[korvel::edit_is_picked] != 1 || !has_element(polys, face) ||
        !takes_point(*this, face, point)) {
        return false;
    }
    const Fan fan = whole_fan(*this, face);
    if (!is_proper(*this, fan, point)) {
        return false;
    }
    insert_vertex(*this, point, {fan});
    return true;
}

bool TMOD3D::insert_point_on_side() {
    const int edge = edit_state[korvel::edit_picked_edge];
    const double* const point = pick_data + korvel::pick_edge_point;
    if (edit_state[korvel::edit_is_picked] != 1 || !has_element(lines, edge)) {
        return false;
    }
    std::vector<Fan> fans;
    for (const int face : lines[edge].faces) {
        if (!has_element(polys, face) || !takes_point(*this, face, point)) {
            return false;
        }
        fans.push_back(fan_without(*this, face, lines[edge]));
        // The fan covers only a face that the edge bounds once.
        const int sides_left = static_cast<int>(fans.back().sides.size());
        if (sides_left != polys[face].verts.GetSize() - 1 ||
            !is_proper(*this, fans.back(), point)) {
            return false;
        }
    }
    if (fans.empty()) {
        return false;
    }
    insert_vertex(*this, point, fans);
    return true;
}

namespace {

bool names_vertices(const TMOD3D& model, int face);
bool lies_on_plane(const TMOD3D& model, int face, const double* point);

/// Whether the face has three corners or more, all of which exist, and a plane through the point.
bool takes_point(const TMOD3D& model, int face, const double* point) {
    return names_vertices(model, face) && lies_on_plane(model, face, point);
}

bool names_vertices(const TMOD3D& model, int face) {
    const CArray<int>& corners = model.polys[face].verts;
    return corners.GetSize() >= 3 && std::all_of(begin(corners), end(corners), [&](int v) {
               return has_element(model.verts, v);
           });
}

/// Whether a point lies on a face's plane, to the precision that turning it into the view and back
/// leaves.
bool lies_on_plane(const TMOD3D& model, int face, const double* point) {
    constexpr double tolerance = 1e-6; // of the radius of the model's bounds
    const double* const plane = model.polys[face].plane;
    const double distance =
        plane[0] * point[0] + plane[1] * point[1] + plane[2] * point[2] + plane[3];
    return std::fabs(distance) <= tolerance * model.wrap_radius;
}

Fan whole_fan(const TMOD3D& model, int face) {
    Fan fan{face, {}};
    const CArray<int>& corners = model.polys[face].verts;
    korvel::for_each_side(corners, corners.GetSize(), [&](int, int a, int b) {
        fan.sides.push_back({a, b});
    });
    return fan;
}

/// The face's sides except those between the two ends of a cut edge.
Fan fan_without(const TMOD3D& model, int face, const LINE3D& edge) {
    Fan fan = whole_fan(model, face);
    std::erase_if(fan.sides, [&](const IndexPair& side) {
        return (side.a == edge.start_vert && side.b == edge.end_vert) ||
               (side.a == edge.end_vert && side.b == edge.start_vert);
    });
    return fan;
}

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
    return size > 0 && std::all_of(fan.sides.begin(), fan.sides.end(), [&](const IndexPair& side) {
               return dot(face_normal, normal_of(at(side.a), at(side.b), point)) > flat * size;
           });
}

void replace_face(TMOD3D& model, const Fan& fan, int vertex);

/// Adds a vertex at `point` and replaces each fan's face by its triangles, in every body; then
/// derives edges and everything else again.
void insert_vertex(TMOD3D& model, const double* point, const std::vector<Fan>& fans) {
    const int vertex = model.verts.GetSize();
    model.verts.SetSize(vertex + 1);
    std::copy_n(point, 3, model.verts[vertex].model_xyz);
    for (const Fan& fan : fans) {
        replace_face(model, fan, vertex);
    }
    model.lines.RemoveAll();
    korvel::find_all_sides(model, 0);
    korvel::derive_all(model);
    model.edit_state[korvel::edit_picked_vertex] = vertex;
    model.edit_state[korvel::edit_is_picked] = 0; // the picked face has been replaced
}

void set_triangle(POLY3D& face, const IndexPair& side, int vertex);

/// The face becomes the fan's first triangle; the others are appended, to its bodies as well.
void replace_face(TMOD3D& model, const Fan& fan, int vertex) {
    const int first_added = model.polys.GetSize();
    const int added = static_cast<int>(fan.sides.size()) - 1;
    model.polys.SetSize(first_added + added);
    set_triangle(model.polys[fan.face], fan.sides[0], vertex);
    for (int i = 0; i < added; ++i) {
        set_triangle(model.polys[first_added + i], fan.sides[i + 1], vertex);
    }
    for (BODY3D& body : model.bodies) {
        if (std::find(begin(body.polys), end(body.polys), fan.face) != end(body.polys)) {
            for (int i = 0; i < added; ++i) {
                body.polys.Add(first_added + i);
            }
        }
    }
}

void set_triangle(POLY3D& face, const IndexPair& side, int vertex) {
    face.verts.SetSize(3);
    face.verts[0] = side.a;
    face.verts[1] = side.b;
    face.verts[2] = vertex;
}

} // namespace
