// From regions to triangles, without trace files. Times per point tell how the work grows.

#include <cmath>

#include <benchmark/benchmark.h>

#include "bench/inputs/sample_network.h"
#include "korvel/polyregion/plydt.h"
#include "tests/support/dice.h"

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

constexpr double ring_radius = 1e6;

/// One ring of evenly spread directions whose points lie off their circle by what `offset(k,
/// spacing)` tells.
template <class Offset>
void triangulate_ring(benchmark::State& state, Offset offset) {
    constexpr double turn = 6.283185307179586;
    const auto corners = static_cast<int>(state.range(0));
    PLYDT set;
    RING ring;
    for (int k = 0; k < corners; ++k) {
        const double distance = ring_radius + offset(k, ring_radius * turn / corners);
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

/// Up to two spacings off the circle: few radii differ much.
void noisy_ring(benchmark::State& state) {
    korvel::test::Dice dice;
    triangulate_ring(state, [&](int, double spacing) { return dice.up_to(2 * spacing); });
}

/// Every other point half way to the centre: long sides close together.
void spiky_ring(benchmark::State& state) {
    triangulate_ring(state, [](int k, double) { return k % 2 == 0 ? 0 : -ring_radius / 2; });
}

/// The same with tips and bases as uneven as the noisy ring.
void uneven_spiky_ring(benchmark::State& state) {
    korvel::test::Dice dice;
    triangulate_ring(state, [&](int k, double spacing) {
        return (k % 2 == 0 ? 0 : -ring_radius / 2) + dice.up_to(2 * spacing);
    });
}

void ring_sizes(benchmark::internal::Benchmark* ring) {
    ring->ArgName("points")->Unit(benchmark::kMillisecond)->Complexity(benchmark::oAuto);
    for (const int points : {2'500, 5'000, 10'000, 20'000, 50'000}) {
        ring->Arg(points);
    }
}

BENCHMARK_CAPTURE(triangles, us_counties, "us-counties")
    ->ArgName("quarters")
    ->Arg(4)
    ->Unit(benchmark::kMillisecond);

BENCHMARK_CAPTURE(triangles, us_states, "us-states")
    ->ArgName("quarters")
    ->Arg(1)
    ->Arg(2)
    ->Arg(4)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oNLogN);

BENCHMARK(noisy_ring)->Apply(ring_sizes);
BENCHMARK(spiky_ring)->Apply(ring_sizes);
BENCHMARK(uneven_spiky_ring)->Apply(ring_sizes);

} // namespace
