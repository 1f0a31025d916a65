// Whether a gathered edge passes through a face.

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "korvel/base/indices.h"
#include "korvel/body/tmod3d.h"
#include "korvel/geometry/box_tree.h"
#include "korvel/geometry/marks.h"
#include "korvel/platform/check_point.h"

using korvel::Box3;
using korvel::has_element;

namespace {

/// Finds the first face that an edge crosses. For most faces the comparison of two boxes replaces
/// the full test: where the boxes do not meet, the full test is proven to return false, rounding
/// included. Faces and edges without such a proof are tested in full.
class CrossingFinder {
public:
    CrossingFinder(TMOD3D& model, const std::vector<int>& edges);

    /// The first face that the edge crosses, except those at its ends, or −1.
    int first_crossed(int edge);

private:
    double largest_coordinate(const std::vector<int>& edges) const;
    bool box_edge(const LINE3D& edge, Box3& box) const;
    bool box_face(const POLY3D& face, Box3& box) const;
    bool box_corners(const POLY3D& face, Box3& box) const;
    double twice_area(const POLY3D& face, int i, int j) const;
    void box_along(int axis, const double* plane, Box3& box) const;
    double slack() const;

    TMOD3D& model_;
    double largest_ = 0; ///< largest magnitude of a coordinate that takes part
    bool uses_boxes_ = false;
    std::vector<int> boxed_;   ///< faces in the tree, ascending
    std::vector<int> unboxed_; ///< the other faces, ascending
    korvel::BoxTree tree_{{}};
    std::vector<int> last_edge_; ///< by face: the last edge with an end on it
};

std::vector<int> gathered_edges(const TMOD3D& model);
void mark_faces(TMOD3D& model, int edge, int crossed);

} // namespace

bool TMOD3D::legal_body_rel_side() {
    const std::vector<int> edges = gathered_edges(*this);
    if (edges.empty()) {
        return true;
    }
    CrossingFinder finder(*this, edges);
    long long tested = 0;
    for (const int e : edges) {
        const int crossed = finder.first_crossed(e);
        if (crossed >= 0) {
            mark_faces(*this, e, crossed);
            return false;
        }
        korvel::check_point_after(tested++, static_cast<long long>(edges.size()), 8,
                                  "testing edges");
    }
    mark_faces(*this, edges.back(), polys.GetSize());
    return true;
}

namespace {

std::vector<int> gathered_edges(const TMOD3D& model) {
    std::vector<int> edges;
    std::copy_if(begin(model.relat_list_3), end(model.relat_list_3), std::back_inserter(edges),
                 [&](int e) { return has_element(model.lines, e); });
    return edges;
}

/// Calls `visit` for each face that contains an end of the edge.
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
    // Fewer edges are tested in less time than the tree takes to build.
    constexpr std::size_t worth_a_tree = 32;
    // Beyond these, products of rounding errors underflow or overflow.
    constexpr double smallest = 1e-50;
    constexpr double greatest = 1e50;
    if (edges.size() >= worth_a_tree) {
        largest_ = largest_coordinate(edges);
        uses_boxes_ = largest_ > smallest && largest_ < greatest;
    }
    std::vector<Box3> boxes;
    for (int f = 0; f < model.polys.GetSize(); ++f) {
        Box3 box;
        if (uses_boxes_ && box_face(model.polys[f], box)) {
            boxed_.push_back(f);
            boxes.push_back(box);
        } else {
            unboxed_.push_back(f);
        }
    }
    tree_ = korvel::BoxTree(std::move(boxes));
}

