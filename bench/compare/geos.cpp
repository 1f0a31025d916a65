#include <stdexcept>
#include <vector>

#include <geos_c.h>

#include "bench/compare/peers.h"

namespace korvel::bench {
namespace {

struct Geometry {
    explicit Geometry(GEOSGeometry* made) : handle(made) {
        if (handle == nullptr) {
            throw std::runtime_error("GEOS failed");
        }
    }
    Geometry(const Geometry&) = delete;
    Geometry& operator=(const Geometry&) = delete;
    ~Geometry() { GEOSGeom_destroy(handle); }

    GEOSGeometry* handle;
};

GEOSGeometry* curves_of(const Network& network) {
    std::vector<GEOSGeometry*> curves;
    int first = 0;
    for (const int count : network.counts) {
        if (count > 1) {
            const auto points = static_cast<unsigned>(count);
            GEOSCoordSequence* sequence = GEOSCoordSeq_create(points, 2);
            for (unsigned k = 0; k < points; ++k) {
                const tagPOINT pt = network.pts[first + static_cast<int>(k)];
                GEOSCoordSeq_setXY(sequence, k, pt.x, pt.y);
            }
            curves.push_back(GEOSGeom_createLineString(sequence));
        }
        first += count;
    }
    return GEOSGeom_createCollection(GEOS_MULTILINESTRING, curves.data(),
                                     static_cast<unsigned>(curves.size()));
}

} // namespace

Run polygonize_with_geos(const Network& network) {
    static const bool is_started = (initGEOS(nullptr, nullptr), true);
    static_cast<void>(is_started);
    const Geometry curves(curves_of(network));
    Run run;
    GEOSGeometry* polygons = nullptr;
    run.seconds = seconds_of([&] {
        const Geometry noded(GEOSUnaryUnion(curves.handle));
        polygons = GEOSPolygonize(&noded.handle, 1);
    });
    run.found = GEOSGetNumGeometries(Geometry(polygons).handle);
    return run;
}

} // namespace korvel::bench
