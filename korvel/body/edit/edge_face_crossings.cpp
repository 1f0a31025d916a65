// Whether a gathered edge passes through a face.

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>
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
    void copy_points();
    void include_far_ends(const std::vector<int>& edges);
    void include_magnitudes(const double* point);
    void box_edges(const std::vector<int>& edges);
    void find_faces_in_reach();
    bool is_boxable(const POLY3D& face) const;
    bool is_beside_reach(const POLY3D& face) const;
    bool box_edge(const LINE3D& edge, Box3& box) const;
    Box3 box_of(const POLY3D& face) const;
    Box3 corner_box(const POLY3D& face) const;
    double twice_area(const POLY3D& face) const;
    void box_along(int axis, const double* plane, Box3& box) const;
    double slack() const;
    double turn_error() const;

    TMOD3D& model_;
    std::vector<std::array<double, 3>> points_; ///< of the vertices; not a number for unsound ones
    double largest_ = 0;                   ///< largest magnitude of a coordinate that takes part
    Box3 reach_;                           ///< around the boxes of all edges that have one
    std::optional<korvel::BoxTree> edges_; ///< those boxes, if they are few
    std::vector<int> boxed_;   ///< faces whose box meets one of an edge, or the reach, ascending
    std::vector<Box3> boxes_;  ///< theirs, which a tree takes over
    std::vector<int> unboxed_; ///< faces without a box, ascending
    std::optional<korvel::BoxTree> tree_;
    std::vector<int> last_edge_; ///< by face: the last edge with an end on it
};

std::vector<int> gathered_edges(const TMOD3D& model);
bool all_finite(const double* point);
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
    // Fewer edges are compared with each box in less time than the tree takes to build.
    constexpr std::size_t worth_a_tree = 32;
    copy_points();
    include_far_ends(edges);
    box_edges(edges);
    find_faces_in_reach();
    if (edges.size() >= worth_a_tree) {
        tree_.emplace(std::move(boxes_));
    }
}

bool all_finite(const double* point) {
    return std::all_of(point, point + 3, [](double x) { return std::isfinite(x); });
}

/// Copies the vertices' coordinates, which lie far apart in their records, and finds the largest
/// magnitude.
void CrossingFinder::copy_points() {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    points_.reserve(static_cast<std::size_t>(model_.verts.GetSize()));
    for (const VERT3D& vertex : model_.verts) {
        const double* const at = vertex.model_xyz;
        points_.push_back(all_finite(at) ? std::array{at[0], at[1], at[2]}
                                         : std::array{nan, nan, nan});
        include_magnitudes(at);
    }
}

void CrossingFinder::include_far_ends(const std::vector<int>& edges) {
    for (const int e : edges) {
        const LINE3D& edge = model_.lines[e];
        if (has_element(model_.verts, edge.start_vert)) {
            double end[3];
            for (int k = 0; k < 3; ++k) {
                end[k] =
                    model_.verts[edge.start_vert].model_xyz[k] + edge.length * edge.direction[k];
            }
            include_magnitudes(end);
        }
    }
}

void CrossingFinder::include_magnitudes(const double* point) {
    for (int k = 0; k < 3; ++k) {
        if (std::isfinite(point[k])) { // no box is made from other values
            largest_ = std::max(largest_, std::fabs(point[k]));
        }
    }
}

void CrossingFinder::box_edges(const std::vector<int>& edges) {
    // Of more edges the tree excludes fewer faces than it takes time for.
    constexpr std::size_t faces_to_an_edge = 64;
    std::vector<Box3> boxes;
    Box3 box;
    for (const int e : edges) {
        if (box_edge(model_.lines[e], box)) {
            reach_.include(box);
            boxes.push_back(box);
        }
    }
    if (boxes.size() * faces_to_an_edge < static_cast<std::size_t>(model_.polys.GetSize())) {
        edges_.emplace(std::move(boxes));
    }
}

