#pragma once

#include <vector>

#include "korvel/module/korvel.h"

namespace korvel::kit {

/// The angle in degrees by which the faces of a curved surface may turn at an edge without its
/// being an outline: a finely divided ball has none, a coast raised to a wall has them at its
/// corners.
inline constexpr double smooth_angle = 30;

/// The edges that outline the bodies of a model whose relations are current, ascending: those at
/// which the two faces of a body turn by more than `angle` degrees, and those at which a body has
/// one face or more than two. Bodies are looked at one by one, so that the border of neighbours
/// that share a wall is among them also where their tops are level. Linear.
std::vector<int> outline_edges(const TMOD3D& model, double angle = smooth_angle);

} // namespace korvel::kit
