#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include <geos_c.h>

#include "tests/kit/rings.h"

namespace korvel::test {

/// Whether the Simple Features rules allow the region.
inline bool is_valid(const Rings& rings) {
    static const std::unique_ptr<GEOSContextHandle_HS, void (*)(GEOSContextHandle_t)> owner(
        GEOS_init_r(), GEOS_finish_r);
    GEOSContextHandle_t const context = owner.get();
    std::vector<GEOSGeometry*> made;
    for (const std::vector<kit::PlanePoint>& ring : rings) {
        std::vector<double> coordinates;
        for (std::size_t k = 0; k <= ring.size(); ++k) {
            coordinates.insert(coordinates.end(),
                               {ring[k % ring.size()].x, ring[k % ring.size()].y});
        }
        made.push_back(GEOSGeom_createLinearRing_r(
            context, GEOSCoordSeq_copyFromBuffer_r(context, coordinates.data(),
                                                   static_cast<unsigned>(ring.size() + 1), 0, 0)));
    }
    GEOSGeometry* const polygon = GEOSGeom_createPolygon_r(context, made.front(), made.data() + 1,
                                                           static_cast<unsigned>(made.size() - 1));
    const bool valid = GEOSisValid_r(context, polygon) == 1;
    GEOSGeom_destroy_r(context, polygon);
    return valid;
}

} // namespace korvel::test
