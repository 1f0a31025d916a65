#include "kit/solids/file_features.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>

#include "kit/base/error.h"
#include "kit/maps/map_features.h"
#include "kit/solids/plane.h"

namespace korvel::kit {
namespace {

Features features_of_set(const TriangleSet& set);
Features features_of_section(const TMOD2D& section);
Plane plane_of(const TMOD2D& section);

} // namespace

Features features_of(const AnyFile& file) {
    switch (file.kind) {
    case FileKind::curves:
        return features_of(std::get<Network>(file.contents));
    case FileKind::regions:
        return features_of(std::get<Map>(file.contents));
    case FileKind::triangles:
        return features_of_set(std::get<TriangleSet>(file.contents));
    case FileKind::section:
    case FileKind::written_section:
        return features_of_section(std::get<TMOD2D>(file.contents));
    case FileKind::model:
        break;
    }
    throw input_error("a body model file is no map; 'korvel section' cuts it");
}

namespace {

Features features_of_set(const TriangleSet& set) {
    Features features;
    features.name = "triangles";
    features.is_tin = true;
    features.fields = {{"number", Field::Type::integer}};
    const PLYDT& triangles = set.triangles;
    for (int i = 0; i < triangles.trg_list.GetSize(); ++i) {
        const PLYDT::TRG& triangle = triangles.trg_list[i];
        for (const int corner : {triangle.va, triangle.vb, triangle.vc, triangle.va}) {
            features.points.push_back({triangles.pt_list[corner].x, triangles.pt_list[corner].y});
        }
        features.paths.push_back({features.points.size()});
        features.features.push_back({Shape::polygons, features.paths.size(), {std::int64_t{i}}});
    }
    return features;
}

Features features_of_section(const TMOD2D& section) {
    Features features;
    features.name = "section";
    features.fields = {{"group", Field::Type::integer}};
    const PlaneAxes axes(plane_of(section));
    const auto add_corner = [&](int vertex) {
        features.points.push_back(axes.seen(to_point(section.verts[vertex].model_xyz)));
    };
    for (int group = 0; group < section.groups.GetSize(); ++group) {
        for (const int face : section.groups[group].polys) {
            const CArray<int>& corners = section.polys[face].verts;
            if (corners.GetSize() < 3) {
                continue;
            }
            for (const int corner : corners) {
                add_corner(corner);
            }
            add_corner(corners[0]);
            features.paths.push_back({features.points.size()});
        }
        features.features.push_back(
            {Shape::polygons, features.paths.size(), {std::int64_t{group}}});
    }
    return features;
}

// By the vector areas of its faces (Newell's formula); z = 0 for a section without area.
Plane plane_of(const TMOD2D& section) {
    Plane plane = Plane::at_z(0);
    double largest = 0;
    for (const POLY3D& face : section.polys) {
        Point3 normal = {};
        for (int k = 0; k < face.verts.GetSize(); ++k) {
            const int next = k + 1 < face.verts.GetSize() ? k + 1 : 0;
            const Point3 a = to_point(section.verts[face.verts[k]].model_xyz);
            const Point3 b = to_point(section.verts[face.verts[next]].model_xyz);
            for (std::size_t axis = 0; axis < 3; ++axis) {
                const std::size_t u = (axis + 1) % 3;
                const std::size_t v = (axis + 2) % 3;
                normal[axis] += (a[u] - b[u]) * (a[v] + b[v]);
            }
        }
        const double size = std::hypot(normal[0], normal[1], normal[2]);
        if (size > largest) {
            largest = size;
            plane.a = normal[0] / size;
            plane.b = normal[1] / size;
            plane.c = normal[2] / size;
        }
    }
    return plane;
}

} // namespace
} // namespace korvel::kit
