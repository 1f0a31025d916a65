// What the kit adds to the exact classes: each job once with them alone and once through the kit.

#include <benchmark/benchmark.h>

#include <utility>
#include <vector>

#include "bench/inputs/models.h"
#include "bench/inputs/networks.h"
#include "bench/inputs/samples.h"
#include "kit/kit.h"

namespace {

using korvel::bench::CurveArrays;
namespace kit = korvel::kit;

const CurveArrays& counties() {
    static const CurveArrays curves = korvel::bench::sample_curves("us-counties");
    return curves;
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
    const kit::Network network = kit::Network(counties().pts, counties().counts);
    for (auto _ : state) {
        benchmark::DoNotOptimize(kit::find_regions(network).map().size());
    }
}

void exact_triangles(benchmark::State& state) {
    PLYDT regions;
    korvel::bench::sample_regions("us-counties", 4, regions);
    const korvel::TraceFilesOverride no_traces(false);
    for (auto _ : state) {
        PLYDT set; // as a host makes one of its map
        kit::copy_regions(regions, set);
        set.region_tranglate();
        benchmark::DoNotOptimize(set.trg_list.GetSize());
    }
}

void kit_triangles(benchmark::State& state) {
    const kit::Map map =
        kit::find_regions(kit::Network(counties().pts, counties().counts)).take_map();
    for (auto _ : state) {
        benchmark::DoNotOptimize(kit::triangulate(map).triangle_count());
    }
}

/// One region of a set, with points of its own.
void copy_region(const PLYDT& regions, int which, PLYDT& out) {
    out.region_list.SetSize(1);
    for (const int ring : regions.region_list[which].rings) {
        RING& copy = out.ring_list[out.ring_list.Add(RING())];
        for (const int point : regions.ring_list[ring].pts) {
            copy.pts.Add(out.pt_list.GetSize());
            out.pt_list.Add(regions.pt_list[point]);
        }
        out.region_list[0].rings.Add(out.ring_list.GetSize() - 1);
    }
}

constexpr double low_level = 0;
constexpr double high_level = 3000;

void exact_raise(benchmark::State& state) {
    PLYDT regions;
    korvel::bench::sample_regions("us-states", 4, regions);
    const korvel::TraceFilesOverride no_traces(false);
    const korvel::bench::Silence silence;
    for (auto _ : state) {
        TMOD3D model;
        for (int region = 0; region < regions.region_list.GetSize(); ++region) {
            PLYDT cap;
            copy_region(regions, region, cap);
            cap.region_tranglate();
            cap.CoordinatesTrans(1, 0, 0, 0, 0, 1, 1, low_level, high_level);
            model.create3dmode(cap);
        }
        benchmark::DoNotOptimize(model.bodies.GetSize());
    }
}

void kit_raise(benchmark::State& state) {
    const kit::Map map =
        kit::find_regions(kit::Network::read(KORVEL_DATA_DIR "/us-states.curves")).take_map();
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            kit::raise(map, {.low = low_level, .high = high_level, .separate = true, .threads = 1})
                .solids.size());
    }
}

/// About 480,000 points on the rings of 9,000 regions.
const kit::Map& dense_map() {
    static const kit::Map map = [] {
        const CurveArrays curves = korvel::bench::dense_map(320'000);
        return kit::find_regions(kit::Network(curves.pts, curves.counts)).take_map();
    }();
    return map;
}

/// On one thread.
void kit_fill_dense(benchmark::State& state, kit::Fill fill) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            kit::triangulate(dense_map(), {.fill = fill, .threads = 1}).triangle_count());
    }
}

/// On all cores.
void kit_raise_dense(benchmark::State& state) {
    const bool separate = state.range(0) != 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            kit::raise(dense_map(), {.low = low_level, .high = high_level, .separate = separate})
                .solids.size());
    }
}

void kit_weld_dense(benchmark::State& state) {
    const kit::Solids separate =
        kit::raise(dense_map(), {.low = low_level, .high = high_level, .separate = true}).solids;
    for (auto _ : state) {
        state.PauseTiming();
        kit::Solids solids(separate);
        state.ResumeTiming();
        benchmark::DoNotOptimize(kit::weld(solids).faces_shared);
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

void exact_merge(benchmark::State& state) {
    for (auto _ : state) {
        TMOD3D whole;
        whole.add_model(ball());
        whole.add_model(ball());
        benchmark::DoNotOptimize(whole.bodies.GetSize());
    }
}

/// Parts are consumed: a host that keeps its own copies them first, which is not measured.
void kit_merge(benchmark::State& state) {
    const kit::Solids solids(ball());
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<kit::Solids> parts(2, solids);
        state.ResumeTiming();
        benchmark::DoNotOptimize(kit::merge(std::move(parts)).size());
    }
}

BENCHMARK(exact_regions)->Name("exact/regions")->Unit(benchmark::kMillisecond);
BENCHMARK(kit_regions)->Name("kit/regions")->Unit(benchmark::kMillisecond);
BENCHMARK(exact_triangles)->Name("exact/triangles")->Unit(benchmark::kMillisecond);
BENCHMARK(kit_triangles)->Name("kit/triangles")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(kit_fill_dense, delaunay, kit::Fill::delaunay)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(kit_fill_dense, automatic, kit::Fill::automatic)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(kit_fill_dense, front, kit::Fill::front)->Unit(benchmark::kMillisecond);
BENCHMARK(exact_raise)->Name("exact/raise")->Unit(benchmark::kMillisecond);
BENCHMARK(kit_raise)->Name("kit/raise")->Unit(benchmark::kMillisecond);
BENCHMARK(kit_raise_dense)
    ->Name("kit/raise_dense")
    ->ArgName("separate")
    ->Arg(0)
    ->Arg(1)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(kit_weld_dense)->Name("kit/weld_dense")->Unit(benchmark::kMillisecond);
BENCHMARK(exact_read)->Name("exact/read")->Unit(benchmark::kMillisecond);
BENCHMARK(kit_read)->Name("kit/read")->Unit(benchmark::kMillisecond);
BENCHMARK(exact_cut)->Name("exact/cut")->Unit(benchmark::kMillisecond);
BENCHMARK(kit_cut)->Name("kit/cut")->Unit(benchmark::kMillisecond);
BENCHMARK(exact_merge)->Name("exact/merge")->Unit(benchmark::kMillisecond);
BENCHMARK(kit_merge)->Name("kit/merge")->Unit(benchmark::kMillisecond);

} // namespace
