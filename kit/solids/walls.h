#pragma once

#include "kit/base/context.h"
#include "kit/solids/soup.h"

namespace korvel::kit {

/// How many walls were made anew.
struct MatchedWalls {
    int split = 0;  ///< into more faces
    int turned = 0; ///< into as many faces along other diagonals
};

/// Triangulates walls anew where this makes faces of neighbouring bodies equal, or takes away a
/// vertex within an edge. No vertices are added, and no two points may be equal.
///
/// The vertices that agree in the two coordinates other than that of an axis form a column; a wall
/// is a strip of triangles of one body between two columns. Walls that two bodies have between the
/// same columns are matched over their common part, and a wall takes in all vertices of its columns
/// between its own lower and upper end. Triangles follow from the columns alone, from the lower end
/// upwards: of the next vertices the lower one. All three axes are taken in turn until nothing
/// changes. Models with faces of more than three corners stay as they are.
///
/// Throws an input error when walls would have too many faces. n log n in the faces that come out.
MatchedWalls match_walls(Soup& soup, const Context& context);

} // namespace korvel::kit
