#pragma once

namespace korvel::kit {

/// How the caps of solids are triangulated.
enum class Fill {
    front,    ///< by the library's advancing front, which does not cover every region
    delaunay, ///< by constrained Delaunay triangles
    automatic ///< by the front where its triangles fit and none is flat, else by Delaunay triangles
};

} // namespace korvel::kit
