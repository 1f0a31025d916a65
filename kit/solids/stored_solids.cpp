#include "kit/solids/stored_solids.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <numeric>
#include <set>
#include <utility>

#include "kit/base/error.h"
#include "kit/solids/placed_model.h"
#include "kit/solids/welding.h"

namespace korvel::kit {
namespace {

std::vector<int> store_points(const Solids& solids, Mesh& mesh);
void store_face(const Face& face, const std::vector<int>& number_of, Mesh& mesh);
std::vector<std::vector<int>> listed_faces(const StoredSolids& stored);
void check(const Mesh& mesh);
std::unique_ptr<TMOD3D> model_of(const Mesh& mesh, const std::vector<std::vector<int>>& bodies);
void set_vertices(const Mesh& mesh, TMOD3D& model);

} // namespace

StoredSolids stored(const Solids& solids) {
    StoredSolids result;
    Mesh& mesh = result.mesh;
    mesh.parts_are_bodies = true;
    mesh.placement = solids.placement();
    const std::vector<int> point_of = store_points(solids, mesh);
    std::vector<int> face_of(static_cast<std::size_t>(solids.face_count()), -1);
    int faces = 0;
    result.bodies.reserve(static_cast<std::size_t>(solids.size()));
    for (const Body body : solids) {
        StoredBody& record = result.bodies.emplace_back();
        record.name = body.name();
        record.colour = body.colour();
        bool is_next = true;
        for (const Face face : body.faces()) {
            int& number = face_of[static_cast<std::size_t>(face.index())];
            is_next = is_next && number < 0;
            if (number < 0) {
                number = faces++;
                store_face(face, point_of, mesh);
            }
            record.faces.push_back(number);
        }
        record.face_count = static_cast<int>(record.faces.size());
        if (is_next) {
            record.faces = {};
        }
        mesh.parts.push_back({record.name, record.colour.rgb(), static_cast<std::size_t>(faces)});
    }
    return result;
}

// In steps of the grid, as models with a placement are read: volumes of what is far from 0 lose
// digits.
Solids restored(const StoredSolids& stored, const Context& context) {
    const Mesh& mesh = stored.mesh;
    check(mesh);
    const std::vector<std::vector<int>> bodies = listed_faces(stored);
    if (bodies.empty()) {
        return {};
    }
    std::unique_ptr<TMOD3D> model = model_of(mesh, bodies);
    derive_from_faces(*model, context);
    if (model->verts.GetSize() != static_cast<int>(mesh.points.size())) {
        throw input_error("the mesh has points that no face uses");
    }
    if (!mesh.placement.grid.is_identity()) {
        to_user(mesh.placement.grid, mesh.points, *model);
    }
    Solids solids(std::move(model));
    solids.set_placement(mesh.placement);
    for (int body = 0; body < solids.size(); ++body) {
        const StoredBody& record = stored.bodies[static_cast<std::size_t>(body)];
        solids.set_name(body, record.name);
        solids.set_colour(body, record.colour);
    }
    return solids;
}

namespace {

// Those that faces of bodies use, in their order.
std::vector<int> store_points(const Solids& solids, Mesh& mesh) {
    std::vector<int> number_of(static_cast<std::size_t>(solids.vertex_count()), -1);
    for (const Body body : solids) {
        for (const int vertex : body.vertices()) {
            number_of[static_cast<std::size_t>(vertex)] = 0;
        }
    }
    mesh.points.reserve(number_of.size());
    for (int vertex = 0; vertex < solids.vertex_count(); ++vertex) {
        int& number = number_of[static_cast<std::size_t>(vertex)];
        if (number == 0) {
            number = static_cast<int>(mesh.points.size());
            mesh.points.push_back(solids.vertex(vertex));
        }
    }
    return number_of;
}

// `face_ends` is filled from the first face on that is no triangle.
void store_face(const Face& face, const std::vector<int>& number_of, Mesh& mesh) {
    constexpr std::size_t triangle = 3;
    const std::span<const int> corners = face.vertices();
    if (corners.size() != triangle && mesh.face_ends.empty()) {
        for (std::size_t end = triangle; end <= mesh.corners.size(); end += triangle) {
            mesh.face_ends.push_back(static_cast<std::uint32_t>(end));
        }
    }
    const bool has_ends = corners.size() != triangle || !mesh.face_ends.empty();
    for (const int corner : corners) {
        mesh.corners.push_back(number_of[static_cast<std::size_t>(corner)]);
    }
    if (has_ends) {
        mesh.face_ends.push_back(static_cast<std::uint32_t>(mesh.corners.size()));
    }
}

std::vector<std::vector<int>> listed_faces(const StoredSolids& stored) {
    const auto faces = static_cast<int>(stored.mesh.face_count());
    std::vector<std::vector<int>> bodies;
    bodies.reserve(stored.bodies.size());
    int next = 0; // after all faces so far
    for (const StoredBody& record : stored.bodies) {
        std::vector<int> listed = record.faces;
        if (listed.empty()) {
            if (record.face_count < 1 || record.face_count > faces - next) {
                throw input_error("body " + std::to_string(bodies.size()) + " has " +
                                  std::to_string(record.face_count) + " faces, but the mesh has " +
                                  std::to_string(faces - next) + " more");
            }
            listed.resize(static_cast<std::size_t>(record.face_count));
            std::iota(listed.begin(), listed.end(), next);
        }
        if (std::set<int>(listed.begin(), listed.end()).size() != listed.size()) {
            throw input_error("body " + std::to_string(bodies.size()) + " lists a face twice");
        }
        for (const int face : listed) {
            if (face < 0 || face >= faces) {
                throw input_error("body " + std::to_string(bodies.size()) + " lists face " +
                                  std::to_string(face) + " of " + std::to_string(faces));
            }
            next = std::max(next, face + 1);
        }
        bodies.push_back(std::move(listed));
    }
    return bodies;
}

void check(const Mesh& mesh) {
    for (const std::int32_t corner : mesh.corners) {
        if (corner < 0 || static_cast<std::size_t>(corner) >= mesh.points.size()) {
            throw input_error("a face has point " + std::to_string(corner) + " of " +
                              std::to_string(mesh.points.size()));
        }
    }
}

std::unique_ptr<TMOD3D> model_of(const Mesh& mesh, const std::vector<std::vector<int>>& bodies) {
    auto model = std::make_unique<TMOD3D>();
    set_vertices(mesh, *model);
    model->polys.SetSize(static_cast<int>(mesh.face_count()));
    for (int face = 0; face < model->polys.GetSize(); ++face) {
        const std::span<const std::int32_t> corners = mesh.face(static_cast<std::size_t>(face));
        CArray<int>& verts = model->polys[face].verts;
        verts.SetSize(static_cast<int>(corners.size()));
        std::copy(corners.begin(), corners.end(), verts.begin());
    }
    model->bodies.SetSize(static_cast<int>(bodies.size()));
    for (int body = 0; body < model->bodies.GetSize(); ++body) {
        const std::vector<int>& faces = bodies[static_cast<std::size_t>(body)];
        CArray<int>& listed = model->bodies[body].polys;
        listed.SetSize(static_cast<int>(faces.size()));
        std::copy(faces.begin(), faces.end(), listed.begin());
    }
    return model;
}

void set_vertices(const Mesh& mesh, TMOD3D& model) {
    const Grid& grid = mesh.placement.grid;
    model.verts.SetSize(static_cast<int>(mesh.points.size()));
    for (int v = 0; v < model.verts.GetSize(); ++v) {
        const Point3& user = mesh.points[static_cast<std::size_t>(v)];
        const Point3 point = grid.is_identity() ? user : grid.to_grid(user);
        std::copy(point.begin(), point.end(), model.verts[v].model_xyz);
    }
}

} // namespace
} // namespace korvel::kit
