#include <list>
#include <numeric>
#include <vector>

#include <CGAL/Constrained_Delaunay_triangulation_2.h>
#include <CGAL/Constrained_triangulation_face_base_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/Triangulation_data_structure_2.h>
#include <CGAL/Triangulation_face_base_with_info_2.h>

#include "bench/compare/peers.h"

namespace korvel::bench {
namespace {

/// The number of rings between a triangle and the outside.
struct Depth {
    int rings = -1;
};

using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
using VertexBase = CGAL::Triangulation_vertex_base_2<Kernel>;
using FaceBase = CGAL::Constrained_triangulation_face_base_2<
    Kernel, CGAL::Triangulation_face_base_with_info_2<Depth, Kernel>>;
using Triangulation = CGAL::Constrained_Delaunay_triangulation_2<
    Kernel, CGAL::Triangulation_data_structure_2<VertexBase, FaceBase>,
    CGAL::No_constraint_intersection_requiring_constructions_tag>;

/// The points of a region's rings and its sides as pairs of them.
struct Outline {
    std::vector<Kernel::Point_2> points;
    std::vector<std::pair<std::size_t, std::size_t>> sides;
};

Outline outline_of(const PLYDT& set, const PLYDT::PyToRg& region);
double inner_area(Triangulation& triangulation);

} // namespace

Run triangulate_with_cgal(const PLYDT& set) {
    Run run;
    for (const PLYDT::PyToRg& region : set.region_list) {
        const Outline outline = outline_of(set, region);
        Triangulation triangulation;
        run.seconds += seconds_of([&] {
            triangulation.insert_constraints(outline.points.begin(), outline.points.end(),
                                             outline.sides.begin(), outline.sides.end());
        });
        run.found += inner_area(triangulation);
    }
    return run;
}

namespace {

Outline outline_of(const PLYDT& set, const PLYDT::PyToRg& region) {
    Outline outline;
    for (const int r : region.rings) {
        const RING& ring = set.ring_list[r];
        const std::size_t first = outline.points.size();
        for (const int p : ring.pts) {
            outline.points.emplace_back(set.pt_list[p].x, set.pt_list[p].y);
        }
        for (std::size_t k = first; k < outline.points.size(); ++k) {
            outline.sides.emplace_back(k, k + 1 < outline.points.size() ? k + 1 : first);
        }
    }
    return outline;
}

double inner_area(Triangulation& triangulation) {
    std::list<Triangulation::Face_handle> open = {triangulation.infinite_face()};
    open.front()->info().rings = 0;
    double area = 0;
    while (!open.empty()) {
        const Triangulation::Face_handle face = open.front();
        open.pop_front();
        const int depth = face->info().rings;
        if (depth % 2 == 1) {
            area += triangulation.triangle(face).area();
        }
        for (int side = 0; side < 3; ++side) {
            const Triangulation::Face_handle next = face->neighbor(side);
            if (next->info().rings < 0) {
                const bool is_ring = face->is_constrained(side);
                next->info().rings = depth + (is_ring ? 1 : 0);
                // Triangles of the same depth come first.
                is_ring ? open.push_back(next) : open.push_front(next);
            }
        }
    }
    return area;
}

} // namespace
} // namespace korvel::bench
