// The regions of a dense map to triangles, by the kit, on one thread.

#include <algorithm>

#include "bench/compare/contest.h"
#include "bench/compare/jobs.h"
#include "bench/compare/peers.h"
#include "bench/inputs/networks.h"
#include "kit/kit.h"

namespace korvel::bench {
namespace {

Run triangulate_map(const kit::Map& map, kit::Fill fill);
Run fill_without_failures(const kit::Map& map);

} // namespace

void compare_map_triangles(Table& table, bool is_quick) {
    const CurveArrays curves = dense_map(is_quick ? 80'000 : 480'000);
    const kit::Map map = kit::find_regions(kit::Network(curves.pts, curves.counts)).take_map();
    PLYDT set;
    kit::copy_oriented(map, set);
    const auto race = [&](const char* job, kit::Fill fill, const Peer& peer) {
        Series(table, job, "dense map", "area")
            .race(set.pt_list.GetSize(), [&] { return triangulate_map(map, fill); }, {peer});
    };
    const Job by_cgal = [&] { return triangulate_with_cgal(set); };
    race("fill: delaunay", kit::Fill::delaunay, {"CGAL", by_cgal, 2.0});
    race("fill: auto", kit::Fill::automatic,
         {"no failures", [&] { return fill_without_failures(map); }, 1.3});
    race("fill: front", kit::Fill::front, {"CGAL", by_cgal, 10.0});
}

namespace {

Run triangulate_map(const kit::Map& map, kit::Fill fill) {
    Run run;
    kit::Triangulation triangles;
    run.seconds =
        seconds_of([&] { triangles = kit::triangulate(map, {.fill = fill, .threads = 1}); });
    for (const kit::Region region : map) {
        run.found += triangles.coverage(region.index()).triangle_area;
    }
    return run;
}

/// What `Fill::automatic` could do if it knew which fronts cover their regions.
Run fill_without_failures(const kit::Map& map) {
    const kit::Triangulation known = kit::triangulate(map, {.threads = 1});
    std::vector<int> others;
    PLYDT set;
    kit::copy_oriented(map, set);
    for (const kit::Region region : map) {
        if (known.filled(region.index()) != kit::Filled::by_front) {
            others.push_back(region.index());
        }
    }
    const kit::Map rest = map.kept(others);
    const TraceFilesOverride no_traces(false);
    Run run;
    run.seconds = seconds_of([&] {
        set.creat_top_rel();
        for (const kit::Region region : map) {
            if (known.filled(region.index()) == kit::Filled::by_front) {
                set.trg_list.RemoveAll(); // each call reads those before
                set.poly_tranglate(set.region_list[region.index()]);
            }
        }
        kit::triangulate(rest, {.fill = kit::Fill::delaunay, .threads = 1});
    });
    run.found = map.area();
    return run;
}

} // namespace
} // namespace korvel::bench