void CrossingFinder::find_faces_in_reach() {
    for (int f = 0; f < model_.polys.GetSize(); ++f) {
        const POLY3D& face = model_.polys[f];
        if (!is_boxable(face)) {
            unboxed_.push_back(f);
        } else if (!is_beside_reach(face)) {
            const Box3 box = box_of(face);
            if (box.meets(reach_) && (!edges_ || edges_->has_meeting(box))) {
                boxed_.push_back(f);
                boxes_.push_back(box);
            }
        }
    }
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
    if (!box_edge(line, box)) {
        for (int f = 0; f < model_.polys.GetSize() && first < 0; ++f) {
            test(f);
        }
        return first;
    }
    if (tree_) {
        tree_->for_each_meeting(box, [&](int i) { test(boxed_[i]); });
    } else {
        for (std::size_t i = 0; i < boxes_.size() && first < 0; ++i) {
            if (boxes_[i].meets(box)) {
                test(boxed_[i]);
            }
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

/// More than the rounding error of a turn of a point about a side.
double CrossingFinder::turn_error() const {
    return 64 * rounding * largest_ * largest_;
}

/// Whether a plane's equation has about unit length, a bounded offset, and its main axis as stored.
bool is_sound(const double* plane, int axis) {
    constexpr double greatest_offset = 1e60;
    return std::all_of(plane, plane + 3, [](double n) { return std::fabs(n) <= 2; }) &&
           std::fabs(plane[3]) <= greatest_offset && std::fabs(plane[axis]) >= 0.5;
}

/// Whether a box bounds every point that the full test can find in a face. Not for polygons other
/// than triangles, triangles with too little area seen along the main axis, or with coordinates or
/// equations that are not finite.
///
/// Seen along the main axis, the exact turns of a point about the three sides are its barycentric
/// coordinates times twice the area. Let e be more than the rounding error of a turn. A point whose
/// turns are all above −2e lies outside the triangle's bounds by less than 6e / area of their
/// width. Farther out, the computed sign of one turn is therefore certainly negative, while that of
/// the largest turn, at least a third of the area, is certainly positive: the test returns false.
/// In the direction of the main axis the point lies on the plane.
bool CrossingFinder::is_boxable(const POLY3D& face) const {
    // Beyond these, products of rounding errors underflow or overflow.
    constexpr double smallest = 1e-50;
    constexpr double greatest = 1e50;
    return largest_ > smallest && largest_ < greatest && face.main_axis >= 0 &&
           face.main_axis <= 2 && face.verts.GetSize() == 3 &&
           korvel::has_elements(model_.verts, face.verts) && is_sound(face.plane, face.main_axis) &&
           twice_area(face) > 100 * turn_error();
}

/// Whether a face has no part in the reach, as far as its corners show beside the main axis: most
/// faces are excluded before their box is known. The margin is more than that of any box.
bool CrossingFinder::is_beside_reach(const POLY3D& face) const {
    const Box3 corners = corner_box(face);
    const auto is_beside = [&](int k) {
        const double margin = 0.08 * (corners.high[k] - corners.low[k]) + 2 * slack();
        return corners.low[k] - margin > reach_.high[k] || corners.high[k] + margin < reach_.low[k];
    };
    return is_beside((face.main_axis + 1) % 3) || is_beside((face.main_axis + 2) % 3);
}

Box3 CrossingFinder::box_of(const POLY3D& face) const {
    const int axis = face.main_axis;
    Box3 box = corner_box(face);
    const double area = twice_area(face);
    for (const int k : {(axis + 1) % 3, (axis + 2) % 3}) {
        const double margin = 7 * turn_error() / area * (box.high[k] - box.low[k]) + slack();
        box.low[k] -= margin;
        box.high[k] += margin;
    }
    box_along(axis, face.plane, box);
    return box;
}

Box3 CrossingFinder::corner_box(const POLY3D& face) const {
    Box3 box;
    for (const int v : face.verts) {
        box.include(points_[v].data());
    }
    return box;
}

/// Twice the area of a triangle's projection along its main axis; not a number where a corner is
/// not finite.
double CrossingFinder::twice_area(const POLY3D& face) const {
    const int i = (face.main_axis + 1) % 3;
    const int j = (face.main_axis + 2) % 3;
    const std::array<double, 3>& a = points_[face.verts[0]];
    const std::array<double, 3>& b = points_[face.verts[1]];
    const std::array<double, 3>& c = points_[face.verts[2]];
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
