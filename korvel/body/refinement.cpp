#include "korvel/body/refinement.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "korvel/base/indices.h"

namespace korvel {
namespace {

/// Both halves of a cut edge.
struct Halves {
    int middle = -1;
    int end_half = -1; ///< from the midpoint to the old end; the old number goes from the old start
};

/// The numbers that new records get next.
struct NextRecords {
    int vertex;
    int edge;
    int face;
};

bool can_be_refined(const TMOD3D& model, const BODY3D& body);
std::vector<int> edges_of(const TMOD3D& model, const BODY3D& body);
std::vector<Halves> cut_at_midpoints(TMOD3D& model, const std::vector<int>& edges,
                                     bool on_unit_sphere, NextRecords& next);
void divide_face(TMOD3D& model, int f, const std::vector<Halves>& halves, int* parts,
                 NextRecords& next);

} // namespace

void refine_body(TMOD3D& model, int body, bool on_unit_sphere) {
    BODY3D& refined = model.bodies[body];
    if (!can_be_refined(model, refined)) {
        return;
    }
    const std::vector<int> edges = edges_of(model, refined);
    const int cut = static_cast<int>(edges.size());
    const int old_faces = refined.polys.GetSize();
    NextRecords next = {korvel::size_of(model.verts), korvel::size_of(model.lines),
                        korvel::size_of(model.polys)};
    model.verts.SetSize(next.vertex + cut);
    model.lines.SetSize(next.edge + cut + 3 * old_faces);
    model.polys.SetSize(next.face + 3 * old_faces);
    refined.polys.SetSize(4 * old_faces);

    const std::vector<Halves> halves = cut_at_midpoints(model, edges, on_unit_sphere, next);
    for (int i = 0; i < old_faces; ++i) {
        int parts[3];
        divide_face(model, refined.polys[i], halves, parts, next);
        std::copy_n(parts, 3, begin(refined.polys) + old_faces + 3 * i);
    }
}

namespace {

/// A triangle with three edges whose ends exist.
bool is_whole_triangle(const TMOD3D& model, const POLY3D& face) {
    return face.verts.GetSize() == 3 && face.lines.GetSize() == 3 &&
           std::all_of(begin(face.lines), end(face.lines), [&](int e) {
               return has_element(model.lines, e) &&
                      has_element(model.verts, model.lines[e].start_vert) &&
                      has_element(model.verts, model.lines[e].end_vert);
           });
}

bool can_be_refined(const TMOD3D& model, const BODY3D& body) {
    constexpr int most_faces = 1 << 27; // all new indices still fit into an int
    std::vector<char> seen(static_cast<std::size_t>(model.polys.GetSize()), 0);
    return body.polys.GetSize() <= most_faces && model.polys.GetSize() <= most_faces &&
           std::all_of(begin(body.polys), end(body.polys), [&](int f) {
               return has_element(model.polys, f) && is_whole_triangle(model, model.polys[f]) &&
                      std::exchange(seen[f], 1) == 0;
           });
}

/// The edges of a body's faces, each once, in order of first appearance.
std::vector<int> edges_of(const TMOD3D& model, const BODY3D& body) {
    std::vector<int> edges;
    std::vector<char> seen(static_cast<std::size_t>(model.lines.GetSize()), 0);
    for (const int f : body.polys) {
        for (const int e : model.polys[f].lines) {
            if (std::exchange(seen[e], 1) == 0) {
                edges.push_back(e);
            }
        }
    }
    return edges;
}

void set_midpoint(VERT3D& middle, const VERT3D& start, const VERT3D& end, bool on_unit_sphere) {
    double squares = 0;
    for (int k = 0; k < 3; ++k) {
        middle.model_xyz[k] = (start.model_xyz[k] + end.model_xyz[k]) * 0.5;
        squares += middle.model_xyz[k] * middle.model_xyz[k];
    }
    if (on_unit_sphere) {
        const double radius = std::sqrt(squares);
        for (double& coordinate : middle.model_xyz) {
            coordinate /= radius;
        }
    }
}

std::vector<Halves> cut_at_midpoints(TMOD3D& model, const std::vector<int>& edges,
                                     bool on_unit_sphere, NextRecords& next) {
    std::vector<Halves> halves(static_cast<std::size_t>(next.edge));
    for (const int e : edges) {
        LINE3D& edge = model.lines[e];
        set_midpoint(model.verts[next.vertex], model.verts[edge.start_vert],
                     model.verts[edge.end_vert], on_unit_sphere);
        halves[e] = {next.vertex, next.edge};
        model.lines[next.edge].set_line_point(next.vertex, edge.end_vert);
        edge.set_line_point(edge.start_vert, next.vertex);
        ++next.vertex;
        ++next.edge;
    }
    return halves;
}

int half_at(const TMOD3D& model, const std::vector<Halves>& halves, int edge, int vertex) {
    return model.lines[edge].start_vert == vertex ? edge : halves[edge].end_half;
}

void set_triangle(POLY3D& face, const int (&verts)[3], const int (&lines)[3]) {
    assign_range(face.verts, verts, 3);
    assign_range(face.lines, lines, 3);
}

/// Divides face f, whose edges have been cut: it becomes the part at its first vertex, and the
/// parts at the two others and in the middle get the numbers `parts`.
void divide_face(TMOD3D& model, int f, const std::vector<Halves>& halves, int* parts,
                 NextRecords& next) {
    int corner[3];
    int middle[3]; // of the side behind each corner
    int first_half[3];
    int second_half[3];
    for (int k = 0; k < 3; ++k) {
        const int e = model.polys[f].lines[k];
        corner[k] = model.polys[f].verts[k];
        middle[k] = halves[e].middle;
        first_half[k] = half_at(model, halves, e, corner[k]);
        second_half[k] = first_half[k] == e ? halves[e].end_half : e;
    }
    // Inner edge k joins the midpoints on both sides of corner k.
    int inner[3];
    for (int k = 0; k < 3; ++k) {
        inner[k] = next.edge++;
        model.lines[inner[k]].set_line_point(middle[k], middle[(k + 2) % 3]);
    }
    int part = f;
    for (int k = 0; k < 3; ++k) {
        const int before = (k + 2) % 3;
        set_triangle(model.polys[part], {corner[k], middle[k], middle[before]},
                     {first_half[k], inner[k], second_half[before]});
        part = next.face++;
        parts[k] = part;
    }
    set_triangle(model.polys[part], {middle[0], middle[1], middle[2]},
                 {inner[1], inner[2], inner[0]});
}

} // namespace
} // namespace korvel
