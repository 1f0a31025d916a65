#pragma once

#include <vector>

#include "kit/base/context.h"
#include "kit/files/findings.h"
#include "kit/files/mesh.h"
#include "kit/files/repair.h"
#include "kit/solids/mesh_solids.h"
#include "kit/solids/solids.h"

namespace korvel::kit {

/// Checks the bodies that a mesh contains, as `check_model` checks those of a model; the lines are
/// 0. Problems are open bodies, faces with a point twice and faces that a body has twice; faces
/// without an area, faces that run the wrong way, points that coincide or that no face uses are
/// unusual.
Findings check_mesh(const Mesh& mesh, const MeshSolidsOptions& options = {});

/// A mesh after its repair.
struct RepairedMesh {
    Solids solids;               ///< empty if the mesh has no face with an area
    std::vector<Repair> repairs; ///< empty if there was nothing to repair
    Findings remaining;          ///< of the solids; the lines are 0

    bool is_sound() const { return remaining.problems.empty(); }
};

/// Makes solids of a mesh, which repairs it: points are joined, faces without an area or that a
/// body has twice are left out, others turned outward.
RepairedMesh repair_mesh(const Mesh& mesh, const MeshSolidsOptions& options = {},
                         const Context& context = {});

} // namespace korvel::kit
