#pragma once

#include <vector>

#include "korvel/body/derive/flat_model.h"
#include "korvel/geometry/line3d.h"
#include "korvel/geometry/poly3d.h"

namespace korvel {

/// Computes what `LINE3D::set_line_eqt` and `set_line_2d_eqt` do from points that are laid out
/// flat. An edge with an end outside the points keeps its equations.
void set_equations(LINE3D& line, const std::vector<FlatModel::Point>& points);

/// Computes what `POLY3D::set_poly_eql`, `get_rotated_poly_eql` and `detect_rotated_poly_vis` do. A
/// face whose first three vertices do not exist keeps its planes; without any point the face keeps
/// its mark as well.
void set_equations(POLY3D& face, const std::vector<FlatModel::Point>& points);

} // namespace korvel
