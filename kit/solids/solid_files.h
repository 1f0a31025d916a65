#pragma once

#include <filesystem>

#include "kit/base/context.h"
#include "kit/solids/mesh_solids.h"
#include "kit/solids/solids.h"

namespace korvel::kit {

/// Reads solids from a file: of a mesh if it is one (`holds_mesh`, `read_mesh`, `solids_of`), else
/// a body model file (`Solids::read`). The report is changed for a mesh only.
Solids read_solids(const std::filesystem::path& file, const MeshSolidsOptions& options = {},
                   MeshReport* report = nullptr, const Context& context = {});

/// Writes solids as a mesh if the suffix selects one (`mesh_format`), else as a body model file.
/// Files are complete or absent.
void write_solids(const Solids& solids, const std::filesystem::path& file);

} // namespace korvel::kit
