// From a curve network to regions. Times per point tell how the work grows.

#include <benchmark/benchmark.h>

#include "bench/sample_network.h"

namespace {

void regions(benchmark::State& state, const char* name) {
    const korvel::bench::Network network = korvel::bench::sample_network(name, state.range(0));
    CREGION region;
    for (auto _ : state) {
        state.PauseTiming();
        CArray<tagPOINT> pts; // the analysis cleans the arrays that it is given
        CArray<int> counts;
        pts.Copy(network.pts);
        counts.Copy(network.counts);
        state.ResumeTiming();
        region.SetPtsInfo(pts, counts);
    }
    const double points = network.pts.GetSize();
    state.SetComplexityN(network.pts.GetSize());
    state.counters["points"] = points;
    state.counters["regions"] = region.regions.GetSize();
    state.counters["per_point"] = benchmark::Counter(
        points, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

BENCHMARK_CAPTURE(regions, us_counties, "us-counties")
    ->ArgName("quarters")
    ->Arg(1)
    ->Arg(2)
    ->Arg(4)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oNLogN);

} // namespace
