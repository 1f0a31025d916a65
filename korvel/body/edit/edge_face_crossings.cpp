// Whether a gathered edge passes through a face.

#include <algorithm>
#include <cmath>
#include <vector>

#include "korvel/base/indices.h"
#include "korvel/body/tmod3d.h"
#include "korvel/geometry/box_tree.h"

using korvel::Box;
using korvel::has_element;

namespace {

constexpr int seen_face = 32;

/// Finds the first face that an edge crosses. Boxes tell most faces off; what the exact test
/// answers for a face whose box the edge does not meet is proven to be no, rounding included, and
/// faces and edges for which it is not are tested in full.
class CrossingFinder {
public:
    CrossingFinder(TMOD3D& model, const std::vector<int>& edges);

    /// The first face that the edge crosses, those at its ends left out, or −1.
    int first_crossed(int edge);

private:
    double largest_coordinate(const std::vector<int>& edges) const;
    bool box_edge(const LINE3D& edge, Box& box) const;
    bool box_face(const POLY3D& face, Box& box) const;

    TMOD3D& model_;
    double largest_ = 0; ///< magnitude of all coordinates that take part
    bool uses_boxes_ = false;
    std::vector<int> boxed_;   ///< faces in the tree, ascending
    std::vector<int> unboxed_; ///< the others, ascending
    korvel::BoxTree tree_{{}};
    std::vector<int> last_edge_; ///< by face: the last edge with an end on it
};

void mark_faces(TMOD3D& model, int edge, int crossed);

} // namespace

bool TMOD3D::legal_body_rel_side() {
    std::vector<int> edges;
    for (const int e : relat_list_3) {
        if (has_element(lines, e)) {
            edges.push_back(e);
        }
    }
    if (edges.empty()) {
        return true;
    }
    CrossingFinder finder(*this, edges);
    for (const int e : edges) {
        const int crossed = finder.first_crossed(e);
        if (crossed >= 0) {
            mark_faces(*this, e, crossed);
            return false;
        }
    }
    mark_faces(*this, edges.back(), polys.GetSize());
    return true;
}

