// Files of meshes read and written, beside OpenMesh.

#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <string>

#include "bench/compare/contest.h"
#include "bench/compare/jobs.h"
#include "bench/compare/peers.h"
#include "bench/inputs/models.h"
#include "kit/kit.h"

namespace korvel::bench {
namespace {

namespace fs = std::filesystem;

/// A file that goes away with its object.
class MeshFile {
public:
    MeshFile(const char* name, const char* suffix)
        : path_(fs::temp_directory_path() /
                ("korvel-" + std::to_string(getpid()) + "-" + name + suffix)) {}
    ~MeshFile() { fs::remove(path_); }
    MeshFile(const MeshFile&) = delete;
    MeshFile& operator=(const MeshFile&) = delete;

    const fs::path& path() const { return path_; }

private:
    fs::path path_;
};

kit::Mesh ball_mesh(int faces);
void compare_format(Table& table, const char* suffix, const kit::Mesh& mesh);
double bytes_of(const kit::Mesh& mesh);

} // namespace

void compare_meshes(Table& table, bool is_quick) {
    const kit::Mesh mesh = ball_mesh(is_quick ? 40'000 : 800'000);
    for (const char* suffix : {".stl", ".ply", ".off", ".obj"}) {
        compare_format(table, suffix, mesh);
    }
}

long peak_memory_of_reading_mesh(const char* mesh) {
    kit::read_mesh(mesh);
    return peak_memory();
}

namespace {

void compare_format(Table& table, const char* suffix, const kit::Mesh& mesh) {
    const MeshFile file("read", suffix);
    const MeshFile target("written", suffix);
    kit::write_mesh(mesh, file.path());
    const auto faces = static_cast<int>(mesh.face_count());
    Series(table, std::string("read ") + (suffix + 1), "bumpy ball", "faces")
        .race(faces,
              [&] {
                  kit::Mesh copy;
                  Run run;
                  run.seconds = seconds_of([&] { copy = kit::read_mesh(file.path()); });
                  run.found = static_cast<double>(copy.face_count());
                  return run;
              },
              {{"OpenMesh", [&] { return read_with_openmesh(file.path()); }, 1}});
    const OpenMeshMesh peer(file.path());
    Series(table, std::string("write ") + (suffix + 1), "bumpy ball", "faces")
        .race(faces,
              [&] {
                  Run run;
                  run.seconds = seconds_of([&] { kit::write_mesh(mesh, target.path()); });
                  run.found = static_cast<double>(mesh.face_count());
                  return run;
              },
              {{"OpenMesh", [&] { return peer.write(target.path()); }, 1.5}});

    const MeshFile least("least", suffix);
    kit::write_mesh(ball_mesh(8), least.path());
    const auto peak = [](const MeshFile& any) {
        return number_from_new_process(std::string(mesh_option) + " " + any.path().string());
    };
    table.add_measure(std::string("memory ") + (suffix + 1), "bumpy ball", faces,
                      (peak(file) - peak(least)) * 1024 / bytes_of(mesh), "bytes a byte of data",
                      1.3);
}

// With coordinates of six decimals, which users' files have.
kit::Mesh ball_mesh(int faces) {
    TMOD3D model;
    bumpy_ball(model, faces);
    kit::Mesh mesh;
    for (const VERT3D& vertex : model.verts) {
        kit::Point3& point = mesh.points.emplace_back();
        for (std::size_t axis = 0; axis < 3; ++axis) {
            point[axis] = std::round(vertex.model_xyz[axis] * 1e6) / 1e6;
        }
    }
    for (const POLY3D& face : model.polys) {
        for (const int corner : face.verts) {
            mesh.corners.push_back(corner);
        }
    }
    return mesh;
}

double bytes_of(const kit::Mesh& mesh) {
    return static_cast<double>(mesh.points.size() * sizeof(kit::Point3) +
                               mesh.corners.size() * sizeof(std::int32_t));
}

} // namespace
} // namespace korvel::bench
