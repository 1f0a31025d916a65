#pragma once

#include "kit/maps/faces.h"
#include "kit/maps/noding.h"

namespace korvel::kit {

/// Merges faces of less than an area into the neighbour with the longest common border, smallest
/// first, until none with a neighbour is left: removes the borders between them from the network.
/// Of equally long borders that with the first face wins. Returns the number of faces that went
/// into others. n log n.
int merge_small_faces(NodedNetwork& network, const Faces& faces, double least_area);

} // namespace korvel::kit
