// Files of meshes that other programs make of ours, and the reverse.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "kit/kit.h"
#include "tests/support/scratch.h"

#ifdef KORVEL_TESTS_WITH_OPENMESH
#include <OpenMesh/Core/IO/MeshIO.hh>
#include <OpenMesh/Core/Mesh/TriMesh_ArrayKernelT.hh>
#endif

namespace korvel::test {
namespace {

using kit::MeshFormat;
using kit::Solids;

std::size_t faces_of_bodies(const Solids& solids) {
    return kit::mesh_of(solids).face_count(); // a wall that two share is one of each
}

/// The bodies, faces and volume of two models are the same; those with coordinates of 24 bits
/// nearly.
void expect_same_solids(const Solids& solids, const Solids& other, const std::string& what) {
    EXPECT_EQ(solids.size(), other.size()) << what;
    EXPECT_EQ(faces_of_bodies(solids), faces_of_bodies(other)) << what;
    EXPECT_NEAR(solids.volume() / other.volume(), 1, 1e-5) << what;
}

/// A ball, and the states of a map as neighbours that touch.
std::vector<std::pair<std::string, Solids>> samples() {
    std::vector<std::pair<std::string, Solids>> made;
    made.emplace_back("ball", kit::make_ball({3, 4, 5}, 10, 2));
    const kit::Network states = kit::Network::read(KORVEL_DATA_DIR "/us-states.curves");
    made.emplace_back("states",
                      kit::raise(kit::find_regions(states).take_map(), {.high = 3}).solids);
    for (auto& [name, solids] : made) {
        solids.set_name(0, name + " 0");
        solids.set_colour(0, {.hue = 30});
    }
    return made;
}

class ForeignMeshes : public Scratch {
protected:
    bool run(const std::string& command) const {
        return std::system((command + " > '" + path("log").string() + "' 2>&1").c_str()) == 0;
    }
    std::string quoted_path(const std::string& name) const {
        return "'" + path(name).string() + "'";
    }
};

// assimp (Debian assimp-utils) reads each format that we write, and we read each that it writes of
// it.
TEST_F(ForeignMeshes, AssimpConvertsOurs) {
    if (!run("assimp version")) {
        GTEST_SKIP() << "assimp is not installed";
    }
    constexpr std::array<std::pair<const char*, const char*>, 6> theirs = {{{"stl", "t.stl"},
                                                                            {"stlb", "b.stl"},
                                                                            {"ply", "t.ply"},
                                                                            {"plyb", "b.ply"},
                                                                            {"obj", "t.obj"},
                                                                            {"glb2", "b.glb"}}};
    for (const auto& [name, solids] : samples()) {
        for (const kit::MeshFormatInfo& ours : kit::mesh_formats()) {
            const std::string suffix = ours.format == MeshFormat::stl_text   ? ".stl"
                                       : ours.format == MeshFormat::ply_text ? ".ply"
                                                                             : ours.suffix;
            const std::string own = "own" + suffix;
            kit::write_mesh(kit::mesh_of(solids), path(own), ours.format);
            for (std::size_t k = 0; k < theirs.size(); ++k) {
                const auto& [format, foreign] = theirs[k];
                if (name == "states" &&
                    k != static_cast<std::size_t>(ours.format) % theirs.size()) {
                    continue; // one of them, as it takes long
                }
                if (std::string(format) == "plyb" && own.ends_with("ply")) {
                    continue; // assimp 5.2 writes colours of points in another type than it states
                }
                const std::string what = name + ": " + ours.name + " to " + foreign;
                ASSERT_TRUE(run("assimp export " + quoted_path(own) + " " + quoted_path(foreign) +
                                " -f" + format))
                    << what << read("log");
                expect_same_solids(kit::solids_of(kit::read_mesh(path(foreign))), solids, what);
            }
        }
    }
}

/// The rows of an array of arrays in JavaScript, each behind `prefix`, and their number.
std::pair<std::string, std::size_t> rows_of(const std::string& script, const std::string& name,
                                            const std::string& prefix) {
    const std::size_t start = script.find(name + "=[[") + name.size() + 3;
    std::string rows = prefix;
    std::size_t count = 1;
    for (std::size_t i = start; i < script.size() && script.compare(i, 2, "]]") != 0; ++i) {
        if (script.compare(i, 3, "],[") == 0) {
            rows += "\n" + prefix;
            ++count;
            i += 2;
        } else {
            rows += script[i] == ',' ? ' ' : script[i];
        }
    }
    return {rows + "\n", count};
}

// A scanned model, the package "bunny" of npm.
TEST_F(ForeignMeshes, BunnyStaysTheSameInEachFormat) {
    if (!run("cd " + directory_.string() +
             " && timeout 20 npm pack --silent --fetch-retries=0 bunny && tar xzf bunny-*.tgz")) {
        GTEST_SKIP() << "npm or its registry is not there";
    }
    const std::string script = read("package/index.js");
    const auto [points, point_count] = rows_of(script, "exports.positions", "");
    const auto [faces, face_count] = rows_of(script, "exports.cells", "3 ");
    write("bunny.off", "OFF " + std::to_string(point_count) + " " + std::to_string(face_count) +
                           " 0\n" + points + faces);
    Solids bunny = kit::read_solids(path("bunny.off"));
    EXPECT_EQ(bunny.face_count(), 3674);
    EXPECT_TRUE(bunny[0].surface().is_clean());
    for (const char* const file : {"b.stl", "b.ply", "b.obj", "b.off", "b.glb"}) {
        kit::write_solids(bunny, path(file));
        const Solids again = kit::read_solids(path(file));
        EXPECT_EQ(again.size(), 1) << file;
        EXPECT_NEAR(again.volume(), 194.288371, 1e-4) << file;
    }
}

#ifdef KORVEL_TESTS_WITH_OPENMESH
struct DoublePoints : OpenMesh::DefaultTraits {
    using Point = OpenMesh::Vec3d;
};
using OpenMeshMesh = OpenMesh::TriMesh_ArrayKernelT<DoublePoints>;

TEST_F(ForeignMeshes, OpenMeshReadsOursAndWritesThem) {
    for (const auto& [name, solids] : samples()) {
        for (const char* const suffix : {"stl", "ply", "obj", "off"}) {
            const std::string what = name + ": " + suffix;
            if (name == "states" && what.ends_with("stl")) {
                continue; // where bodies that touch share points, its mesh has no such edges
            }
            kit::Mesh own = kit::mesh_of(solids);
            for (kit::MeshPart& part : own.parts) {
                part.colour.reset(); // of an OFF, OpenMesh takes them for faces unless it is asked
            }
            kit::write_mesh(own, path("own").replace_extension(suffix));
            OpenMeshMesh mesh;
            ASSERT_TRUE(
                OpenMesh::IO::read_mesh(mesh, path("own").replace_extension(suffix).string()))
                << what;
            EXPECT_EQ(mesh.n_faces(), faces_of_bodies(solids)) << what;
            for (const bool is_binary : {false, true}) {
                if (is_binary && (what.ends_with("obj") || what.ends_with("off"))) {
                    continue; // which are texts; a binary OFF is its own
                }
                OpenMesh::IO::Options options;
                if (is_binary) {
                    options += OpenMesh::IO::Options::Binary;
                }
                const std::string foreign = path("theirs").replace_extension(suffix).string();
                ASSERT_TRUE(OpenMesh::IO::write_mesh(mesh, foreign, options, 17)) << what;
                expect_same_solids(kit::solids_of(kit::read_mesh(foreign)), solids, what);
            }
        }
    }
}
#endif

} // namespace
} // namespace korvel::test
