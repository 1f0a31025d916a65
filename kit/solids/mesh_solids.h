#pragma once

#include <filesystem>
#include <optional>

#include "kit/base/context.h"
#include "kit/files/mesh.h"
#include "kit/files/mesh_files.h"
#include "kit/solids/solids.h"

// Meshes as solids, and solids as meshes.

namespace korvel::kit {

/// What a mesh was when it became solids.
struct MeshReport {
    int points_joined = 0;    ///< with equal or near coordinates, that became another point
    int faces_degenerate = 0; ///< with two corners at one point, or all in a line; left out
    int faces_doubled = 0;    ///< of a body, with the corners of another one of it; left out
    int faces_divided = 0;    ///< with more than three corners, cut into triangles
    int faces_turned = 0;     ///< that ran against their neighbours or inward
    int open_edges = 0;       ///< of the bodies, with an odd number of faces
    int crowded_edges = 0;    ///< with an even number of faces above two
    int shells = 0;           ///< connected faces
    int cavities = 0;         ///< shells that became cavities of others
};

struct MeshSolidsOptions {
    double weld = 0; ///< points no farther apart are one; 0: those of equal coordinates
};

/// Makes solids of a mesh. See docs/files.md for the rules. Throws an `Error` for a mesh without
/// faces that have an area, and where so many faces meet at an edge that a model cannot list them.
/// Near-linear.
Solids solids_of(const Mesh& mesh, const MeshSolidsOptions& options = {},
                 MeshReport* report = nullptr, const Context& context = {});

/// The bodies as the parts of a mesh, with names and colours; points that several bodies use
/// become those of each.
Mesh mesh_of(const Solids& solids);

} // namespace korvel::kit
