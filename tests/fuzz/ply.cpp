// PLY is read or refused, and what was read is the same once it is written and read again.

#include "tests/fuzz/meshes.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using korvel::kit::Mesh;
    korvel::test::exercise_mesh(
        data, size, korvel::kit::MeshFormat::ply, [](const Mesh& mesh, const Mesh& again) {
            return again.points == mesh.points && again.corners == mesh.corners &&
                   again.face_ends == mesh.face_ends && again.point_colours == mesh.point_colours &&
                   again.face_colours == mesh.face_colours &&
                   again.parts.size() == mesh.parts.size();
        });
    return 0;
}
