// From a curve network to regions. The times per point show how the work grows.

#include <benchmark/benchmark.h>

#include "bench/inputs/networks.h"

namespace {

using korvel::bench::CurveArrays;

void find_regions(benchmark::State& state, const CurveArrays& curves);

void regions(benchmark::State& state, const char* name) {
    find_regions(state, korvel::bench::sample_curves(name, state.range(0)));
}

void made_regions(benchmark::State& state, CurveArrays (*make)(int points)) {
    find_regions(state, make(static_cast<int>(state.range(0))));
}

void find_regions(benchmark::State& state, const CurveArrays& curves) {
    CREGION region;
    for (auto _ : state) {
        state.PauseTiming();
        CurveArrays copy; // the analysis cleans its input in place
        copy.pts.Copy(curves.pts);
        copy.counts.Copy(curves.counts);
        state.ResumeTiming();
        region.SetPtsInfo(copy.pts, copy.counts);
    }
    const double points = curves.pts.GetSize();
    state.SetComplexityN(curves.pts.GetSize());
    state.counters["points"] = points;
    state.counters["regions"] = region.regions.GetSize();
    state.counters["per_point"] = benchmark::Counter(
        points, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void network_sizes(benchmark::internal::Benchmark* each) {
    for (const int points : {125'000, 250'000, 500'000, 1'000'000}) {
        each->Arg(points);
    }
    each->ArgName("points")->Unit(benchmark::kMillisecond)->Complexity(benchmark::oNLogN);
}

BENCHMARK_CAPTURE(regions, us_counties, "us-counties")
    ->ArgName("quarters")
    ->DenseRange(1, 4)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oNLogN);
BENCHMARK_CAPTURE(made_regions, line_grid, korvel::bench::line_grid)->Apply(network_sizes);
BENCHMARK_CAPTURE(made_regions, random_segments, korvel::bench::random_segments)
    ->Apply(network_sizes);
BENCHMARK_CAPTURE(made_regions, nested_loops, korvel::bench::nested_loops)->Apply(network_sizes);
BENCHMARK_CAPTURE(made_regions, noisy_loops, korvel::bench::noisy_loops)->Apply(network_sizes);

} // namespace
