#pragma once

#include <span>
#include <vector>

#include "kit/solids/edge_sides.h"
#include "korvel/module/korvel.h"

namespace korvel::kit {

/// A side of a face that a body lists: an edge by its vertices.
struct FaceSide {
    int low;
    int high;
    int position; ///< of the face in the body's list
    bool ascends; ///< the face runs from the lower vertex to the higher one
};

/// The sides of a body's faces by edge, then by position. Sides without length, entries of the list
/// that are no face, and faces that name no vertex are passed over. n log n.
std::vector<FaceSide> sides_of(const TMOD3D& model, int body);

/// Whether an entry of a body's list is a face, all corners of which are vertices.
bool is_face(const TMOD3D& model, int face);

/// Sorts the sides at an edge by the direction in which their faces lead away from it,
/// counter-clockwise seen against the direction from the lower to the higher vertex. Faces of a
/// closed body that follow one another in this order run along the edge in opposite directions: of
/// faces that run counter-clockwise seen from outside, the body is behind those that descend.
void sort_around_edge(std::span<FaceSide> sides, const TMOD3D& model, int body);

} // namespace korvel::kit
