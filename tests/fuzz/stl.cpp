// STL is read or refused, and what was read is the same once it is written, as text in double
// precision, and read again.

#include "tests/fuzz/meshes.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using korvel::kit::Mesh;
    korvel::test::exercise_mesh(
        data, size, korvel::kit::MeshFormat::stl_text, [](const Mesh& mesh, const Mesh& again) {
            return again.points == mesh.points && again.corners == mesh.corners;
        });
    return 0;
}
