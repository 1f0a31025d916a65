// Curve networks to regions.

#include <optional>
#include <string>
#include <vector>

#include "bench/compare/contest.h"
#include "bench/compare/jobs.h"
#include "bench/compare/peers.h"
#include "bench/inputs/networks.h"
#include "korvel/region/cregion.h"

namespace korvel::bench {
namespace {

struct Kind {
    const char* name;
    Network (*make)(int points);
};

constexpr Kind kinds[] = {
    {"line grid", line_grid},
    {"random segments", random_segments},
    {"nested loops", nested_loops},
    {"noisy loops", noisy_loops},
};

/// The whole analysis; the network that it cleans is a copy.
Run find_regions(const Network& network) {
    CArray<tagPOINT> pts;
    CArray<int> counts;
    pts.Copy(network.pts);
    counts.Copy(network.counts);
    CREGION region;
    Run run;
    run.seconds = seconds_of([&] { region.SetPtsInfo(pts, counts); });
    run.found = region.regions.GetSize();
    return run;
}

void race(Series& series, const Network& network, const std::vector<Peer>& peers) {
    series.race(
        network.pts.GetSize(), [&] { return find_regions(network); }, peers);
}

} // namespace

void compare_regions(Table& table, bool is_quick) {
    for (const std::string name : {"us-states", "world-110m", "us-counties"}) {
        const bool has_goals = name == "us-counties";
        const auto goal = [&](double ratio) {
            return has_goals ? std::optional(ratio) : std::nullopt;
        };
        const Network network = sample_network(name, 4);
        Series series(table, "regions", name, "regions");
        race(series, network,
             {{"CGAL", [&] { return arrange_with_cgal(network); }, goal(0.5)},
              {"GEOS", [&] { return polygonize_with_geos(network); }, goal(0.15)}});
    }

    constexpr int goal_size = 500'000;
    constexpr int most_with_peers = goal_size;
    const std::vector<int> sizes = is_quick ? std::vector{10'000, 20'000}
                                            : std::vector{125'000, 250'000, goal_size, 1'000'000};
    for (const Kind& kind : kinds) {
        Series series(table, "regions", kind.name, "regions");
        for (const int size : sizes) {
            const Network network = kind.make(size);
            std::vector<Peer> peers;
            if (size <= most_with_peers) {
                peers.push_back({"CGAL", [&] { return arrange_with_cgal(network); },
                                 size == goal_size ? std::optional(0.5) : std::nullopt});
                peers.push_back({"GEOS", [&] { return polygonize_with_geos(network); }});
            }
            race(series, network, peers);
            if (!series.goes_on()) {
                break;
            }
        }
    }
}

} // namespace korvel::bench
