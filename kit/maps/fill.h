#pragma once

namespace korvel::kit {

/// How regions, and the caps of solids, are triangulated.
enum class Fill {
    front,    ///< by the library's advancing front, which does not cover every region
    delaunay, ///< by constrained Delaunay triangles
    automatic ///< by the front where its triangles fit and none is flat, else by Delaunay triangles
};

/// What became of a region, or of a cap.
enum class Filled {
    by_front,
    by_delaunay,
    not_at_all ///< the triangles do not fit the outline
};

} // namespace korvel::kit
