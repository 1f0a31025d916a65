#pragma once

#include <vector>

#include "korvel/base/equal_sides.h"
#include "korvel/base/packed_lists.h"
#include "korvel/body/tmod3d.h"

namespace korvel {

/// What the rest of a model is derived from, laid out flat. The records are many times as large,
/// and a pass over all of them is a pass through memory; they are visited once, when all that goes
/// into them is known.
struct FlatModel {
    struct Point {
        double model[3];
        double view[3];
    };
    UnsetVector<Point> points;
    std::vector<Side> edges;
    // Each entry once in its list, and only those that exist.
    IndexLists face_verts;
    IndexLists face_lines;
    IndexLists body_faces;
};

FlatModel flattened(const TMOD3D& model);

/// The faces of each body, each once and only those that exist.
IndexLists faces_of_bodies(const TMOD3D& model, int faces);

/// `orient_bodies` for triangles whose records are not made yet. The edge of each side is told,
/// face by face.
void orient_bodies(TMOD3D& model, FlatModel& flat, const UnsetVector<int>& side_edges);

/// The wrap cuboid, the view and the points in it.
void renew_view(TMOD3D& model, UnsetVector<FlatModel::Point>& points);

/// Whether a flat model tells of records that stand there, or of those that are to be made.
enum class Records { stand, are_new };

/// Derives everything but the edges and the faces' turns: equations, cuboid, view, relations.
void derive_from(FlatModel flat, TMOD3D& model, Records records = Records::stand);

} // namespace korvel
