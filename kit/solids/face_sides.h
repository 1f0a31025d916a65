#pragma once

#include <algorithm>
#include <span>
#include <vector>

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

/// Calls `visit` with the sides at each edge, a range of `sides`.
template <class Sides, class Visit>
void for_each_edge(Sides& sides, Visit visit) {
    for (auto side = sides.begin(); side != sides.end();) {
        const auto end = std::find_if(side, sides.end(), [&](const FaceSide& other) {
            return other.low != side->low || other.high != side->high;
        });
        visit(std::span(side, end));
        side = end;
    }
}

/// Sorts the sides at an edge by the direction in which their faces lead away from it,
/// counter-clockwise seen against the direction from the lower to the higher vertex. Faces of a
/// closed body that follow one another in this order run along the edge in opposite directions: of
/// faces that run counter-clockwise seen from outside, the body is behind those that descend.
void sort_around_edge(std::span<FaceSide> sides, const TMOD3D& model, int body);

} // namespace korvel::kit
