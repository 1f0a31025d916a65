#include "kit/solids/solid_files.h"

#include "kit/files/mesh_files.h"

namespace korvel::kit {

Solids read_solids(const std::filesystem::path& file, const MeshSolidsOptions& options,
                   MeshReport* report, const Context& context) {
    return holds_mesh(file) ? solids_of(read_mesh(file, {}, context), options, report, context)
                            : Solids::read(file, context);
}

void write_solids(const Solids& solids, const std::filesystem::path& file) {
    if (mesh_format(file)) {
        write_mesh(mesh_of(solids), file);
    } else {
        solids.write(file);
    }
}

} // namespace korvel::kit
