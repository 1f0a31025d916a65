#pragma once

#include <vector>

#include "korvel/body/derive/flat_model.h"
#include "korvel/platform/check_point.h"

namespace korvel {

/// What the bodies use, each once and in order of first appearance.
struct UsedByBodies {
    explicit UsedByBodies(const FlatModel& flat);

    PackedLists verts;
    PackedLists lines;
};

/// The bodies that use each record of one kind, and the mark that the last body leaves on it.
class BodiesOfRecords {
public:
    BodiesOfRecords(const PackedLists& used_by_bodies, int records);

    void store(int record, CArray<int>& bodies, int& state_flags, int mark) const;

private:
    int bodies_;
    PackedLists of_record_;
};

// Each of these stores in a record its relations to the others.

class VertexRelations {
public:
    VertexRelations(const FlatModel& flat, const UsedByBodies& used);
    void store(int v, VERT3D& vertex) const;

private:
    const std::vector<IndexPair>& edges_;
    PackedLists lines_;
    PackedLists faces_;
    BodiesOfRecords bodies_;
};

class EdgeRelations {
public:
    EdgeRelations(const PackedLists& line_faces, const UsedByBodies& used);
    void store(int e, LINE3D& line) const;

private:
    const PackedLists& faces_;
    BodiesOfRecords bodies_;
};

class FaceRelations {
public:
    FaceRelations(const FlatModel& flat, const PackedLists& line_faces,
                  const PackedLists& face_bodies);
    void store(int f, POLY3D& face);

private:
    const PackedLists& lines_;
    const PackedLists& line_faces_;
    const PackedLists& bodies_;
    FirstTimes times_;
    std::vector<int> neighbours_;
};

/// Stores each body's vertices, edges and neighbours.
void relate_bodies(TMOD3D& model, const FlatModel& flat, const UsedByBodies& used,
                   const PackedLists& face_bodies);

/// Stores the relations of every record of the model, and calls `visit(index, record)` for each
/// vertex, edge and face right after that: the one visit to the record while it is in the cache.
template <class Visit>
void set_relations(TMOD3D& model, const FlatModel& flat, Visit visit) {
    const UsedByBodies used(flat);
    const long long verts = model.verts.GetSize();
    const long long verts_and_lines = verts + model.lines.GetSize();
    const auto after_record = [&](long long record) {
        check_point_after(record, verts_and_lines + model.polys.GetSize(), 4096,
                          "relating records");
    };
    {
        const VertexRelations relations(flat, used);
        for (int v = 0; v < model.verts.GetSize(); ++v) {
            relations.store(v, model.verts[v]);
            visit(v, model.verts[v]);
            after_record(v);
        }
    }
    const PackedLists line_faces = flat.face_lines.inverted(model.lines.GetSize());
    {
        const EdgeRelations relations(line_faces, used);
        for (int e = 0; e < model.lines.GetSize(); ++e) {
            relations.store(e, model.lines[e]);
            visit(e, model.lines[e]);
            after_record(verts + e);
        }
    }
    const PackedLists face_bodies = flat.body_faces.inverted(model.polys.GetSize());
    FaceRelations relations(flat, line_faces, face_bodies);
    for (int f = 0; f < model.polys.GetSize(); ++f) {
        relations.store(f, model.polys[f]);
        visit(f, model.polys[f]);
        after_record(verts_and_lines + f);
    }
    relate_bodies(model, flat, used, face_bodies);
}

} // namespace korvel
