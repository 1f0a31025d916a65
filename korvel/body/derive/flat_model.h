#pragma once

#include <vector>

#include "korvel/base/equal_pairs.h"
#include "korvel/base/packed_lists.h"
#include "korvel/body/tmod3d.h"

namespace korvel {

/// What the rest of a model is derived from, in flat arrays. The records are many times as large,
/// and a pass over all of them is a pass through memory, so each is visited once, at the end.
struct FlatModel {
    struct Point {
        double model[3];
        double view[3];
    };
    std::vector<Point> points;
    std::vector<IndexPair> edges;
    // Only indices of records that exist, each once in its list.
    PackedLists face_verts;
    PackedLists face_lines;
    PackedLists body_faces;
};

/// The points of the result are not in the view yet.
FlatModel flattened(const TMOD3D& model);

/// The faces of each body, each once, and only indices below `faces`.
PackedLists faces_of_bodies(const TMOD3D& model, int faces);

/// Computes the wrap cuboid, the view and the points in it.
void renew_view(TMOD3D& model, std::vector<FlatModel::Point>& points);

} // namespace korvel
