#pragma once

#include "kit/files/mesh.h"

namespace korvel::kit {

/// The mesh with its faces cut into triangles, over the same points. Colours are those of the faces
/// that they were.
Mesh triangulated(const Mesh& mesh);

} // namespace korvel::kit
