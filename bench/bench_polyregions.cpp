// Drawing regions, without a device, and finding the region that contains a point.

#include <benchmark/benchmark.h>

#include "bench/inputs/samples.h"
#include "korvel/polyregion/ccploy2drg.h"

namespace {

/// Accepts every call and paints nothing.
class NoDevice : public CDC {
public:
    CPen* SelectObject(CPen*) override { return nullptr; }
    CBrush* SelectObject(CBrush*) override { return nullptr; }
    int SetPolyFillMode(int) override { return ALTERNATE; }
    COLORREF GetBkColor() const override { return 0; }
    COLORREF SetBkColor(COLORREF) override { return 0; }
    POINT MoveTo(int, int) override { return {}; }
    BOOL LineTo(int, int) override { return 1; }
    BOOL Polygon(const POINT*, int) override { return 1; }
    BOOL PolyPolygon(const POINT* points, const int*, int) override {
        benchmark::DoNotOptimize(points);
        return 1;
    }
};

void count_points(benchmark::State& state, const CCPloy2DRg& set);

void BM_DrawRegions(benchmark::State& state) {
    CCPloy2DRg set;
    korvel::bench::sample_regions("us-counties", state.range(0), set);
    NoDevice device;
    for (auto _ : state) {
        set.Draw_Regon(0, 0, 0, 0, 1, 1, 0.01, &device);
    }
    count_points(state, set);
}

/// Points all over the map, many of them in no region.
void BM_LocatePoint(benchmark::State& state) {
    CCPloy2DRg set;
    korvel::bench::sample_regions("us-counties", state.range(0), set);
    int step = 0;
    for (auto _ : state) {
        double p[2] = {step % 317 * 315.5, step % 313 * -319.5};
        benchmark::DoNotOptimize(set.search_pt_polyrg(p));
        ++step;
    }
    count_points(state, set);
}

void count_points(benchmark::State& state, const CCPloy2DRg& set) {
    state.SetComplexityN(set.pt_list.GetSize());
    state.counters["points"] = set.pt_list.GetSize();
}

BENCHMARK(BM_DrawRegions)->ArgName("quarters")->DenseRange(1, 4)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LocatePoint)->ArgName("quarters")->DenseRange(1, 4)->Unit(benchmark::kMicrosecond);

} // namespace
