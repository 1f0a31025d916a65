#pragma once

// Bits of `state_flags` of vertices, edges and faces, and of a body's `body_flags`. Each walk over
// a model clears the marks that it relies on first and leaves them set afterwards, where hosts can
// see them. Several walks share a bit, each under its own name.

namespace korvel {

namespace vertex_mark {
constexpr int gathered = 4;      ///< in the neighbourhood of the picked vertex
constexpr int in_body_list = 16; ///< in the `verts` of the body in hand
} // namespace vertex_mark

namespace edge_mark {
constexpr int gathered = 2;      ///< in the neighbourhood of the picked vertex
constexpr int in_body_list = 16; ///< in the `lines` of the body in hand
constexpr int cut = 16;          ///< cut by the section plane and not on a traced loop yet
} // namespace edge_mark

namespace face_mark {
constexpr int gathered = 2;      ///< in the neighbourhood of the picked vertex
constexpr int to_propagate = 2;  ///< oriented, and its neighbours are not yet
constexpr int faces_viewer = 16; ///< no mark of a walk: set by the passes that compute the view
constexpr int seen = 32;         ///< a neighbour found already, or a face tested already
constexpr int not_oriented = 32;
constexpr int in_cut_body = 32;  ///< of the body that is cut, and no loop has crossed it yet
constexpr int was_oriented = 64; ///< a body with this face has been oriented; never cleared
} // namespace face_mark

namespace body_mark {
constexpr int in_neighbour_list = 16; ///< in the `neighbour_bodies` of the body in hand
constexpr int cut = 16;               ///< the section plane cuts it
} // namespace body_mark

} // namespace korvel
