#pragma once

#include <optional>
#include <string>

#include "kit/base/points.h"
#include "kit/solids/solids.h"

namespace korvel::kit {

/// A coordinate as it is read back from a model file, which has six decimals and is read in single
/// precision.
double as_in_file(double coordinate);

/// The same of a point, which the file contains in steps of a grid.
Point3 as_in_file(const Point3& point, const Grid& grid);

/// A face that loses its area in a model file.
struct Collapse {
    int face = 0;
    int body = 0; ///< the first one of the face, −1 for none
    Point3 corner = {};
    Point3 same_in_file = {}; ///< another corner, which is read back with the same coordinates
};

/// The first face of which a model file, in steps of the placement's grid, makes two corners one,
/// or nothing. About as slow as writing the file, unless coordinates are whole numbers.
std::optional<Collapse> collapse_in_file(const Solids& solids);

/// "face 3 of body 0 would lose its area: in the six decimals and the single precision of a model
/// file its corners 0,0,0 and 0,0,1e-07 are one"
std::string text(const Collapse& collapse);

} // namespace korvel::kit