/// The largest magnitude of a coordinate of all vertices and of the gathered edges' far ends.
double CrossingFinder::largest_coordinate(const std::vector<int>& edges) const {
    double largest = 0;
    const auto include = [&](double x) {
        if (std::isfinite(x)) { // no box is made from other values
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
    Box3 box;
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

/// More than the relative rounding error of a sum or a product, 2⁻⁵³ ≈ 1.1e-16.
constexpr double rounding = 2.3e-16;

/// More than the rounding error of a point that is computed from an edge or a plane.
double CrossingFinder::slack() const {
    return 16 * rounding * largest_;
}

/// A box around every point in which the full test can find the edge to meet a plane. False for an
/// edge with values that are not finite, or a direction that is far from unit length.
bool CrossingFinder::box_edge(const LINE3D& edge, Box3& box) const {
    if (!has_element(model_.verts, edge.start_vert) || !std::isfinite(edge.length)) {
        return false;
    }
    const double* const start = model_.verts[edge.start_vert].model_xyz;
    for (int k = 0; k < 3; ++k) {
        if (!std::isfinite(start[k]) || !(std::fabs(edge.direction[k]) <= 2)) {
            return false;
        }
        const double end = start[k] + edge.length * edge.direction[k];
        if (!std::isfinite(end)) {
            return false;
        }
        box.low[k] = std::min(start[k], end) - slack();
        box.high[k] = std::max(start[k], end) + slack();
    }
    return true;
}

bool all_finite(const double* point) {
    return std::all_of(point, point + 3, [](double x) { return std::isfinite(x); });
}

/// Whether a plane's equation has about unit length, a bounded offset, and its main axis as stored.
bool is_sound(const double* plane, int axis) {
    constexpr double greatest_offset = 1e60;
    return std::all_of(plane, plane + 3, [](double n) { return std::fabs(n) <= 2; }) &&
           std::fabs(plane[3]) <= greatest_offset && std::fabs(plane[axis]) >= 0.5;
}

/// A box around every point that the full test can find in a triangle. False for faces where this
/// is no bound: other polygons, triangles with too little area seen along the main axis, or with
/// equations that are not finite.
///
/// Seen along the main axis, the exact turns of a point about the three sides are its barycentric
/// coordinates times twice the area. Let e be more than the rounding error of a turn. A point whose
/// turns are all above −2e lies outside the triangle's bounds by less than 6e / area of their
/// width. Farther out, the computed sign of one turn is therefore certainly negative, while that of
/// the largest turn, at least a third of the area, is certainly positive: the test returns false.
/// In the direction of the main axis the point lies on the plane.
bool CrossingFinder::box_face(const POLY3D& face, Box3& box) const {
    const int axis = face.main_axis;
    if (axis < 0 || axis > 2 || !box_corners(face, box) || !is_sound(face.plane, axis)) {
        return false;
    }
    const int i = (axis + 1) % 3;
    const int j = (axis + 2) % 3;
    const double area = twice_area(face, i, j);
    const double turn_error = 64 * rounding * largest_ * largest_;
    if (!(area > 100 * turn_error)) {
        return false;
    }
    for (const int k : {i, j}) {
        const double margin = 7 * turn_error / area * (box.high[k] - box.low[k]) + slack();
        box.low[k] -= margin;
        box.high[k] += margin;
    }
    box_along(axis, face.plane, box);
    return true;
}

/// The bounds of a triangle's corners; false when there are not three that exist and are finite.
bool CrossingFinder::box_corners(const POLY3D& face, Box3& box) const {
    if (face.verts.GetSize() != 3) {
        return false;
    }
    for (const int v : face.verts) {
        if (!has_element(model_.verts, v) || !all_finite(model_.verts[v].model_xyz)) {
            return false;
        }
        box.include(model_.verts[v].model_xyz);
    }
    return true;
}

/// Twice the area of a triangle's projection onto the axes i and j.
double CrossingFinder::twice_area(const POLY3D& face, int i, int j) const {
    const double* const a = model_.verts[face.verts[0]].model_xyz;
    const double* const b = model_.verts[face.verts[1]].model_xyz;
    const double* const c = model_.verts[face.verts[2]].model_xyz;
    return std::fabs((b[i] - a[i]) * (c[j] - a[j]) - (b[j] - a[j]) * (c[i] - a[i]));
}

/// Bounds the box along an axis by the plane over the corners of its extent in the other two.
void CrossingFinder::box_along(int axis, const double* plane, Box3& box) const {
    const int i = (axis + 1) % 3;
    const int j = (axis + 2) % 3;
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
}

/// Leaves the marks of a test edge by edge and face by face that ends at `edge` and the face
/// `crossed`: on the faces at the edge's ends and on those before `crossed`.
void mark_faces(TMOD3D& model, int edge, int crossed) {
    for (int f = 0; f < model.polys.GetSize(); ++f) {
        int& flags = model.polys[f].state_flags;
        flags = f < crossed ? flags | korvel::face_mark::seen : flags & ~korvel::face_mark::seen;
    }
    for_each_face_at_ends(model, model.lines[edge],
                          [&](int f) { model.polys[f].state_flags |= korvel::face_mark::seen; });
}

} // namespace
