#pragma once

#include <span>
#include <utility>

#include "korvel/base/indices.h"
#include "korvel/body/derive/flat_model.h"
#include "korvel/geometry/marks.h"
#include "korvel/geometry/vectors.h"

namespace korvel {

// The faces of a model as the orientation of its bodies needs them. `volume` is the triple product
// of a face's first three vertices, and `turned_volume` that of the face turned around.

/// Faces that have records.
class RecordFaces {
public:
    explicit RecordFaces(TMOD3D& model) : model_(model) {}

    int size() const { return model_.polys.GetSize(); }
    std::span<const int> verts(int f) const {
        const CArray<int>& verts = model_.polys[f].verts;
        return {begin(verts), end(verts)};
    }
    void turn(int f) { model_.polys[f].invert_poly_range(); }
    void mark(int f, bool is_oriented) {
        int& flags = model_.polys[f].state_flags;
        flags = (flags & ~(face_mark::to_propagate | face_mark::not_oriented)) |
                face_mark::was_oriented | (is_oriented ? 0 : face_mark::not_oriented);
    }
    double volume(int f) const { return model_.polys[f].poly_volume(model_.verts); }
    double turned_volume(int f) const {
        const CArray<int>& v = model_.polys[f].verts;
        const int n = v.GetSize();
        if (n < 3 || !has_element(model_.verts, v[n - 1]) || !has_element(model_.verts, v[n - 2]) ||
            !has_element(model_.verts, v[n - 3])) {
            return 0;
        }
        return triple_product(point(v[n - 1]), point(v[n - 2]), point(v[n - 3]));
    }

private:
    const double* point(int v) const { return model_.verts[v].model_xyz; }

    TMOD3D& model_;
};

/// Triangles of a flat model, which have no marks yet.
class FlatFaces {
public:
    explicit FlatFaces(FlatModel& flat) : flat_(flat) {}

    int size() const { return flat_.face_verts.size(); }
    std::span<const int> verts(int f) const { return std::as_const(flat_.face_verts)[f]; }
    void turn(int f) {
        const std::span<int> v = flat_.face_verts[f];
        std::swap(v[0], v[2]);
    }
    void mark(int /*f*/, bool /*is_oriented*/) {}
    double volume(int f) const {
        const std::span<const int> v = verts(f);
        return triple_product(point(v[0]), point(v[1]), point(v[2]));
    }
    double turned_volume(int f) const {
        const std::span<const int> v = verts(f);
        return triple_product(point(v[2]), point(v[1]), point(v[0]));
    }

private:
    const double* point(int v) const { return flat_.points[v].model; }

    FlatModel& flat_;
};

} // namespace korvel
