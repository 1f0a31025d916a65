// The relations between vertices, edges, faces and bodies.

#include <algorithm>
#include <vector>

#include "korvel/base/indices.h"
#include "korvel/body/derive/relations.h"

namespace {

constexpr int in_body_list = 16;      // of a vertex or an edge
constexpr int seen_face = 32;         // of a face
constexpr int in_neighbour_list = 16; // of a body

} // namespace

void TMOD3D::found_top_rel() {
    const korvel::FlatModel flat = korvel::flattened(*this);
    const korvel::UsedByBodies used(flat);
    {
        korvel::VertexRelations relations(flat, used);
        for (int v = 0; v < verts.GetSize(); ++v) {
            relations.store(v, verts[v]);
        }
    }
    const korvel::IndexLists line_faces = flat.face_lines.turned_round(lines.GetSize());
    const korvel::IndexLists face_bodies = flat.body_faces.turned_round(polys.GetSize());
    const korvel::EdgeRelations edge_relations(line_faces, used);
    for (int e = 0; e < lines.GetSize(); ++e) {
        edge_relations.store(e, lines[e]);
    }
    korvel::FaceRelations face_relations(flat, line_faces, face_bodies);
    for (int f = 0; f < polys.GetSize(); ++f) {
        face_relations.store(f, polys[f]);
    }
    korvel::relate_bodies(*this, flat, used, face_bodies);
}

