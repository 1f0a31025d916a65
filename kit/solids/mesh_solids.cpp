#include "kit/solids/mesh_solids.h"

#include <algorithm>
#include <memory>
#include <numeric>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "kit/base/error.h"
#include "kit/solids/colour_of_body.h"
#include "kit/solids/face_order.h"
#include "kit/solids/file_placement.h"
#include "kit/solids/mesh_bodies.h"
#include "kit/solids/mesh_triangles.h"
#include "kit/solids/placed_model.h"
#include "kit/solids/triangle_sides.h"
#include "kit/solids/welding.h"

namespace korvel::kit {
namespace {

void refuse_books(const std::vector<MeshBody>& bodies, const TriangleList& list);
std::vector<Point3> keep_used_points(const std::vector<MeshBody>& bodies, TriangleList& list);
std::unique_ptr<TMOD3D> model_of_bodies(const std::vector<MeshBody>& bodies,
                                        const std::vector<Point3>& points, const TriangleList& list,
                                        const Grid& grid);
void name_and_colour(const Mesh& mesh, const TriangleList& list,
                     const std::vector<MeshBody>& bodies, Solids& solids);
std::optional<Colour> most_frequent_colour(const Mesh& mesh, const TriangleList& list,
                                           const MeshBody& body);

} // namespace

// Everything is derived in steps of the grid, because volumes of what is far from 0 lose their
// digits.
Solids solids_of(const Mesh& mesh, const MeshSolidsOptions& options, MeshReport* report,
                 const Context& context) {
    constexpr const char* stage = "making bodies";
    constexpr int steps = 3;
    context.report(stage, 0, steps);
    MeshReport counts;
    TriangleList list = triangles_of(mesh, options, counts);
    context.report(stage, 1, steps);
    const std::vector<MeshBody> bodies = bodies_of(mesh, list, counts);
    if (bodies.empty()) {
        throw input_error("the mesh has no face with an area");
    }
    refuse_books(bodies, list);
    context.report(stage, 2, steps);
    const std::vector<Point3> points = keep_used_points(bodies, list);
    const Placement placement = placement_for_file(points, mesh.placement);
    std::unique_ptr<TMOD3D> model = model_of_bodies(bodies, points, list, placement.grid);
    derive_from_faces(*model, context);
    if (!placement.grid.is_identity()) {
        to_user(placement.grid, points, *model);
    }
    Solids solids(std::move(model));
    solids.set_placement(placement);
    name_and_colour(mesh, list, bodies, solids);
    if (report != nullptr) {
        *report = counts;
    }
    context.report(stage, steps, steps);
    return solids;
}

namespace {

// A model lists for each face the others at its edges, which grows with the square of their number.
void refuse_books(const std::vector<MeshBody>& bodies, const TriangleList& list) {
    constexpr int usual = 1000; // triangles at a point
    constexpr double most_for_triangle = 100;
    std::vector<int> triangles;
    std::vector<int> uses(list.points.size(), 0);
    int most = 0;
    for (const MeshBody& body : bodies) {
        triangles.insert(triangles.end(), body.triangles.begin(), body.triangles.end());
        for (const int triangle : body.triangles) {
            for (const int corner : list.corners[triangle]) {
                most = std::max(most, ++uses[corner]);
            }
        }
    }
    if (most <= usual) {
        return;
    }
    double neighbours = 0;
    std::size_t crowd = 0;
    const std::vector<TriangleSide> sides = sides_of(list, triangles);
    for_each_edge(sides, [&](std::span<const TriangleSide> edge) {
        neighbours += static_cast<double>(edge.size()) * static_cast<double>(edge.size());
        crowd = std::max(crowd, edge.size());
    });
    if (neighbours > most_for_triangle * static_cast<double>(triangles.size() + usual)) {
        throw input_error("too many faces meet at one edge: " + std::to_string(crowd));
    }
}

// Those that triangles of bodies use, in their order.
std::vector<Point3> keep_used_points(const std::vector<MeshBody>& bodies, TriangleList& list) {
    std::vector<int> numbers(list.points.size(), -1);
    for (const MeshBody& body : bodies) {
        for (const int triangle : body.triangles) {
            for (const int corner : list.corners[triangle]) {
                numbers[corner] = 0;
            }
        }
    }
    std::vector<Point3> points;
    points.reserve(static_cast<std::size_t>(std::count(numbers.begin(), numbers.end(), 0)));
    for (std::size_t v = 0; v < numbers.size(); ++v) {
        if (numbers[v] == 0) {
            numbers[v] = static_cast<int>(points.size());
            points.push_back(list.points[v]);
        }
    }
    for (const MeshBody& body : bodies) {
        for (const int triangle : body.triangles) {
            for (int& corner : list.corners[triangle]) {
                corner = numbers[corner];
            }
        }
    }
    list.points = {};
    return points;
}

// In steps, body after body.
std::unique_ptr<TMOD3D> model_of_bodies(const std::vector<MeshBody>& bodies,
                                        const std::vector<Point3>& points, const TriangleList& list,
                                        const Grid& grid) {
    auto model = std::make_unique<TMOD3D>();
    model->verts.SetSize(static_cast<int>(points.size()));
    for (int v = 0; v < model->verts.GetSize(); ++v) {
        const Point3& user = points[static_cast<std::size_t>(v)];
        const Point3 point = grid.is_identity() ? user : grid.to_grid(user);
        std::copy(point.begin(), point.end(), model->verts[v].model_xyz);
    }
    std::size_t faces = 0;
    for (const MeshBody& body : bodies) {
        faces += body.triangles.size();
    }
    model->polys.SetSize(static_cast<int>(faces));
    model->bodies.SetSize(static_cast<int>(bodies.size()));
    int face = 0;
    for (int b = 0; b < model->bodies.GetSize(); ++b) {
        const MeshBody& body = bodies[static_cast<std::size_t>(b)];
        CArray<int>& listed = model->bodies[b].polys;
        listed.SetSize(static_cast<int>(body.triangles.size()));
        std::iota(listed.begin(), listed.end(), face);
        for (const int triangle : body.triangles) {
            std::array<int, 3> corners = list.corners[triangle];
            if (grid.is_y_down()) {
                std::swap(corners[1], corners[2]);
            }
            model->polys[face].verts.SetSize(3);
            std::copy(corners.begin(), corners.end(), model->polys[face].verts.begin());
            ++face;
        }
        if (body.has_crowded_edges) {
            order_faces_for_orientation(*model, b);
        }
    }
    return model;
}

void name_and_colour(const Mesh& mesh, const TriangleList& list,
                     const std::vector<MeshBody>& bodies, Solids& solids) {
    for (int b = 0; b < solids.size(); ++b) {
        const MeshBody& body = bodies[static_cast<std::size_t>(b)];
        std::optional<Colour> colour;
        if (!mesh.parts.empty()) {
            const MeshPart& part = mesh.parts[std::min(body.part, mesh.parts.size() - 1)];
            if (!part.name.empty()) {
                solids.set_name(b, part.name);
            }
            colour = part.colour;
        }
        if (!colour) {
            colour = most_frequent_colour(mesh, list, body);
        }
        if (colour) {
            solids.set_colour(b, colour_of_body(*colour));
        }
    }
}

// A face without a colour has that of its first corner; of equally frequent ones the first counts.
std::optional<Colour> most_frequent_colour(const Mesh& mesh, const TriangleList& list,
                                           const MeshBody& body) {
    if (mesh.face_colours.empty() && mesh.point_colours.empty()) {
        return {};
    }
    std::vector<std::uint32_t> colours;
    colours.reserve(body.triangles.size());
    for (const int triangle : body.triangles) {
        const auto face = static_cast<std::size_t>(list.faces[triangle]);
        const Colour colour = mesh.face_colours.empty()
                                  ? mesh.point_colours[mesh.face(face).front()]
                                  : mesh.face_colours[face];
        colours.push_back(
            static_cast<std::uint32_t>(colour.red << 16 | colour.green << 8 | colour.blue));
    }
    std::sort(colours.begin(), colours.end());
    std::uint32_t best = 0;
    std::ptrdiff_t most = 0;
    for (auto first = colours.begin(); first != colours.end();) {
        const auto end = std::upper_bound(first, colours.end(), *first);
        if (end - first > most) {
            most = end - first;
            best = *first;
        }
        first = end;
    }
    return Colour{static_cast<unsigned char>(best >> 16), static_cast<unsigned char>(best >> 8),
                  static_cast<unsigned char>(best)};
}

} // namespace
} // namespace korvel::kit
