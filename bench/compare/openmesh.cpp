#include <stdexcept>

#include <OpenMesh/Core/IO/MeshIO.hh>
#include <OpenMesh/Core/Mesh/TriMesh_ArrayKernelT.hh>
#include <OpenMesh/Core/System/omstream.hh>

#include "bench/compare/peers.h"

namespace korvel::bench {

using OpenMeshTriangles = OpenMesh::TriMesh_ArrayKernelT<>;

namespace {

void read_by_openmesh(const std::filesystem::path& file, OpenMeshTriangles& mesh) {
    if (!OpenMesh::IO::read_mesh(mesh, file.string())) {
        throw std::runtime_error("OpenMesh cannot read " + file.string());
    }
}

} // namespace

struct OpenMeshMesh::Mesh {
    OpenMeshTriangles triangles;
};

Run read_with_openmesh(const std::filesystem::path& mesh) {
    OpenMeshTriangles triangles;
    Run run;
    run.seconds = seconds_of([&] { read_by_openmesh(mesh, triangles); });
    run.found = static_cast<double>(triangles.n_faces());
    return run;
}

OpenMeshMesh::OpenMeshMesh(const std::filesystem::path& mesh) : mesh_(std::make_unique<Mesh>()) {
    read_by_openmesh(mesh, mesh_->triangles);
}

OpenMeshMesh::~OpenMeshMesh() = default;

Run OpenMeshMesh::write(const std::filesystem::path& file) const {
    OpenMesh::IO::Options options;
    if (file.extension() == ".stl" || file.extension() == ".ply") {
        options += OpenMesh::IO::Options::Binary;
    }
    omlog().disable(); // which names each file on standard error
    Run run;
    run.seconds = seconds_of([&] {
        if (!OpenMesh::IO::write_mesh(mesh_->triangles, file.string(), options)) {
            throw std::runtime_error("OpenMesh cannot write " + file.string());
        }
    });
    run.found = static_cast<double>(mesh_->triangles.n_faces());
    return run;
}

} // namespace korvel::bench
