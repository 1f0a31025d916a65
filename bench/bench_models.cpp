// What the passes over a body model cost, on balls of 20 · 4^rounds triangles.

#include <cstdio>
#include <memory>

#include <benchmark/benchmark.h>

#include "korvel/module/korvel.h"

namespace {

constexpr int fewest_rounds = 4;
constexpr int most_rounds = 8;

void make_ball(TMOD3D& model, int rounds) {
    double centre[3] = {1, 2, 3};
    double radius[3] = {2, 2, 2};
    model.inti_mode(centre, radius, 0, rounds);
}

/// Faces of the ball per second of whatever one iteration does with it.
void count_faces(benchmark::State& state) {
    const int faces = 20 << 2 * state.range(0);
    state.SetItemsProcessed(state.iterations() * faces);
    state.counters["faces"] = faces;
}

void BM_StartBall(benchmark::State& state) {
    for (auto _ : state) {
        TMOD3D model;
        make_ball(model, static_cast<int>(state.range(0)));
        benchmark::DoNotOptimize(model.bodies[0].volume);
    }
    count_faces(state);
}

void BM_ReadModel(benchmark::State& state) {
    const std::unique_ptr<FILE, int (*)(FILE*)> file(std::tmpfile(), std::fclose);
    {
        TMOD3D model;
        make_ball(model, static_cast<int>(state.range(0)));
        model.write_mode(file.get());
    }
    for (auto _ : state) {
        std::rewind(file.get());
        TMOD3D model;
        model.read_mode(file.get());
        if (model.mode_ok == 0) {
            state.SkipWithError("the model was not read");
            break;
        }
    }
    count_faces(state);
}

void BM_FindRelations(benchmark::State& state) {
    TMOD3D model;
    make_ball(model, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        model.found_top_rel();
    }
    count_faces(state);
}

void BM_CutSection(benchmark::State& state) {
    TMOD3D model;
    make_ball(model, static_cast<int>(state.range(0)));
    TMOD2D section;
    for (auto _ : state) {
        model.get_x_section(2.1, section);
        benchmark::DoNotOptimize(section.polys.GetSize());
    }
    count_faces(state);
    state.counters["cut_edges"] = section.verts.GetSize();
}

BENCHMARK(BM_StartBall)->DenseRange(fewest_rounds, most_rounds)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadModel)->DenseRange(fewest_rounds, most_rounds)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindRelations)->DenseRange(fewest_rounds, most_rounds)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CutSection)->DenseRange(fewest_rounds, most_rounds)->Unit(benchmark::kMillisecond);

} // namespace
