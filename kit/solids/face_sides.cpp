#include "kit/solids/face_sides.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "kit/base/points.h"
#include "kit/base/vectors.h"

namespace korvel::kit {
namespace {

Point3 normal_of(const TMOD3D& model, const CArray<int>& corners);

} // namespace

std::vector<FaceSide> sides_of(const TMOD3D& model, int body) {
    const CArray<int>& listed = model.bodies[body].polys;
    std::vector<FaceSide> sides;
    sides.reserve(3 * static_cast<std::size_t>(listed.GetSize()));
    for (int position = 0; position < listed.GetSize(); ++position) {
        if (!is_face(model, listed[position])) {
            continue;
        }
        const CArray<int>& corners = model.polys[listed[position]].verts;
        for (int k = 0; k < corners.GetSize(); ++k) {
            const int from = corners[k];
            const int to = corners[(k + 1) % corners.GetSize()];
            if (from != to) {
                sides.push_back({std::min(from, to), std::max(from, to), position, from < to});
            }
        }
    }
    sort_by_edge(sides);
    return sides;
}

bool is_face(const TMOD3D& model, int face) {
    if (face < 0 || face >= model.polys.GetSize()) {
        return false;
    }
    const CArray<int>& corners = model.polys[face].verts;
    return std::all_of(corners.begin(), corners.end(),
                       [&](int v) { return v >= 0 && v < model.verts.GetSize(); });
}

void sort_around_edge(std::span<FaceSide> sides, const TMOD3D& model, int body) {
    const Point3 low = to_point(model.verts[sides[0].low].model_xyz);
    const Point3 along = apart(low, to_point(model.verts[sides[0].high].model_xyz));
    const double length = std::sqrt(dot(along, along));
    // Into the face from the edge, of no particular length.
    const auto inward = [&](const FaceSide& side) {
        const int face = model.bodies[body].polys[side.position];
        const Point3 into = cross(normal_of(model, model.polys[face].verts), along);
        return side.ascends ? into : Point3{-into[0], -into[1], -into[2]};
    };
    const Point3 first = inward(sides[0]);
    const Point3 across = cross(along, first);
    std::vector<std::pair<double, FaceSide>> angles;
    for (const FaceSide& side : sides) {
        const Point3 into = inward(side);
        const double angle = std::atan2(dot(across, into), length * dot(first, into));
        angles.emplace_back(angle, side);
    }
    std::stable_sort(angles.begin(), angles.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    for (std::size_t i = 0; i < sides.size(); ++i) {
        sides[i] = angles[i].second;
    }
}

namespace {

// The sum of the products of successive corners, seen from the first one.
Point3 normal_of(const TMOD3D& model, const CArray<int>& corners) {
    const auto at = [&](int k) { return to_point(model.verts[corners[k]].model_xyz); };
    Point3 sum = {};
    for (int k = 1; k + 1 < corners.GetSize(); ++k) {
        const Point3 part = cross(apart(at(0), at(k)), apart(at(0), at(k + 1)));
        for (std::size_t i = 0; i < 3; ++i) {
            sum[i] += part[i];
        }
    }
    return sum;
}

} // namespace
} // namespace korvel::kit
