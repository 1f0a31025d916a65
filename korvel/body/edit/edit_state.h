#pragma once

namespace korvel {

/// Elements of `TMOD3D::edit_state`, by which a host and the model's editing operations exchange
/// what is picked and what is gathered. Element 1, 3 in a new model, has no use.
enum EditSlot {
    edit_neighbourhood_depth = 0, ///< read: levels that `set_rel_triangle_vert` gathers
    edit_is_picked = 2, ///< 1 after a successful pick, until an insertion replaces the picked face
    edit_picked_face = 3,
    edit_picked_vertex = 4,  ///< nearest to the click among those of the picked face
    edit_picked_edge = 5,    ///< nearest to the click among those of the picked face
    edit_picked_body = 6,    ///< its extents are refreshed after a move
    edit_gathered_faces = 7, ///< number of entries of `relat_list_1`
    edit_gathered_vertices = 8,
    edit_gathered_edges = 9,
    edit_scaled_body = 10, ///< read by `move_scale_box`
};

/// Where the points that a pick writes start in `TMOD3D::pick_data`, each three model coordinates.
enum PickSlot {
    pick_point = 0,      ///< the hit on the picked face
    pick_edge_point = 6, ///< the point on the picked edge that is nearest to the hit
};

/// Modes of `TMOD3D::change_mut_points`; p and q are its arguments, in view coordinates.
enum MoveKind {
    move_onto_point = 1,        ///< all vertices onto p; their depths stay
    move_picked_onto_point = 2, ///< shifts all so that the picked vertex lands on p
    move_scale_box = 3,         ///< scales a body's view box, whose grabbed corner goes from q to p
    move_by_weight = 4,         ///< shifts by p − q times each vertex's weight
    move_in_depth_with_weights = 5, ///< computes the weights, but shifts as `move_in_depth` does
    move_in_depth = 6,              ///< shifts by p[2] in depth
};

} // namespace korvel
