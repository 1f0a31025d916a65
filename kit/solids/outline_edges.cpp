#include "kit/solids/outline_edges.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "kit/base/points.h"
#include "kit/solids/exact.h"

namespace korvel::kit {
namespace {

bool is_outline(const TMOD3D& model, const LINE3D& edge, double flat_cosine);
bool is_outline_of(int body, const TMOD3D& model, const LINE3D& edge, double flat_cosine);
bool is_bent(const TMOD3D& model, const LINE3D& edge, int face, int other, double flat_cosine);
Point3 direction_into(const TMOD3D& model, const LINE3D& edge, int face);

} // namespace

std::vector<int> outline_edges(const TMOD3D& model, double angle) {
    const double flat_cosine = -std::cos(angle * std::numbers::pi / 180);
    std::vector<int> edges;
    for (int e = 0; e < model.lines.GetSize(); ++e) {
        if (is_outline(model, model.lines[e], flat_cosine)) {
            edges.push_back(e);
        }
    }
    return edges;
}

namespace {

bool is_outline(const TMOD3D& model, const LINE3D& edge, double flat_cosine) {
    const auto bodies_of = [&](int face) { return span_of(model.polys[edge.faces[face]].bodies); };
    if (edge.faces.GetSize() == 2 && std::ranges::equal(bodies_of(0), bodies_of(1))) {
        return edge.bodies.GetSize() > 0 &&
               is_bent(model, edge, edge.faces[0], edge.faces[1], flat_cosine);
    }
    return std::any_of(edge.bodies.begin(), edge.bodies.end(),
                       [&](int body) { return is_outline_of(body, model, edge, flat_cosine); });
}

bool is_outline_of(int body, const TMOD3D& model, const LINE3D& edge, double flat_cosine) {
    std::array<int, 2> sides = {};
    std::size_t found = 0;
    for (const int face : edge.faces) {
        const auto bodies = span_of(model.polys[face].bodies);
        if (std::ranges::binary_search(bodies, body)) {
            if (found == sides.size()) {
                return true;
            }
            sides[found++] = face;
        }
    }
    return found < sides.size() || is_bent(model, edge, sides[0], sides[1], flat_cosine);
}

// Independent of how the faces are turned: what neighbours share has the orientation of one of
// them. A face without area bends nothing.
bool is_bent(const TMOD3D& model, const LINE3D& edge, int face, int other, double flat_cosine) {
    const Point3 a = direction_into(model, edge, face);
    const Point3 b = direction_into(model, edge, other);
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2] > flat_cosine;
}

// The unit vector in a face that leads away from one of its edges at a right angle.
Point3 direction_into(const TMOD3D& model, const LINE3D& edge, int face) {
    const CArray<int>& corners = model.polys[face].verts;
    const auto* const apex = std::find_if(corners.begin(), corners.end(), [&](int corner) {
        return corner != edge.start_vert && corner != edge.end_vert;
    });
    const int last = apex != corners.end() ? *apex : edge.start_vert;
    const double* const start = model.verts[edge.start_vert].model_xyz;
    const double* const end = model.verts[edge.end_vert].model_xyz;
    const double* const at = model.verts[last].model_xyz;
    Point3 along;
    Point3 away;
    double squared_length = 0;
    double product = 0;
    for (std::size_t k = 0; k < 3; ++k) {
        along[k] = end[k] - start[k];
        away[k] = at[k] - start[k];
        squared_length += along[k] * along[k];
        product += along[k] * away[k];
    }
    for (std::size_t k = 0; k < 3; ++k) {
        away[k] -= product / squared_length * along[k];
    }
    const double distance = std::hypot(away[0], away[1], away[2]);
    return {away[0] / distance, away[1] / distance, away[2] / distance};
}

} // namespace
} // namespace korvel::kit
