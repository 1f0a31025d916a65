// What the kit adds to the exact classes: each job once with them alone and once through the kit.

#include <benchmark/benchmark.h>

#include <span>

#include "bench/inputs/models.h"
#include "bench/inputs/samples.h"
#include "kit/kit.h"

namespace {

using korvel::bench::CurveArrays;
namespace kit = korvel::kit;

const CurveArrays& counties() {
    static const CurveArrays curves = korvel::bench::sample_curves("us-counties");
    return curves;
}

kit::Network network_of(const CurveArrays& curves) {
    kit::Network network;
    std::size_t start = 0;
    const std::span<const kit::GridPoint> points(curves.pts.begin(), curves.pts.end());
    for (const int count : curves.counts) {
        network.add_curve(points.subspan(start, static_cast<std::size_t>(count)));
        start += static_cast<std::size_t>(count);
    }
    return network;
}

void exact_regions(benchmark::State& state) {
    for (auto _ : state) {
        CurveArrays curves; // the analysis cleans its input in place
        curves.pts.Copy(counties().pts);
        curves.counts.Copy(counties().counts);
        CREGION builder;
        builder.SetPtsInfo(curves.pts, curves.counts);
        CCPloy2DRg regions;
        builder.GetAllRegion(regions);
        benchmark::DoNotOptimize(regions.region_list.GetSize());
    }
}

void kit_regions(benchmark::State& state) {
    const kit::Network network = network_of(counties());
    for (auto _ : state) {
        benchmark::DoNotOptimize(kit::find_regions(network).map().size());
    }
}

void exact_triangles(benchmark::State& state) {
    PLYDT regions;
    korvel::bench::sample_regions("us-counties", 4, regions);
    const korvel::TraceFilesOverride no_traces(false);
    for (auto _ : state) {
        regions.region_tranglate();
        benchmark::DoNotOptimize(regions.trg_list.GetSize());
    }
}

void kit_triangles(benchmark::State& state) {
    const kit::Map map = kit::find_regions(network_of(counties())).take_map();
    for (auto _ : state) {
        benchmark::DoNotOptimize(kit::triangulate(map).triangle_count());
    }
}

/// A ball of 81,920 faces, 200 wide.
TMOD3D& ball() {
    static TMOD3D model;
    if (model.verts.IsEmpty()) {
        double centre[] = {0, 0, 0};
        double radius[] = {100};
        model.inti_mode(centre, radius, 0, 6);
    }
    return model;
}

void exact_read(benchmark::State& state) {
    const korvel::bench::ModelFile file(ball());
    for (auto _ : state) {
        TMOD3D model;
        korvel::bench::read_model(file.path(), model);
    }
}

void kit_read(benchmark::State& state) {
    const korvel::bench::ModelFile file(ball());
    for (auto _ : state) {
        benchmark::DoNotOptimize(kit::Solids::read(file.path()).size());
    }
}

void exact_cut(benchmark::State& state) {
    double plane[] = {0.25, 0.1, 1, -3.01};
    for (auto _ : state) {
        TMOD2D section;
        ball().get_section(plane, section);
        benchmark::DoNotOptimize(section.polys.GetSize());
    }
}

void kit_cut(benchmark::State& state) {
    const kit::Solids solids(ball());
    for (auto _ : state) {
        benchmark::DoNotOptimize(solids.cut({0.25, 0.1, 1, -3.01}).size());
    }
}

BENCHMARK(exact_regions)->Name("exact/regions")->Unit(benchmark::kMillisecond);
BENCHMARK(kit_regions)->Name("kit/regions")->Unit(benchmark::kMillisecond);
BENCHMARK(exact_triangles)->Name("exact/triangles")->Unit(benchmark::kMillisecond);
BENCHMARK(kit_triangles)->Name("kit/triangles")->Unit(benchmark::kMillisecond);
BENCHMARK(exact_read)->Name("exact/read")->Unit(benchmark::kMillisecond);
BENCHMARK(kit_read)->Name("kit/read")->Unit(benchmark::kMillisecond);
BENCHMARK(exact_cut)->Name("exact/cut")->Unit(benchmark::kMillisecond);
BENCHMARK(kit_cut)->Name("kit/cut")->Unit(benchmark::kMillisecond);

} // namespace
