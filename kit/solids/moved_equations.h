#pragma once

#include <span>

#include "korvel/module/korvel.h"

namespace korvel::kit {

/// Whether so many vertices of a model have moved that a pass over all its records is faster than
/// many around the vertices.
bool has_moved_much(const TMOD3D& model, std::size_t moved);

/// Computes the equations of all edges and faces at some vertices of a model in which the others
/// are up to date.
void compute_equations_at(TMOD3D& model, std::span<const int> vertices);

} // namespace korvel::kit
