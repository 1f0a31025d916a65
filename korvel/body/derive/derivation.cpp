// Everything that is derived from a model's faces and bodies, in one visit to each record.

#include <algorithm>

#include "korvel/base/indices.h"
#include "korvel/body/derive/derivation.h"
#include "korvel/body/derive/relations.h"
#include "korvel/geometry/vectors.h"
#include "korvel/plane/line_equation.h"
#include "korvel/platform/prefetch.h"

namespace korvel {
namespace {

using Points = UnsetVector<FlatModel::Point>;

const FlatModel::Point* point_at(const Points& points, int v) {
    const auto at = static_cast<std::size_t>(v);
    return v >= 0 && at < points.size() ? &points[at] : nullptr;
}

/// Visits each record. The array gets room for all new ones at once, but they are made a few at a
/// time, so that they are visited while they are in the cache.
template <class Array, class Visit>
void visit_all(Array& array, std::size_t count, Records records, Visit visit) {
    constexpr int few = 16;
    const int size = static_cast<int>(count);
    if (records == Records::are_new) {
        array.SetSize(0, size);
    }
    for (int i = 0; i < size; ++i) {
        if (i == array.GetSize()) {
            array.SetSize(std::min(i + few, size));
        }
        visit(i, array[i]);
    }
    if (records == Records::are_new) {
        array.SetSize(size, 0); // further ones come in ordinary steps
    }
}

/// How many records earlier a record's points are asked for, which lie anywhere in memory.
constexpr int ahead = 8;

void prefetch_point(const Points& points, int v) {
    const FlatModel::Point* const point = point_at(points, v);
    prefetch(point);
    prefetch(point == nullptr ? nullptr : point->view + 2); // it may stand in two cache lines
}

void set_equations(LINE3D& line, const Points& points) {
    const FlatModel::Point* const from = point_at(points, line.start_vert);
    const FlatModel::Point* const to = point_at(points, line.end_vert);
    if (from == nullptr || to == nullptr) {
        return;
    }
    line.length = direction_to(from->model, to->model, line.direction);
    line.main_axis = main_axis_of(line.direction);
    const LineEquation seen =
        line_through({from->view[0], from->view[1]}, {to->view[0], to->view[1]});
    line.line_2d_eqt[0] = seen.a;
    line.line_2d_eqt[1] = seen.b;
    line.line_2d_eqt[2] = seen.c;
}

void set_equations(POLY3D& face, const Points& points) {
    if (points.empty()) {
        return;
    }
    if (face.verts.GetSize() >= 3) {
        const FlatModel::Point* const a = point_at(points, face.verts[0]);
        const FlatModel::Point* const b = point_at(points, face.verts[1]);
        const FlatModel::Point* const c = point_at(points, face.verts[2]);
        if (a != nullptr && b != nullptr && c != nullptr) {
            plane_through(a->model, b->model, c->model, face.plane);
            face.main_axis = main_axis_of(face.plane);
            plane_through(a->view, b->view, c->view, face.rotated_plane);
        }
    }
    face.detect_rotated_poly_vis(nullptr);
}

} // namespace

void derive_all(TMOD3D& model) {
    orient_bodies(model);
    derive_from(flattened(model), model);
}

void derive_from(FlatModel flat, TMOD3D& model, Records records) {
    const bool are_new = records == Records::are_new;
    renew_view(model, flat.points);
    const UsedByBodies used(flat);
    {
        VertexRelations relations(flat, used);
        visit_all(model.verts, flat.points.size(), records, [&](int v, VERT3D& vertex) {
            const FlatModel::Point& point = flat.points[v];
            if (are_new) {
                std::copy_n(point.model, 3, vertex.model_xyz);
            }
            std::copy_n(point.view, 3, vertex.view_xyz);
            relations.store(v, vertex);
        });
    }
    const IndexLists line_faces = flat.face_lines.turned_round(static_cast<int>(flat.edges.size()));
    {
        const EdgeRelations relations(line_faces, used);
        visit_all(model.lines, flat.edges.size(), records, [&](int e, LINE3D& line) {
            const auto edge = flat.edges.begin() + e;
            if (flat.edges.end() - edge > ahead) {
                prefetch_point(flat.points, edge[ahead].a);
                prefetch_point(flat.points, edge[ahead].b);
            }
            if (are_new) {
                line.set_line_point(edge->a, edge->b);
            }
            set_equations(line, flat.points);
            relations.store(e, line);
        });
    }
    const int faces = flat.face_verts.size();
    const IndexLists face_bodies = flat.body_faces.turned_round(faces);
    FaceRelations relations(flat, line_faces, face_bodies);
    visit_all(model.polys, static_cast<std::size_t>(faces), records, [&](int f, POLY3D& face) {
        if (f + ahead < faces) {
            for (const int v : flat.face_verts[f + ahead]) {
                prefetch_point(flat.points, v);
            }
        }
        if (are_new) {
            const IndexLists& verts = flat.face_verts;
            const IndexLists& lines = flat.face_lines;
            assign_range(face.verts, verts[f].first, verts[f].size());
            assign_range(face.lines, lines[f].first, lines[f].size());
            face.state_flags = face_bodies[f].size() > 0 ? was_oriented : 0;
        }
        set_equations(face, flat.points);
        relations.store(f, face);
    });
    relate_bodies(model, flat, used, face_bodies);
}

} // namespace korvel
