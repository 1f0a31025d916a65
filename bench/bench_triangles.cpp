// From regions to triangles, without trace files. The times per point show how the work grows.

#include <benchmark/benchmark.h>

#include "bench/inputs/rings.h"
#include "bench/inputs/samples.h"

namespace {

void triangulate(benchmark::State& state, PLYDT& set);

void triangles(benchmark::State& state, const char* name) {
    PLYDT set;
    korvel::bench::sample_regions(name, state.range(0), set);
    triangulate(state, set);
}

/// Few radii differ much.
void noisy_ring(benchmark::State& state) {
    PLYDT set;
    korvel::bench::add_noisy_region(set, static_cast<int>(state.range(0)), false);
    triangulate(state, set);
}

/// Radii are equal but for rounding.
void spiky_ring(benchmark::State& state) {
    PLYDT set;
    korvel::bench::add_spiky_region(set, static_cast<int>(state.range(0)), false);
    triangulate(state, set);
}

void uneven_spiky_ring(benchmark::State& state) {
    PLYDT set;
    korvel::bench::add_spiky_region(set, static_cast<int>(state.range(0)), true);
    triangulate(state, set);
}

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
