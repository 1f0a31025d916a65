#pragma once

#include <array>
#include <vector>

#include "korvel/module/korvel.h"

namespace korvel::kit {

/// How the faces of a body are connected.
struct Surface {
    int faces = 0;
    int edges = 0;
    int vertices = 0;
    int open_edges = 0;    ///< with an odd number of faces
    int crowded_edges = 0; ///< with an even number of faces above two
    int pieces = 0;        ///< connected by edges

    bool is_closed() const { return open_edges == 0 && faces > 0; }
    /// Closed, in one piece, and with two faces at each edge.
    bool is_clean() const { return is_closed() && crowded_edges == 0 && pieces == 1; }
    int euler_characteristic() const { return vertices - edges + faces; }
};

/// The surface of each body of a model, by its faces' vertices alone; needs nothing derived. Faces
/// with an index that is no vertex, and indices that are no face, are passed over.
std::vector<Surface> surfaces(const TMOD3D& model);

/// The same of one body.
Surface surface_of(const TMOD3D& model, int body);

/// The first three vertices of a face in ascending order.
std::array<int, 3> sorted_corners(const POLY3D& face);

/// "closed", "open at 3 edges", "closed, in 2 pieces", "closed, more than two faces at 1 edge", …
std::string state_text(const Surface& surface);

} // namespace korvel::kit