namespace {

/// Calls `visit` for each face that stands at an end of the edge.
template <class Visit>
void for_each_face_at_ends(const TMOD3D& model, const LINE3D& edge, Visit visit) {
    for (const int v : {edge.start_vert, edge.end_vert}) {
        if (has_element(model.verts, v)) {
            for (const int f : model.verts[v].faces) {
                if (has_element(model.polys, f)) {
                    visit(f);
                }
            }
        }
    }
}

CrossingFinder::CrossingFinder(TMOD3D& model, const std::vector<int>& edges)
    : model_(model), last_edge_(static_cast<std::size_t>(model.polys.GetSize()), -1) {
    constexpr std::size_t worth_a_tree =
        32;                            // edges; fewer are tested in the time it takes to build
    constexpr double smallest = 1e-50; // beyond which products of rounding errors get lost
    constexpr double greatest = 1e50;
    if (edges.size() >= worth_a_tree) {
        largest_ = largest_coordinate(edges);
        uses_boxes_ = largest_ > smallest && largest_ < greatest;
    }
    std::vector<Box> boxes;
    for (int f = 0; f < model.polys.GetSize(); ++f) {
        Box box;
        if (uses_boxes_ && box_face(model.polys[f], box)) {
            boxed_.push_back(f);
            boxes.push_back(box);
        } else {
            unboxed_.push_back(f);
        }
    }
    tree_ = korvel::BoxTree(std::move(boxes));
}

/// Of all vertices and of the gathered edges' far ends.
double CrossingFinder::largest_coordinate(const std::vector<int>& edges) const {
    double largest = 0;
    const auto include = [&](double x) {
        if (std::isfinite(x)) { // what is not finite is never boxed
            largest = std::max(largest, std::fabs(x));
        }
    };
    for (const VERT3D& vertex : model_.verts) {
        std::for_each_n(vertex.model_xyz, 3, include);
    }
    for (const int e : edges) {
        const LINE3D& edge = model_.lines[e];
        if (has_element(model_.verts, edge.start_vert)) {
            for (int k = 0; k < 3; ++k) {
                include(model_.verts[edge.start_vert].model_xyz[k] +
                        edge.length * edge.direction[k]);
            }
        }
    }
    return largest;
}

int CrossingFinder::first_crossed(int edge) {
    LINE3D& line = model_.lines[edge];
    for_each_face_at_ends(model_, line, [&](int f) { last_edge_[f] = edge; });
    int first = -1;
    const auto test = [&](int f) {
        if ((first < 0 || f < first) && last_edge_[f] != edge &&
            line.detect_line_cross_poly(model_.polys[f], model_.verts)) {
            first = f;
        }
    };
    Box box;
    if (boxed_.empty() || box_edge(line, box)) {
        tree_.for_each_meeting(box, [&](int i) { test(boxed_[i]); });
    } else {
        for (const int f : boxed_) {
            test(f);
        }
    }
    for (const int f : unboxed_) {
        if (first >= 0 && f > first) {
            break;
        }
        test(f);
    }
    return first;
}

/// What is more than the rounding of a sum or a product.
constexpr double rounding = 2.3e-16;

/// A box around every point at which the test can find the edge to meet a plane. False for an edge
/// with values that are not finite, and for one that is not as a unit direction makes it.
bool CrossingFinder::box_edge(const LINE3D& edge, Box& box) const {
    if (!has_element(model_.verts, edge.start_vert) || !std::isfinite(edge.length)) {
        return false;
    }
    const double slack = 16 * rounding * largest_;
    const double* const start = model_.verts[edge.start_vert].model_xyz;
    for (int k = 0; k < 3; ++k) {
        if (!std::isfinite(start[k]) || !(std::fabs(edge.direction[k]) <= 2)) {
            return false;
        }
        const double end = start[k] + edge.length * edge.direction[k];
        if (!std::isfinite(end)) {
            return false;
        }
        box.low[k] = std::min(start[k], end) - slack;
        box.high[k] = std::max(start[k], end) + slack;
    }
    return true;
}

/// A box around every point that the test can find in a triangle. Across the main axis the exact
/// turns of a point are its barycentric coordinates times twice the area. If each were above −2e, e
/// being more than the rounding of a turn, the point would stand out of the triangle's bounds by
/// less than 6e / area of their width; so farther out one turn comes out wrong for sure, while the
/// largest, at least a third of the area, comes out right. Along the main axis the point lies on
/// the plane. False for faces where this is no bound: those that are no triangles, with too little
/// area seen along the main axis, or with equations that are not finite.
bool CrossingFinder::box_face(const POLY3D& face, Box& box) const {
    const int axis = face.main_axis;
    if (face.verts.GetSize() != 3 || axis < 0 || axis > 2) {
        return false;
    }
    for (const int v : face.verts) {
        if (!has_element(model_.verts, v) ||
            !std::all_of(model_.verts[v].model_xyz, model_.verts[v].model_xyz + 3,
                         [](double x) { return std::isfinite(x); })) {
            return false;
        }
        box.include(model_.verts[v].model_xyz);
    }
    constexpr double greatest_offset = 1e60;
    const double* const plane = face.plane;
    if (!std::all_of(plane, plane + 3, [](double n) { return std::fabs(n) <= 2; }) ||
        !(std::fabs(plane[3]) <= greatest_offset) || !(std::fabs(plane[axis]) >= 0.5)) {
        return false;
    }
    const int i = (axis + 1) % 3;
    const int j = (axis + 2) % 3;
    const double* const a = model_.verts[face.verts[0]].model_xyz;
    const double* const b = model_.verts[face.verts[1]].model_xyz;
    const double* const c = model_.verts[face.verts[2]].model_xyz;
    const double area = std::fabs((b[i] - a[i]) * (c[j] - a[j]) - (b[j] - a[j]) * (c[i] - a[i]));
    const double turn_error = 64 * rounding * largest_ * largest_;
    if (!(area > 100 * turn_error)) {
        return false;
    }
    const double slack = 16 * rounding * largest_;
    for (const int k : {i, j}) {
        const double margin = 7 * turn_error / area * (box.high[k] - box.low[k]) + slack;
        box.low[k] -= margin;
        box.high[k] += margin;
    }
    box.low[axis] = std::numeric_limits<double>::infinity();
    box.high[axis] = -box.low[axis];
    for (const double x : {box.low[i], box.high[i]}) {
        for (const double y : {box.low[j], box.high[j]}) {
            const double on_plane = -(plane[3] + plane[i] * x + plane[j] * y) / plane[axis];
            box.low[axis] = std::min(box.low[axis], on_plane);
            box.high[axis] = std::max(box.high[axis], on_plane);
        }
    }
    const double plane_error =
        256 * rounding * (largest_ + std::fabs(plane[3])) / std::fabs(plane[axis]);
    box.low[axis] -= plane_error;
    box.high[axis] += plane_error;
    return true;
}

/// The marks that testing face by face leaves: the faces at the last edge's ends have them, and
/// those before the one that it crosses.
void mark_faces(TMOD3D& model, int edge, int crossed) {
    for (int f = 0; f < model.polys.GetSize(); ++f) {
        int& flags = model.polys[f].state_flags;
        flags = f < crossed ? flags | seen_face : flags & ~seen_face;
    }
    for_each_face_at_ends(model, model.lines[edge],
                          [&](int f) { model.polys[f].state_flags |= seen_face; });
}

} // namespace
