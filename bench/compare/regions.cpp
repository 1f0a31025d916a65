// Curve networks to regions.

#include <optional>
#include <string>
#include <vector>

#include "bench/compare/contest.h"
#include "bench/compare/jobs.h"
#include "bench/compare/peers.h"
#include "bench/inputs/networks.h"
#include "kit/kit.h"
#include "korvel/region/cregion.h"

namespace korvel::bench {
namespace {

struct Kind {
    const char* name;
    CurveArrays (*make)(int points);
};

constexpr Kind kinds[] = {
    {"line grid", line_grid},
    {"random segments", random_segments},
    {"nested loops", nested_loops},
    {"noisy loops", noisy_loops},
};

void compare_samples(Table& table);
void compare_made_networks(Table& table, bool is_quick);
void compare_dense_maps(Table& table, bool is_quick);
void race(Series& series, const CurveArrays& curves, const std::vector<Peer>& peers);
Run find_regions(const CurveArrays& curves);

} // namespace

void compare_regions(Table& table, bool is_quick) {
    compare_samples(table);
    compare_made_networks(table, is_quick);
    compare_dense_maps(table, is_quick);
}

namespace {

void compare_samples(Table& table) {
    for (const std::string name : {"us-states", "world-110m", "us-counties"}) {
        const bool has_goals = name == "us-counties";
        const auto goal = [&](double ratio) {
            return has_goals ? std::optional(ratio) : std::nullopt;
        };
        const CurveArrays curves = sample_curves(name, 4);
        Series series(table, "regions", name, "regions");
        race(series, curves,
             {{"CGAL", [&] { return arrange_with_cgal(curves); }, goal(0.5)},
              {"GEOS", [&] { return polygonize_with_geos(curves); }, goal(0.15)}});
    }
}

void compare_made_networks(Table& table, bool is_quick) {
    constexpr int goal_size = 500'000;
    constexpr int most_with_peers = goal_size;
    const std::vector<int> sizes = is_quick ? std::vector{10'000, 20'000}
                                            : std::vector{125'000, 250'000, goal_size, 1'000'000};
    for (const Kind& kind : kinds) {
        Series series(table, "regions", kind.name, "regions");
        for (const int size : sizes) {
            const CurveArrays curves = kind.make(size);
            std::vector<Peer> peers;
            if (size <= most_with_peers) {
                peers.push_back({"CGAL", [&] { return arrange_with_cgal(curves); },
                                 size == goal_size ? std::optional(0.5) : std::nullopt});
                peers.push_back({"GEOS", [&] { return polygonize_with_geos(curves); }});
            }
            race(series, curves, peers);
            if (!series.goes_on()) {
                break;
            }
        }
    }
}

/// The kit: every face of curves that overlap, checked.
void compare_dense_maps(Table& table, bool is_quick) {
    Series series(table, "all faces", "dense map", "regions");
    for (const int size : is_quick ? std::vector{80'000} : std::vector{160'000, 500'000}) {
        const CurveArrays curves = dense_map(size);
        const kit::Network network(curves.pts, curves.counts);
        series.race(curves.pts.GetSize(),
                    [&] {
                        Run run;
                        run.seconds = seconds_of(
                            [&] { run.found = kit::find_regions(network).map().size(); });
                        return run;
                    },
                    {{"CGAL", [&] { return arrange_with_cgal(curves); }, 0.3},
                     {"GEOS", [&] { return polygonize_with_geos(curves); }, 0.2}});
        if (!series.goes_on()) {
            break;
        }
    }
}

void race(Series& series, const CurveArrays& curves, const std::vector<Peer>& peers) {
    series.race(
        curves.pts.GetSize(), [&] { return find_regions(curves); }, peers);
}

/// The whole analysis; the curves that it cleans is a copy.
Run find_regions(const CurveArrays& curves) {
    CurveArrays copy;
    copy.pts.Copy(curves.pts);
    copy.counts.Copy(curves.counts);
    CREGION region;
    Run run;
    run.seconds = seconds_of([&] { region.SetPtsInfo(copy.pts, copy.counts); });
    run.found = region.regions.GetSize();
    return run;
}

} // namespace
} // namespace korvel::bench
