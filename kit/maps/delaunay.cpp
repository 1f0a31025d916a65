#include "kit/maps/delaunay.h"

#include <geos_c.h>

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "kit/base/areas.h"

namespace korvel::kit {
namespace {

using GeosContext = std::unique_ptr<GEOSContextHandle_HS, void (*)(GEOSContextHandle_t)>;

struct Destroy {
    GEOSContextHandle_t context;
    void operator()(GEOSGeometry* geometry) const { GEOSGeom_destroy_r(context, geometry); }
};
using Geometry = std::unique_ptr<GEOSGeometry, Destroy>;

/// The point indices of a region by their coordinates.
using PointIndices = std::map<std::pair<double, double>, int>;

PointIndices indices_by_point(const PLYDT& set, const PLYDT::PyToRg& region);
Geometry polygon_of(GEOSContextHandle_t context, const PLYDT& set, const PLYDT::PyToRg& region);
GEOSGeometry* ring_of(GEOSContextHandle_t context, const PLYDT& set, const RING& ring);
bool take_triangle(GEOSContextHandle_t context, const GEOSGeometry* triangle,
                   const PointIndices& indices, PLYDT& set);
void turn_triangles(PLYDT& set, int first);

} // namespace

void add_delaunay_triangles(PLYDT& set, const PLYDT::PyToRg& region) {
    // Without message handlers GEOS prints nothing; a call that fails returns a null pointer.
    const GeosContext owner(GEOS_init_r(), GEOS_finish_r);
    GEOSContextHandle_t const context = owner.get();
    const Geometry polygon = polygon_of(context, set, region);
    const Geometry found(GEOSConstrainedDelaunayTriangulation_r(context, polygon.get()), {context});
    if (!found) {
        return;
    }
    const PointIndices indices = indices_by_point(set, region);
    const int first = set.trg_list.GetSize();
    const int triangles = GEOSGetNumGeometries_r(context, found.get());
    for (int i = 0; i < triangles; ++i) {
        if (!take_triangle(context, GEOSGetGeometryN_r(context, found.get(), i), indices, set)) {
            set.trg_list.SetSize(first);
            return;
        }
    }
    turn_triangles(set, first);
}

namespace {

PointIndices indices_by_point(const PLYDT& set, const PLYDT::PyToRg& region) {
    PointIndices indices;
    for (const int ring : region.rings) {
        for (const int point : set.ring_list[ring].pts) {
            indices.try_emplace({set.pt_list[point].x, set.pt_list[point].y}, point);
        }
    }
    return indices;
}

Geometry polygon_of(GEOSContextHandle_t context, const PLYDT& set, const PLYDT::PyToRg& region) {
    std::vector<GEOSGeometry*> rings;
    for (const int ring : region.rings) {
        rings.push_back(ring_of(context, set, set.ring_list[ring]));
    }
    return {GEOSGeom_createPolygon_r(context, rings.front(), rings.data() + 1,
                                     static_cast<unsigned>(rings.size() - 1)),
            {context}};
}

GEOSGeometry* ring_of(GEOSContextHandle_t context, const PLYDT& set, const RING& ring) {
    std::vector<double> coordinates;
    for (int k = 0; k <= ring.pts.GetSize(); ++k) {
        const VERT2D& point = set.pt_list[ring.pts[k % ring.pts.GetSize()]];
        coordinates.insert(coordinates.end(), {point.x, point.y});
    }
    GEOSCoordSequence* const sequence = GEOSCoordSeq_copyFromBuffer_r(
        context, coordinates.data(), static_cast<unsigned>(coordinates.size() / 2), 0, 0);
    GEOSGeometry* const closed =
        sequence == nullptr ? nullptr : GEOSGeom_createLinearRing_r(context, sequence);
    if (closed == nullptr) {
        throw std::bad_alloc();
    }
    return closed;
}

// GEOS returns coordinates unchanged, so that they identify the points exactly.
bool take_triangle(GEOSContextHandle_t context, const GEOSGeometry* triangle,
                   const PointIndices& indices, PLYDT& set) {
    const GEOSCoordSequence* const corners =
        GEOSGeom_getCoordSeq_r(context, GEOSGetExteriorRing_r(context, triangle));
    std::array<int, 3> points = {};
    for (unsigned k = 0; k < 3; ++k) {
        double x = 0;
        double y = 0;
        GEOSCoordSeq_getXY_r(context, corners, k, &x, &y);
        const auto found = indices.find({x, y});
        if (found == indices.end()) {
            return false;
        }
        points[k] = found->second;
    }
    PLYDT::TRG taken;
    taken.va = points[0];
    taken.vb = points[1];
    taken.vc = points[2];
    set.trg_list.Add(taken);
    return true;
}

// GEOS turns its triangles alike; they shall turn as rings of positive area do.
void turn_triangles(PLYDT& set, int first) {
    double area = 0;
    for (int i = first; i < set.trg_list.GetSize(); ++i) {
        const PLYDT::TRG& t = set.trg_list[i];
        area += twice_area<double>(set.pt_list[t.va], set.pt_list[t.vb], set.pt_list[t.vc]);
    }
    for (int i = first; area < 0 && i < set.trg_list.GetSize(); ++i) {
        std::swap(set.trg_list[i].vb, set.trg_list[i].vc);
    }
}

} // namespace
} // namespace korvel::kit
