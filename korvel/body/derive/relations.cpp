// The relations between vertices, edges, faces and bodies.

#include "korvel/body/derive/relations.h"

#include <vector>

#include "korvel/base/indices.h"
#include "korvel/geometry/marks.h"

void TMOD3D::found_top_rel() {
    const auto no_more = [](int, const auto&) {};
    korvel::set_relations(*this, korvel::flattened(*this), no_more);
}

namespace korvel {
namespace {

/// For each list the entries of the lists that it names, each once, in order of first appearance.
PackedLists joined(const PackedLists& lists, const PackedLists& of_entry, int size) {
    PackedLists all;
    all.reserve(lists.size(), static_cast<std::size_t>(size));
    FirstTimes times(size);
    for (int list = 0; list < lists.size(); ++list) {
        for (const int entry : lists[list]) {
            for (const int index : of_entry[entry]) {
                if (times.is_first(index, list)) {
                    all.add(index);
                }
            }
        }
        all.end_list();
    }
    return all;
}

/// For each vertex the edges that end there, ascending.
PackedLists edges_at_vertices(const std::vector<IndexPair>& edges, int verts) {
    return PackedLists(verts, [&](auto add) {
        int e = 0;
        for (const auto [start, end] : edges) {
            if (start >= 0 && end >= 0) {
                if (start < verts) {
                    add(start, e);
                }
                if (end < verts && end != start) {
                    add(end, e);
                }
            }
            ++e;
        }
    });
}

} // namespace

UsedByBodies::UsedByBodies(const FlatModel& flat)
    : verts(joined(flat.body_faces, flat.face_verts, static_cast<int>(flat.points.size()))),
      lines(joined(flat.body_faces, flat.face_lines, static_cast<int>(flat.edges.size()))) {}

BodiesOfRecords::BodiesOfRecords(const PackedLists& used_by_bodies, int records)
    : bodies_(used_by_bodies.size()), of_record_(used_by_bodies.inverted(records)) {}

/// The mark of every record is cleared before each body, so a model without bodies keeps its marks.
void BodiesOfRecords::store(int record, CArray<int>& bodies, int& state_flags, int mark) const {
    const auto users = of_record_[record];
    assign_list(bodies, users);
    if (bodies_ > 0) {
        const bool is_in_last = !users.empty() && users.back() == bodies_ - 1;
        state_flags = (state_flags & ~mark) | (is_in_last ? mark : 0);
    }
}

VertexRelations::VertexRelations(const FlatModel& flat, const UsedByBodies& used)
    : edges_(flat.edges),
      lines_(edges_at_vertices(flat.edges, static_cast<int>(flat.points.size()))),
      faces_(flat.face_verts.inverted(static_cast<int>(flat.points.size()))),
      bodies_(used.verts, static_cast<int>(flat.points.size())) {}

void VertexRelations::store(int v, VERT3D& vertex) const {
    assign_list(vertex.lines, lines_[v]);
    set_length(vertex.neighbours, vertex.lines.GetSize());
    int* neighbour = begin(vertex.neighbours);
    for (const int e : lines_[v]) {
        const auto [start, end] = edges_[e];
        *neighbour++ = start == v ? end : start;
    }
    assign_list(vertex.faces, faces_[v]);
    bodies_.store(v, vertex.bodies, vertex.state_flags, vertex_mark::in_body_list);
}

EdgeRelations::EdgeRelations(const PackedLists& line_faces, const UsedByBodies& used)
    : faces_(line_faces), bodies_(used.lines, line_faces.size()) {}

void EdgeRelations::store(int e, LINE3D& line) const {
    assign_list(line.faces, faces_[e]);
    bodies_.store(e, line.bodies, line.state_flags, edge_mark::in_body_list);
}

FaceRelations::FaceRelations(const FlatModel& flat, const PackedLists& line_faces,
                             const PackedLists& face_bodies)
    : lines_(flat.face_lines), line_faces_(line_faces), bodies_(face_bodies),
      times_(flat.face_lines.size()) {}

void FaceRelations::store(int f, POLY3D& face) {
    times_.is_first(f, f); // excludes the face itself
    neighbours_.clear();
    for (const int e : lines_[f]) {
        for (const int g : line_faces_[e]) {
            if (times_.is_first(g, f)) {
                neighbours_.push_back(g);
            }
        }
    }
    assign_list(face.neighbour_faces, neighbours_);
    assign_list(face.bodies, bodies_[f]);
    face.state_flags |= face_mark::seen; // left set on each face when its own turn has come
}

void relate_bodies(TMOD3D& model, const FlatModel& flat, const UsedByBodies& used,
                   const PackedLists& face_bodies) {
    const int bodies = model.bodies.GetSize();
    FirstTimes times(bodies);
    std::vector<int> neighbours;
    for (int b = 0; b < bodies; ++b) {
        BODY3D& body = model.bodies[b];
        body.body_flags &= ~body_mark::in_neighbour_list;
        times.is_first(b, b);
        neighbours.clear();
        for (const int f : flat.body_faces[b]) {
            for (const int c : face_bodies[f]) {
                if (times.is_first(c, b)) {
                    neighbours.push_back(c);
                }
            }
        }
        assign_list(body.neighbour_bodies, neighbours);
        assign_list(body.verts, used.verts[b]);
        assign_list(body.lines, used.lines[b]);
    }
    if (bodies > 0) {
        // The marks of the last body alone stay, as if all were cleared before each body.
        model.bodies[bodies - 1].body_flags |= body_mark::in_neighbour_list;
        for (const int c : neighbours) {
            model.bodies[c].body_flags |= body_mark::in_neighbour_list;
        }
    }
}

} // namespace korvel
