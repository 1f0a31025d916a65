// Binary glTF is read or refused, and what was read has the same faces once it is written and read
// again: coordinates are those of single precision.

#include "tests/fuzz/meshes.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using korvel::kit::Mesh;
    korvel::test::exercise_mesh(data, size, korvel::kit::MeshFormat::glb,
                                [](const Mesh& mesh, const Mesh& again) {
                                    return again.face_count() == mesh.face_count() &&
                                           again.parts_are_bodies == mesh.parts_are_bodies &&
                                           again.placement == mesh.placement;
                                });
    return 0;
}
