// Solids raised from triangulated regions.

#include <algorithm>
#include <cstdio>
#include <vector>

#include "korvel/base/indices.h"
#include "korvel/body/derive/derivation.h"
#include "korvel/body/derive/edge_chains.h"
#include "korvel/body/derive/flat_model.h"
#include "korvel/body/tmod3d.h"
#include "korvel/polyregion/plydt.h"

using korvel::shifted_index;

namespace {

struct Triangle {
    int a;
    int b;
    int c;
};

/// The faces of a prism over `levels` lifted points: caps at the first and the second level,
/// corners in the same order, and then the walls, two triangles for each ring side.
std::vector<Triangle> prism_faces(const PLYDT& d, int first_vertex, int levels) {
    std::vector<Triangle> faces;
    for (const int level : {0, levels}) {
        const int shift = first_vertex + level;
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
            const int above = first_vertex + levels;
            faces.push_back({shifted_index(prev, first_vertex), shifted_index(cur, first_vertex),
                             shifted_index(cur, above)});
            faces.push_back({shifted_index(cur, above), shifted_index(prev, above),
                             shifted_index(prev, first_vertex)});
            prev = cur;
        }
    }
    return faces;
}

void show_notice(int triangles, int points) {
    char text[64];
    std::snprintf(text, sizeof text, "pol = %d %d\n", triangles, points);
    AfxMessageBox(text);
}

} // namespace

void TMOD3D::create3dmode(PLYDT& d) {
    const int points = d.prism_pts.GetSize();
    const int triangles = d.trg_list.GetSize();
    if (points < 3) {
        return;
    }
    const int first_vertex = verts.GetSize();
    const int first_face = polys.GetSize();
    const int first_body = bodies.GetSize();

    verts.SetSize(first_vertex + points);
    for (int i = 0; i < points; ++i) {
        VERT3D& vertex = verts[first_vertex + i];
        vertex.model_xyz[0] = d.prism_pts[i].x;
        vertex.model_xyz[1] = d.prism_pts[i].y;
        vertex.model_xyz[2] = d.prism_pts[i].z;
    }
    show_notice(triangles, points);

    // Sized as if every point stood on one ring. Where fewer do, faces without vertices stay
    // behind; where more do, the walls beyond are appended, and the body does not list them.
    const int listed_faces = points + 2 * triangles;
    const std::vector<Triangle> faces = prism_faces(d, first_vertex, points / 2);
    polys.SetSize(first_face + std::max(listed_faces, static_cast<int>(faces.size())));
    for (std::size_t i = 0; i < faces.size(); ++i) {
        CArray<int>& corners = polys[first_face + static_cast<int>(i)].verts;
        corners.SetSize(3);
        corners[0] = faces[i].a;
        corners[1] = faces[i].b;
        corners[2] = faces[i].c;
    }
    bodies.SetSize(first_body + 1);
    bodies[first_body].polys.SetSize(listed_faces);
    for (int i = 0; i < listed_faces; ++i) {
        bodies[first_body].polys[i] = first_face + i;
    }

    korvel::find_all_sides(*this, first_face, korvel::Chains::of_both);
    if (mode_ok == 0) {
        mode_ok = 1;
    }
    korvel::orient_body(*this, first_body);
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
