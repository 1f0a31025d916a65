// Everything that is derived from a model's faces and bodies, in one visit to each record.

#include "korvel/body/derive/derive_all.h"

#include <algorithm>
#include <utility>

#include "korvel/base/indices.h"
#include "korvel/body/derive/equations.h"
#include "korvel/body/derive/orientation.h"
#include "korvel/body/derive/relations.h"
#include "korvel/geometry/marks.h"
#include "korvel/platform/prefetch.h"

namespace korvel {
namespace {

/// Stores in each record of a model what is no relation: view coordinates and equations.
class FieldWriter {
public:
    explicit FieldWriter(const FlatModel& flat) : flat_(flat) {}

    void operator()(int v, VERT3D& vertex) const {
        std::copy_n(flat_.points[v].view, 3, vertex.view_xyz);
    }
    void operator()(int e, LINE3D& line) const {
        if (e + records_ahead < static_cast<int>(flat_.edges.size())) {
            prefetch_point(flat_.edges[e + records_ahead].a);
            prefetch_point(flat_.edges[e + records_ahead].b);
        }
        set_equations(line, flat_.points);
    }
    void operator()(int f, POLY3D& face) const {
        if (f + records_ahead < flat_.face_verts.size()) {
            for (const int v : flat_.face_verts[f + records_ahead]) {
                prefetch_point(v);
            }
        }
        set_equations(face, flat_.points);
    }

private:
    static constexpr int records_ahead = 8; ///< whose points, which lie anywhere, are prefetched

    void prefetch_point(int v) const {
        if (v >= 0 && static_cast<std::size_t>(v) < flat_.points.size()) {
            prefetch(&flat_.points[v]);
            prefetch(flat_.points[v].view + 2); // it may extend over two cache lines
        }
    }

    const FlatModel& flat_;
};

/// The same in records that are new, with what they are derived from.
class RecordMaker {
public:
    explicit RecordMaker(const FlatModel& flat) : flat_(flat), fields_(flat) {}

    void operator()(int v, VERT3D& vertex) const {
        std::copy_n(flat_.points[v].model, 3, vertex.model_xyz);
        fields_(v, vertex);
    }
    void operator()(int e, LINE3D& line) const {
        line.set_line_point(flat_.edges[e].a, flat_.edges[e].b);
        fields_(e, line);
    }
    void operator()(int f, POLY3D& face) const {
        assign_list(face.verts, flat_.face_verts[f]);
        assign_list(face.lines, flat_.face_lines[f]);
        if (!face.bodies.IsEmpty()) {
            face.state_flags |= face_mark::was_oriented;
        }
        fields_(f, face);
    }

private:
    const FlatModel& flat_;
    FieldWriter fields_;
};

} // namespace

void derive_all(TMOD3D& model) {
    orient_bodies(model);
    derive_from(flattened(model), model);
}

void derive_from(FlatModel flat, TMOD3D& model) {
    renew_view(model, flat.points);
    set_relations(model, flat, FieldWriter(flat));
}

void make_records_from(FlatModel flat, TMOD3D& model) {
    renew_view(model, flat.points);
    model.verts.SetSize(static_cast<int>(flat.points.size()));
    model.lines.SetSize(static_cast<int>(flat.edges.size()));
    model.polys.SetSize(flat.face_verts.size());
    set_relations(model, flat, RecordMaker(flat));
}

} // namespace korvel
