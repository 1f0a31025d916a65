#pragma once

#include <vector>

#include "korvel/module/korvel.h"

namespace korvel::kit {

/// A closed line in which a plane cuts a body, by the edges that it passes.
using CutLoop = std::vector<int>;

/// The bodies that touch themselves at an edge that is cut: more than two of their faces are there.
/// Ascending. Linear.
std::vector<int> bodies_touching_themselves(const TMOD3D& model, const std::vector<bool>& is_cut);

/// The loops of a body of triangles, also around edges with more than two faces: there a loop goes
/// on across the body, so that loops touch, but do not cross. The exact class takes each edge once
/// and loses one of the loops. No vertex may be on the plane. Open lines are left out. n log n in
/// the faces of the body.
std::vector<CutLoop> cut_loops(const TMOD3D& model, int body, const std::vector<bool>& is_cut);

} // namespace korvel::kit
