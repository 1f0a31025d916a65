#pragma once

#include <vector>

#include "kit/files/mesh.h"

// Colours for the formats that have no parts.

namespace korvel::kit {

/// A colour for each face: its own or that of its part, white without one. None if neither faces
/// nor parts have colours.
std::vector<Colour> colours_of_faces(const Mesh& mesh);

/// A colour for each point: its own or, of bodies, that of the first face that it is a corner of,
/// for programs that show no others. None if there are neither.
std::vector<Colour> colours_of_points(const Mesh& mesh, const std::vector<Colour>& face_colours);

} // namespace korvel::kit
