#pragma once

#include "kit/files/mesh_files.h"

namespace korvel::kit {

/// How far the single precision of a binary STL moves a coordinate at most; 0 for the other
/// formats: texts and PLY have double precision, GLB steps or distances from the middle. Linear.
double change_by_format(const Mesh& mesh, MeshFormat format);

} // namespace korvel::kit
