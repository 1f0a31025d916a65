#include "kit/solids/mesh_check.h"

#include <cstdint>
#include <span>
#include <string>

#include "kit/base/error.h"
#include "kit/base/vectors.h"
#include "kit/solids/mesh_bodies.h"
#include "kit/solids/mesh_triangles.h"
#include "kit/solids/surface.h"

namespace korvel::kit {
namespace {

void check_empty_faces(const Mesh& mesh, const std::vector<int>& faces, double weld, Findings& out);
std::int32_t repeated_point(const Mesh& mesh, std::size_t face, double weld);
void check_body(int body, const Surface& surface, Findings& out);
void note_counts(const MeshReport& report, Findings& out);
void note_unused_points(const Mesh& mesh, Findings& out);
std::string counted(int count, const char* one, const char* several);

} // namespace

Findings check_mesh(const Mesh& mesh, const MeshSolidsOptions& options) {
    Findings findings;
    MeshReport report;
    TriangleList list = triangles_of(mesh, options, report);
    check_empty_faces(mesh, list.empty_faces, options.weld, findings);
    const std::vector<MeshBody> bodies = bodies_of(mesh, list, report);
    if (bodies.empty()) {
        findings.problems.push_back({0, "no face has an area"});
    }
    for (std::size_t body = 0; body < bodies.size(); ++body) {
        check_body(static_cast<int>(body), bodies[body].surface, findings);
    }
    note_counts(report, findings);
    note_unused_points(mesh, findings);
    return findings;
}

RepairedMesh repair_mesh(const Mesh& mesh, const MeshSolidsOptions& options,
                         const Context& context) {
    RepairedMesh repaired;
    MeshReport report;
    try {
        repaired.solids = solids_of(mesh, options, &report, context);
    } catch (const Error& error) {
        if (error.kind() != Error::Kind::input) {
            throw;
        }
        repaired.remaining.problems.push_back({0, error.what()});
        return repaired;
    }
    note_repair("points at the position of another joined to it", report.points_joined,
                repaired.repairs);
    note_repair("faces without an area removed", report.faces_degenerate, repaired.repairs);
    note_repair("faces that a body has twice removed", report.faces_doubled, repaired.repairs);
    note_repair("faces turned outward", report.faces_turned, repaired.repairs);
    const std::vector<Surface> surfaces = repaired.solids.surfaces();
    for (std::size_t body = 0; body < surfaces.size(); ++body) {
        check_body(static_cast<int>(body), surfaces[body], repaired.remaining);
    }
    return repaired;
}

namespace {

void check_empty_faces(const Mesh& mesh, const std::vector<int>& faces, double weld,
                       Findings& out) {
    for (const int face : faces) {
        const std::int32_t point = repeated_point(mesh, static_cast<std::size_t>(face), weld);
        if (point >= 0) {
            out.problems.push_back(
                {0, numbered("face", face) + " has " + numbered("point", point) + " twice"});
        } else {
            out.notes.push_back({0, numbered("face", face) + " has no area"});
        }
    }
}

// Of a triangle the first corner where another one is; −1 if there is none.
std::int32_t repeated_point(const Mesh& mesh, std::size_t face, double weld) {
    const std::span<const std::int32_t> corners = mesh.face(face);
    if (corners.size() != 3) {
        return -1;
    }
    for (std::size_t k = 0; k < 3; ++k) {
        const Point3 side = apart(mesh.points[corners[k]], mesh.points[corners[(k + 1) % 3]]);
        if (dot(side, side) <= weld * weld) {
            return corners[k];
        }
    }
    return -1;
}

void check_body(int body, const Surface& surface, Findings& out) {
    if (!surface.is_closed()) {
        out.problems.push_back({0, numbered("body", body) + " is " + state_text(surface)});
    } else if (!surface.is_clean()) {
        out.notes.push_back({0, numbered("body", body) + " is " + state_text(surface)});
    }
}

void note_counts(const MeshReport& report, Findings& out) {
    if (report.faces_doubled > 0) {
        out.problems.push_back({0, counted(report.faces_doubled, "face equals", "faces equal") +
                                       " another one of the same body"});
    }
    if (report.faces_turned > 0) {
        out.notes.push_back({0, counted(report.faces_turned, "face runs", "faces run") +
                                    " against the neighbours or inward"});
    }
    if (report.points_joined > 0) {
        out.notes.push_back({0, counted(report.points_joined, "point is", "points are") +
                                    " at the position of another one"});
    }
}

void note_unused_points(const Mesh& mesh, Findings& out) {
    std::vector<bool> is_used(mesh.points.size(), false);
    for (const std::int32_t corner : mesh.corners) {
        is_used[static_cast<std::size_t>(corner)] = true;
    }
    note_unused(is_used, std::vector<int>(is_used.size(), 0), "point", "face", out);
}

std::string counted(int count, const char* one, const char* several) {
    return std::to_string(count).append(" ").append(count == 1 ? one : several);
}

} // namespace
} // namespace korvel::kit
