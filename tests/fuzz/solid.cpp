// A polygon-region file, processed as by the command: triangulated and measured, and each region
// raised to a body.

#include "kit/base/areas.h"
#include "kit/base/error.h"
#include "kit/files/region_file.h"
#include "kit/maps/cap.h"
#include "kit/maps/coverage.h"
#include "kit/maps/region_colours.h"
#include "kit/maps/region_sets.h"
#include "kit/solids/join.h"
#include "kit/solids/weld.h"
#include "tests/fuzz/exercise.h"

namespace {

using namespace korvel::kit;

// Regions stay small, so that calls stay quick.
constexpr int most_entries = 400;

bool is_large(const CCPloy2DRg& set) {
    int entries = set.pt_list.GetSize() + set.region_list.GetSize();
    for (const RING& ring : set.ring_list) {
        entries += ring.pts.GetSize();
    }
    for (const CCPloy2DRg::PyToRg& region : set.region_list) {
        for (const int ring : region.rings) {
            entries += set.ring_list[ring].pts.GetSize();
        }
    }
    return entries > most_entries;
}

void triangulate(PLYDT set) {
    set.creat_top_rel();
    for (PLYDT::PyToRg& region : set.region_list) {
        const int first = set.trg_list.GetSize();
        set.poly_tranglate(region);
        measure_coverage(set, region, first, set.trg_list.GetSize(),
                         are_lattice_points(set.pt_list));
    }
}

void raise(const PLYDT& set, Fill fill) {
    TMOD3D model;
    for (const PLYDT::PyToRg& region : set.region_list) {
        PLYDT cap;
        if (make_cap(set, region, fill, cap) != Filled::not_at_all) {
            cap.CoordinatesTrans(1, 0, 0, 0, 0, 1, -1, 0, 10);
            TMOD3D body;
            body.create3dmode(cap);
            append_bodies(body, model);
        }
    }
    derive(model);
    Solids solids(model);
    try {
        weld(solids);
    } catch (const Error&) {
        // A body is degenerate.
    }
    solids.volume();
    solids.surfaces();
    solids.cut({0, 0, 1, -5});
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    TextFile file("/dev/null");
    file.text.assign(reinterpret_cast<const char*>(data), size);
    CCPloy2DRg regions;
    try {
        read_regions(file, regions);
    } catch (const Error&) {
        return 0;
    }
    if (is_large(regions)) {
        return 0;
    }
    colour_regions(regions);
    PLYDT set;
    copy_regions(regions, set);
    orient_rings(set);
    triangulate(set);
    raise(set, Fill::automatic);
    raise(set, Fill::delaunay);
    return 0;
}