namespace korvel {
namespace {

/// Appends to `lists` the entries of a record's list that name something, each once.
void add_list(IndexLists& lists, const CArray<int>& list, int record, int size, FirstTimes& times) {
    for (const int index : list) {
        if (index >= 0 && index < size && times.is_first(index, record)) {
            lists.add(index);
        }
    }
    lists.end_list();
}

/// What the entries of each list list in turn, in order of first appearance.
IndexLists joined(const IndexLists& lists, const IndexLists& of_entry, int size) {
    IndexLists all(lists.size(), static_cast<std::size_t>(size));
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
IndexLists edges_at_vertices(const std::vector<Side>& edges, int verts) {
    return IndexLists::by_index(verts, [&](auto add) {
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

void set_list(CArray<int>& list, IndexLists::Range range) {
    assign_range(list, range.first, range.size());
}

} // namespace

FlatModel flattened(const TMOD3D& model) {
    constexpr std::size_t corners = 3; // of most faces
    const int faces = model.polys.GetSize();
    const auto face_entries = corners * static_cast<std::size_t>(faces);

    UnsetVector<FlatModel::Point> points;
    points.reserve(static_cast<std::size_t>(model.verts.GetSize()));
    for (const VERT3D& vertex : model.verts) {
        FlatModel::Point& point = points.emplace_back();
        std::copy_n(vertex.model_xyz, 3, point.model);
    }
    std::vector<Side> edges;
    edges.reserve(static_cast<std::size_t>(model.lines.GetSize()));
    for (const LINE3D& line : model.lines) {
        edges.push_back({line.start_vert, line.end_vert});
    }
    IndexLists face_verts(faces, face_entries);
    IndexLists face_lines(faces, face_entries);
    FirstTimes vert_times(model.verts.GetSize());
    FirstTimes line_times(model.lines.GetSize());
    for (int f = 0; f < faces; ++f) {
        const POLY3D& face = model.polys[f];
        add_list(face_verts, face.verts, f, model.verts.GetSize(), vert_times);
        add_list(face_lines, face.lines, f, model.lines.GetSize(), line_times);
    }
    return {std::move(points), std::move(edges), std::move(face_verts), std::move(face_lines),
            faces_of_bodies(model, faces)};
}

IndexLists faces_of_bodies(const TMOD3D& model, int faces) {
    IndexLists body_faces(model.bodies.GetSize(), static_cast<std::size_t>(faces));
    FirstTimes times(faces);
    for (int b = 0; b < model.bodies.GetSize(); ++b) {
        add_list(body_faces, model.bodies[b].polys, b, faces, times);
    }
    return body_faces;
}

UsedByBodies::UsedByBodies(const FlatModel& flat)
    : verts(joined(flat.body_faces, flat.face_verts, static_cast<int>(flat.points.size()))),
      lines(joined(flat.body_faces, flat.face_lines, static_cast<int>(flat.edges.size()))) {}

BodiesOf::BodiesOf(const IndexLists& used_by_bodies, int records)
    : bodies_(used_by_bodies.size()), of_record_(used_by_bodies.turned_round(records)) {}

/// Before each body the mark of every record is cleared, so not in a model without bodies.
void BodiesOf::store(int record, CArray<int>& bodies, int& state_flags) const {
    const auto range = of_record_[record];
    set_list(bodies, range);
    if (bodies_ > 0) {
        const bool is_in_last = range.size() > 0 && *(range.last - 1) == bodies_ - 1;
        state_flags = (state_flags & ~in_body_list) | (is_in_last ? in_body_list : 0);
    }
}

VertexRelations::VertexRelations(const FlatModel& flat, const UsedByBodies& used)
    : edges_(flat.edges),
      lines_(edges_at_vertices(flat.edges, static_cast<int>(flat.points.size()))),
      faces_(flat.face_verts.turned_round(static_cast<int>(flat.points.size()))),
      bodies_(used.verts, static_cast<int>(flat.points.size())) {}

void VertexRelations::store(int v, VERT3D& vertex) {
    set_list(vertex.lines, lines_[v]);
    set_length(vertex.neighbours, lines_[v].size());
    int* neighbour = vertex.neighbours.begin();
    for (const int e : lines_[v]) {
        const auto [start, end] = edges_[e];
        *neighbour++ = start == v ? end : start;
    }
    set_list(vertex.faces, faces_[v]);
    bodies_.store(v, vertex.bodies, vertex.state_flags);
}

EdgeRelations::EdgeRelations(const IndexLists& line_faces, const UsedByBodies& used)
    : faces_(line_faces), bodies_(used.lines, line_faces.size()) {}

void EdgeRelations::store(int e, LINE3D& line) const {
    set_list(line.faces, faces_[e]);
    bodies_.store(e, line.bodies, line.state_flags);
}

FaceRelations::FaceRelations(const FlatModel& flat, const IndexLists& line_faces,
                             const IndexLists& face_bodies)
    : lines_(flat.face_lines), line_faces_(line_faces), bodies_(face_bodies),
      times_(flat.face_lines.size()) {}

void FaceRelations::store(int f, POLY3D& face) {
    times_.is_first(f, f); // a face is no neighbour of its own
    neighbours_.clear();
    for (const int e : lines_[f]) {
        for (const int g : line_faces_[e]) {
            if (times_.is_first(g, f)) {
                neighbours_.push_back(g);
            }
        }
    }
    assign_list(face.neighbour_faces, neighbours_);
    set_list(face.bodies, bodies_[f]);
    face.state_flags |= seen_face; // set on each face when its own turn comes
}

void relate_bodies(TMOD3D& model, const FlatModel& flat, const UsedByBodies& used,
                   const IndexLists& face_bodies) {
    const int bodies = model.bodies.GetSize();
    FirstTimes times(bodies);
    std::vector<int> neighbours;
    for (int b = 0; b < bodies; ++b) {
        BODY3D& body = model.bodies[b];
        body.body_flags &= ~in_neighbour_list;
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
        set_list(body.verts, used.verts[b]);
        set_list(body.lines, used.lines[b]);
    }
    if (bodies > 0) {
        // The marks of the last body alone stay, as if all were cleared before each body.
        model.bodies[bodies - 1].body_flags |= in_neighbour_list;
        for (const int c : neighbours) {
            model.bodies[c].body_flags |= in_neighbour_list;
        }
    }
}

} // namespace korvel
