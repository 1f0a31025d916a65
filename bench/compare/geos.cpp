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

GEOSGeometry* line_strings_of(const CurveArrays& curves);

} // namespace

Run polygonize_with_geos(const CurveArrays& curves) {
    static const bool is_started = (initGEOS(nullptr, nullptr), true);
    static_cast<void>(is_started);
    const Geometry strings(line_strings_of(curves));
    Run run;
    GEOSGeometry* polygons = nullptr;
    run.seconds = seconds_of([&] {
        const Geometry noded(GEOSUnaryUnion(strings.handle));
        polygons = GEOSPolygonize(&noded.handle, 1);
    });
    run.found = GEOSGetNumGeometries(Geometry(polygons).handle);
    return run;
}

namespace {

GEOSGeometry* line_strings_of(const CurveArrays& curves) {
    std::vector<GEOSGeometry*> strings;
    int first = 0;
    for (const int count : curves.counts) {
        if (count > 1) {
            const auto points = static_cast<unsigned>(count);
            GEOSCoordSequence* sequence = GEOSCoordSeq_create(points, 2);
            for (unsigned k = 0; k < points; ++k) {
                const tagPOINT pt = curves.pts[first + static_cast<int>(k)];
                GEOSCoordSeq_setXY(sequence, k, pt.x, pt.y);
            }
            strings.push_back(GEOSGeom_createLineString(sequence));
        }
        first += count;
    }
    return GEOSGeom_createCollection(GEOS_MULTILINESTRING, strings.data(),
                                     static_cast<unsigned>(strings.size()));
}

} // namespace
} // namespace korvel::bench
