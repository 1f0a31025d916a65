#pragma once

#include <array>
#include <optional>

#include "korvel/module/korvel.h"

// Moves of a body or of a vertex with its neighbourhood in a model's view, whose relations and view
// are current. First something is taken hold of, then it is moved, then it is asked whether it may
// stay there.

namespace korvel::kit {

/// Takes hold of a body with at least one face. Faces and edges of other bodies that hang on its
/// vertices come along.
void take_body(TMOD3D& model, int body);

/// Takes hold of a vertex and of those that at most `depth` edges join to it.
void take_vertex(TMOD3D& model, int vertex, int depth);

/// Whether a move in the view fades out from the vertex that was taken: other vertices came with
/// it.
bool is_faded(const TMOD3D& model);

/// False when the move would have to fade out over no distance: all vertices that were taken are in
/// one place.
bool can_move(const TMOD3D& model);

/// Moves what was taken by u, v, w in the view. A body goes as it is. Around a vertex u and v are
/// weighted: 1 at the vertex, less with the number of edges and the distance; w is the same for
/// all. Refreshes what `TMOD3D::change_mut_points` does: `comput_mode_aux_parm` and `rotate_model`
/// bring the rest up to date.
void move_taken(TMOD3D& model, const std::array<double, 3>& by);

/// An edge of what was taken and a face that holds neither of its ends, which it meets.
struct Passage {
    int edge = 0;
    int face = 0;
};

/// The first edge of what was taken that passes through a face or touches one, and the first such
/// face. Edges without length and faces without area are in the way of everything. Edges of what
/// was not taken are not looked at. Costs twice `TMOD3D::legal_body_rel_side` where there is one.
std::optional<Passage> first_passage(TMOD3D& model);

} // namespace korvel::kit
