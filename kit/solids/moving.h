#pragma once

#include <array>
#include <optional>

#include "korvel/module/korvel.h"

// Moves of a body or of a vertex with its neighbourhood in a model's view, whose relations and view
// are current: select, move, then test the result.

namespace korvel::kit {

/// Selects a body with at least one face, and the faces and edges of other bodies at its vertices.
void select_body(TMOD3D& model, int body);

/// Selects a vertex and those that are at most `depth` edges away.
void select_vertex(TMOD3D& model, int vertex, int depth);

/// Whether a move in the view fades out from the selected vertex: other vertices are selected too.
bool is_faded(const TMOD3D& model);

/// False when the move would have to fade out over no distance: all selected vertices have the same
/// position.
bool can_move(const TMOD3D& model);

/// Moves the selection by u, v, w in the view. A body keeps its shape. Around a vertex u and v are
/// weighted: 1 at the vertex, less with the number of edges and the distance; w is the same for
/// all. Refreshes what `TMOD3D::change_mut_points` does: `comput_mode_aux_parm` and `rotate_model`
/// bring the rest up to date.
void move_selected(TMOD3D& model, const std::array<double, 3>& by);

/// An edge of the selection and a face that it meets and that contains neither of its ends.
struct Collision {
    int edge = 0;
    int face = 0;
};

/// The first edge of the selection that passes through a face or touches one, and the first such
/// face. Edges without length and faces without area collide with everything. Other edges are not
/// tested. Costs twice `TMOD3D::legal_body_rel_side` where there is one.
std::optional<Collision> first_collision(TMOD3D& model);

} // namespace korvel::kit
