// From regions to triangles, without trace files. Times per point tell how the work grows.

#include <cmath>
#include <random>

#include <benchmark/benchmark.h>

#include "bench/sample_network.h"
#include "korvel/polyregion/plydt.h"

namespace {

void triangulate(benchmark::State& state, PLYDT& set) {
    PLYDT::set_trace_files(false);
    for (auto _ : state) {
        set.region_tranglate();
    }
    const double points = set.pt_list.GetSize();
    state.SetComplexityN(set.pt_list.GetSize());
    state.counters["points"] = points;
    state.counters["triangles"] = set.trg_list.GetSize();
    state.counters["per_point"] = benchmark::Counter(
        points, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void triangles(benchmark::State& state, const char* name) {
    korvel::bench::Network network = korvel::bench::sample_network(name, state.range(0));
    CREGION region;
    region.SetPtsInfo(network.pts, network.counts);
    PLYDT set;
    region.GetAllRegion(set);
    triangulate(state, set);
}

/// One ring of evenly spread directions whose points lie off their circle by up to two of their
/// spacings.
void noisy_ring(benchmark::State& state) {
    constexpr double turn = 6.283185307179586;
    constexpr double radius = 1e6;
    const auto corners = static_cast<int>(state.range(0));
    const double spacing = radius * turn / corners;
    std::mt19937 noise(1);
    PLYDT set;
    RING ring;
    for (int k = 0; k < corners; ++k) {
        const double distance = radius + 2 * spacing * noise() / std::mt19937::max();
        VERT2D pt;
        pt.x = std::round(distance * std::cos(turn * k / corners));
        pt.y = std::round(distance * std::sin(turn * k / corners));
        ring.pts.Add(set.pt_list.Add(pt));
    }
    set.ring_list.Add(ring);
    PLYDT::PyToRg region;
    region.rings.Add(0);
    set.region_list.Add(region);
    triangulate(state, set);
}

BENCHMARK_CAPTURE(triangles, us_states, "us-states")
    ->ArgName("quarters")
    ->Arg(1)
    ->Arg(2)
    ->Arg(4)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oNLogN);

BENCHMARK(noisy_ring)
    ->ArgName("points")
    ->RangeMultiplier(2)
    ->Range(1 << 10, 1 << 14)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oAuto);

} // namespace
