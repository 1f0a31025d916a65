#include "kit/solids/mesh_triangles.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <string>
#include <utility>

#include "kit/base/error.h"
#include "kit/base/polygon_triangles.h"
#include "kit/base/vectors.h"
#include "kit/solids/flat_triangles.h"
#include "kit/solids/join_points.h"

namespace korvel::kit {
namespace {

void check_mesh_points(const Mesh& mesh, double weld);
std::vector<int> joined_in_mesh(const Mesh& mesh, double weld);
int count_joined(const Mesh& mesh, const std::vector<int>& joined);
void join_in_part(const Mesh& mesh, std::size_t first_face, std::size_t face_end, double weld,
                  std::vector<int>& joined);
void add_triangles_of_face(std::span<const std::int32_t> face, int number,
                           const std::vector<int>& joined, TriangleList& list,
                           std::vector<int>& flat, MeshReport& report);
std::vector<int> outline_of(std::span<const std::int32_t> face, const std::vector<int>& joined);
bool has_area(const TriangleList& list, const std::array<int, 3>& corners);

} // namespace

TriangleList triangles_of(const Mesh& mesh, const MeshSolidsOptions& options, MeshReport& report) {
    check_mesh_points(mesh, options.weld);
    TriangleList list;
    list.points = mesh.points;
    const std::vector<int> joined = joined_in_mesh(mesh, options.weld);
    report.points_joined = count_joined(mesh, joined);
    list.corners.reserve(mesh.face_count());
    list.faces.reserve(mesh.face_count());
    std::vector<int> flat;
    std::size_t next = 0;
    const auto add_faces_before = [&](std::size_t end) {
        for (; next < std::min(end, mesh.face_count()); ++next) {
            add_triangles_of_face(mesh.face(next), static_cast<int>(next), joined, list, flat,
                                  report);
        }
        list.part_ends.push_back(list.size());
    };
    for (const MeshPart& part : mesh.parts) {
        add_faces_before(part.face_end);
    }
    if (mesh.parts.empty()) {
        add_faces_before(mesh.face_count());
    }
    remove_flat_triangles(list, std::move(flat));
    return list;
}

namespace {

void check_mesh_points(const Mesh& mesh, double weld) {
    if (!(weld >= 0) || !std::isfinite(weld)) {
        throw input_error("the tolerance is negative or not finite");
    }
    for (std::size_t v = 0; v < mesh.points.size(); ++v) {
        const Point3& point = mesh.points[v];
        if (!std::isfinite(point[0]) || !std::isfinite(point[1]) || !std::isfinite(point[2])) {
            throw input_error("point " + std::to_string(v) + " has no finite position");
        }
    }
    constexpr std::size_t most_corners = 1U << 30;
    if (mesh.corners.size() > most_corners || mesh.points.size() > most_corners) {
        throw input_error("the mesh has more than 2^30 points or corners of faces");
    }
    const auto points = static_cast<std::int32_t>(mesh.points.size());
    for (const std::int32_t corner : mesh.corners) {
        if (corner < 0 || corner >= points) {
            throw input_error("a face has the point " + std::to_string(corner) + ", there are " +
                                  std::to_string(points),
                              {.value = std::to_string(corner)});
        }
    }
}

std::vector<int> joined_in_mesh(const Mesh& mesh, double weld) {
    if (!mesh.parts_are_bodies) {
        return joined_points(mesh.points, weld);
    }
    std::vector<int> joined(mesh.points.size(), -1);
    std::size_t first = 0;
    for (const MeshPart& part : mesh.parts) {
        join_in_part(mesh, first, part.face_end, weld, joined);
        first = part.face_end;
    }
    if (mesh.parts.empty()) {
        join_in_part(mesh, 0, mesh.face_count(), weld, joined);
    }
    for (std::size_t v = 0; v < joined.size(); ++v) {
        joined[v] = joined[v] < 0 ? static_cast<int>(v) : joined[v];
    }
    return joined;
}

// A point that an earlier part has is joined there.
void join_in_part(const Mesh& mesh, std::size_t first_face, std::size_t face_end, double weld,
                  std::vector<int>& joined) {
    std::vector<int> numbers;
    for (std::size_t face = first_face; face < face_end; ++face) {
        for (const std::int32_t corner : mesh.face(face)) {
            if (joined[corner] < 0) {
                joined[corner] = corner;
                numbers.push_back(corner);
            }
        }
    }
    std::sort(numbers.begin(), numbers.end());
    std::vector<Point3> points;
    points.reserve(numbers.size());
    for (const int number : numbers) {
        points.push_back(mesh.points[number]);
    }
    const std::vector<int> joined_here = joined_points(points, weld);
    for (std::size_t k = 0; k < numbers.size(); ++k) {
        joined[numbers[k]] = numbers[joined_here[k]];
    }
}

// Points that no face uses do not count.
int count_joined(const Mesh& mesh, const std::vector<int>& joined) {
    std::vector<char> is_used(joined.size(), 0);
    for (const std::int32_t corner : mesh.corners) {
        is_used[corner] = 1;
    }
    int count = 0;
    for (std::size_t v = 0; v < joined.size(); ++v) {
        count += is_used[v] != 0 && joined[v] != static_cast<int>(v) ? 1 : 0;
    }
    return count;
}

// Triangles with a point twice go: their sides are those of others, or cancel out.
void add_triangles_of_face(std::span<const std::int32_t> face, int number,
                           const std::vector<int>& joined, TriangleList& list,
                           std::vector<int>& flat, MeshReport& report) {
    bool has_any_area = false;
    const auto add = [&](const std::array<int, 3>& corners) {
        if (corners[0] != corners[1] && corners[1] != corners[2] && corners[2] != corners[0]) {
            if (has_area(list, corners)) {
                has_any_area = true;
            } else {
                flat.push_back(static_cast<int>(list.size()));
            }
            list.corners.push_back(corners);
        }
    };
    if (face.size() == 3) {
        add({joined[face[0]], joined[face[1]], joined[face[2]]});
    } else {
        const std::vector<int> outline = outline_of(face, joined);
        for (const std::array<int, 3>& corners : polygon_triangles(list.points, outline)) {
            add(corners);
        }
        report.faces_divided += has_any_area && outline.size() > 3 ? 1 : 0;
    }
    if (!has_any_area) {
        list.empty_faces.push_back(number);
        ++report.faces_degenerate;
    }
    list.faces.resize(list.size(), number);
}

// Without corners that follow an equal one.
std::vector<int> outline_of(std::span<const std::int32_t> face, const std::vector<int>& joined) {
    std::vector<int> outline;
    outline.reserve(face.size());
    for (const std::int32_t corner : face) {
        if (outline.empty() || outline.back() != joined[corner]) {
            outline.push_back(joined[corner]);
        }
    }
    while (outline.size() > 1 && outline.front() == outline.back()) {
        outline.pop_back();
    }
    return outline;
}

bool has_area(const TriangleList& list, const std::array<int, 3>& corners) {
    const Point3& origin = list.points[corners[0]];
    return cross(apart(origin, list.points[corners[1]]), apart(origin, list.points[corners[2]])) !=
           space_origin;
}

} // namespace
} // namespace korvel::kit
