// Solids raised from triangulated regions.

#include <algorithm>
#include <cstdio>
#include <numeric>
#include <vector>

#include "korvel/base/indices.h"
#include "korvel/body/derive/derive_all.h"
#include "korvel/body/derive/edge_chains.h"
#include "korvel/body/derive/orientation.h"
#include "korvel/body/tmod3d.h"
#include "korvel/polyregion/plydt.h"

using korvel::shifted_index;

namespace {

struct Triangle {
    int a;
    int b;
    int c;
};

void append_points(TMOD3D& model, const PLYDT& d);
void show_notice(int triangles, int points);
std::vector<Triangle> prism_faces(const PLYDT& d, int first_vertex);
void append_faces(TMOD3D& model, const std::vector<Triangle>& faces, int at_least);
void append_body(TMOD3D& model, int first_face, int faces);

} // namespace

void TMOD3D::create3dmode(PLYDT& d) {
    const int points = d.prism_pts.GetSize();
    const int triangles = d.trg_list.GetSize();
    if (points < 3) {
        return;
    }
    const int first_vertex = verts.GetSize();
    const int first_face = polys.GetSize();
    append_points(*this, d);
    show_notice(triangles, points);
    // As many as when every point is on one ring. Where fewer are, faces without vertices remain;
    // where more are, the walls beyond are appended, and the body does not list them.
    const int listed_faces = points + 2 * triangles;
    append_faces(*this, prism_faces(d, first_vertex), listed_faces);
    append_body(*this, first_face, listed_faces);

    korvel::find_all_sides(*this, first_face, korvel::Chains::of_both);
    if (mode_ok == 0) {
        mode_ok = 1;
    }
    korvel::orient_body(*this, bodies.GetUpperBound());
    korvel::derive_from(korvel::flattened(*this), *this);
    // The model is moved by nothing, which sets its origin and the extents of all bodies and leaves
    // the rest as it is.
    for (int k = 0; k < 3; ++k) {
        orig[k] = orig_shift[k] = 0;
    }
    for (int b = 0; b < bodies.GetSize(); ++b) {
        get_body_span(b);
    }
}

namespace {

void append_points(TMOD3D& model, const PLYDT& d) {
    int v = model.verts.GetSize();
    model.verts.SetSize(v + d.prism_pts.GetSize());
    for (const PLYDT::PRISM_PT& point : d.prism_pts) {
        double* const xyz = model.verts[v++].model_xyz;
        xyz[0] = point.x;
        xyz[1] = point.y;
        xyz[2] = point.z;
    }
}

void show_notice(int triangles, int points) {
    char text[64];
    std::snprintf(text, sizeof text, "pol = %d %d\n", triangles, points);
    AfxMessageBox(text);
}

/// The faces of a prism: caps at the first and the second level, corners in the same order, and
/// then the walls, two triangles for each ring side.
std::vector<Triangle> prism_faces(const PLYDT& d, int first_vertex) {
    const int first_above = first_vertex + d.prism_pts.GetSize() / 2;
    std::vector<Triangle> faces;
    for (const int shift : {first_vertex, first_above}) {
        for (const PLYDT::TRG& t : d.trg_list) {
            faces.push_back({shifted_index(t.va, shift), shifted_index(t.vb, shift),
                             shifted_index(t.vc, shift)});
        }
    }
    for (const RING& ring : d.ring_list) {
        if (ring.pts.GetSize() < 3) {
            continue;
        }
        int prev = ring.pts[ring.pts.GetUpperBound()];
        for (const int cur : ring.pts) {
            faces.push_back({shifted_index(prev, first_vertex), shifted_index(cur, first_vertex),
                             shifted_index(cur, first_above)});
            faces.push_back({shifted_index(cur, first_above), shifted_index(prev, first_above),
                             shifted_index(prev, first_vertex)});
            prev = cur;
        }
    }
    return faces;
}

void append_faces(TMOD3D& model, const std::vector<Triangle>& faces, int at_least) {
    int f = model.polys.GetSize();
    model.polys.SetSize(f + std::max(at_least, static_cast<int>(faces.size())));
    for (const Triangle& face : faces) {
        const int corners[3] = {face.a, face.b, face.c};
        korvel::assign_range(model.polys[f++].verts, corners, 3);
    }
}

void append_body(TMOD3D& model, int first_face, int faces) {
    model.bodies.SetSize(model.bodies.GetSize() + 1);
    CArray<int>& listed = model.bodies[model.bodies.GetUpperBound()].polys;
    listed.SetSize(faces);
    std::iota(begin(listed), end(listed), first_face);
}

} // namespace
