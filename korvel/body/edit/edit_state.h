#pragma once

namespace korvel {

// Places in `TMOD3D::edit_state`, shared by picking, insertion and moves.
constexpr int neighbourhood_depth = 0;
constexpr int is_picked = 2; ///< 1 from a successful pick until the picked face is replaced
constexpr int picked_face = 3;
constexpr int picked_vertex = 4;
constexpr int picked_edge = 5;
constexpr int picked_body = 6;
constexpr int gathered_face_count = 7;
constexpr int gathered_vertex_count = 8;
constexpr int gathered_edge_count = 9;
constexpr int scaled_body = 10;

/// Where in `TMOD3D::pick_data` the point on the nearest edge starts; the picked point starts at 0.
constexpr int picked_on_edge = 6;

} // namespace korvel
