#pragma once

#include <string>
#include <vector>

#include "kit/base/context.h"
#include "kit/files/mesh.h"
#include "kit/solids/body.h"
#include "kit/solids/solids.h"

namespace korvel::kit {

/// What a mesh does not hold of a body.
struct StoredBody {
    std::string name = {};
    BodyColour colour = {};
    int face_count = 0;

    /// Its faces in the mesh; empty if they are the next ones after those of the bodies before.
    std::vector<int> faces = {};
};

/// Solids in a form that files can hold without any loss: a mesh of the vertices and faces that
/// bodies use, each once, and the bodies. Points have the coordinates of the vertices to the last
/// digit. Solids that were made of it have the same vertices and bodies, each with its faces in the
/// same order and direction; the corner at which a face starts may be another. Faces that are
/// shared stay shared. Everything else is derived anew.
struct StoredSolids {
    Mesh mesh; ///< a part for each body, with its faces that no body before has
    std::vector<StoredBody> bodies;
};

/// Near-linear.
StoredSolids stored(const Solids& solids);

/// Throws an `Error` where bodies and mesh do not fit together. Near-linear.
Solids restored(const StoredSolids& stored, const Context& context = {});

} // namespace korvel::kit
