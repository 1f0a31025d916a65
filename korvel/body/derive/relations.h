#pragma once

#include <vector>

#include "korvel/body/derive/flat_model.h"

namespace korvel {

/// What the bodies use, each once and in order of first appearance.
struct UsedByBodies {
    explicit UsedByBodies(const FlatModel& flat);

    IndexLists verts;
    IndexLists lines;
};

/// The bodies of records of one kind, and the mark that the last body leaves on what it uses.
class BodiesOf {
public:
    BodiesOf(const IndexLists& used_by_bodies, int records);

    void store(int record, CArray<int>& bodies, int& state_flags) const;

private:
    int bodies_;
    IndexLists of_record_;
};

// Each gives a record its relations to the others.

class VertexRelations {
public:
    VertexRelations(const FlatModel& flat, const UsedByBodies& used);
    void store(int v, VERT3D& vertex);

private:
    const std::vector<Side>& edges_;
    IndexLists lines_;
    IndexLists faces_;
    BodiesOf bodies_;
};

class EdgeRelations {
public:
    EdgeRelations(const IndexLists& line_faces, const UsedByBodies& used);
    void store(int e, LINE3D& line) const;

private:
    const IndexLists& faces_;
    BodiesOf bodies_;
};

class FaceRelations {
public:
    FaceRelations(const FlatModel& flat, const IndexLists& line_faces,
                  const IndexLists& face_bodies);
    void store(int f, POLY3D& face);

private:
    const IndexLists& lines_;
    const IndexLists& line_faces_;
    const IndexLists& bodies_;
    FirstTimes times_;
    std::vector<int> neighbours_;
};

void relate_bodies(TMOD3D& model, const FlatModel& flat, const UsedByBodies& used,
                   const IndexLists& face_bodies);

} // namespace korvel
