// What the passes over a body model cost, on balls of 20 · 4^rounds triangles.

#include <benchmark/benchmark.h>

#include "bench/inputs/models.h"
#include "korvel/body/edit/edit_state.h"

namespace {

void start_ball(TMOD3D& model, const benchmark::State& state);
void count_faces(benchmark::State& state);

void BM_StartBall(benchmark::State& state) {
    for (auto _ : state) {
        TMOD3D model;
        start_ball(model, state);
        benchmark::DoNotOptimize(model.bodies[0].volume);
    }
    count_faces(state);
}

void BM_ReadModel(benchmark::State& state) {
    TMOD3D ball;
    start_ball(ball, state);
    const korvel::bench::ModelFile file(ball);
    for (auto _ : state) {
        TMOD3D model;
        korvel::bench::read_model(file.path(), model);
    }
    count_faces(state);
}

void BM_FindRelations(benchmark::State& state) {
    TMOD3D model;
    start_ball(model, state);
    for (auto _ : state) {
        model.found_top_rel();
    }
    count_faces(state);
}

void BM_CutSection(benchmark::State& state) {
    TMOD3D model;
    start_ball(model, state);
    TMOD2D section;
    for (auto _ : state) {
        model.get_x_section(2.1, section);
        benchmark::DoNotOptimize(section.polys.GetSize());
    }
    count_faces(state);
    state.counters["cut_edges"] = section.verts.GetSize();
}

/// Tests every edge of the ball against every face without a common vertex.
void BM_TestCrossings(benchmark::State& state) {
    TMOD3D model;
    start_ball(model, state);
    model.set_all_body_as_relat();
    for (auto _ : state) {
        benchmark::DoNotOptimize(model.legal_body_rel_side());
    }
    count_faces(state);
}

/// Tests the edges at about sixty vertices, as a drag does.
void BM_TestNeighbourhood(benchmark::State& state) {
    TMOD3D model;
    start_ball(model, state);
    model.edit_state[korvel::edit_picked_vertex] = 100;
    model.edit_state[korvel::edit_neighbourhood_depth] = 4;
    model.set_rel_triangle_vert();
    for (auto _ : state) {
        benchmark::DoNotOptimize(model.legal_body_rel_side());
    }
    count_faces(state);
    state.counters["edges"] = model.relat_list_3.GetSize();
}

void start_ball(TMOD3D& model, const benchmark::State& state) {
    double centre[3] = {1, 2, 3};
    double radius[3] = {2, 2, 2};
    model.inti_mode(centre, radius, 0, static_cast<int>(state.range(0)));
}

/// Reports the faces handled per second.
void count_faces(benchmark::State& state) {
    const int faces = 20 << 2 * state.range(0);
    state.SetItemsProcessed(state.iterations() * faces);
    state.counters["faces"] = faces;
}

constexpr int fewest_rounds = 4;
constexpr int most_rounds = 8;

BENCHMARK(BM_StartBall)->DenseRange(fewest_rounds, most_rounds)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadModel)->DenseRange(fewest_rounds, most_rounds)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindRelations)->DenseRange(fewest_rounds, most_rounds)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CutSection)->DenseRange(fewest_rounds, most_rounds)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TestCrossings)->DenseRange(fewest_rounds, 6)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TestNeighbourhood)
    ->DenseRange(fewest_rounds, most_rounds)
    ->Unit(benchmark::kMillisecond);

} // namespace
