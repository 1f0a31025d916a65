// What one change costs in models of many bodies.

#include <memory>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/inputs/models.h"

namespace {

template <class Work>
void change(benchmark::State& state, Work work);
int body_count(const benchmark::State& state);

void BM_AddModel(benchmark::State& state) {
    change(state, [](TMOD3D& model, TMOD3D& same) { model.add_model(same); });
}

void BM_DeleteBody(benchmark::State& state) {
    change(state, [](TMOD3D& model, TMOD3D&) { model.deletet(model.bodies.GetSize() / 2); });
}

void BM_ClearUnused(benchmark::State& state) {
    change(state, [](TMOD3D& model, TMOD3D&) { model.clear_no_use_ele(); });
}

/// Cuts every body.
void BM_CutField(benchmark::State& state) {
    TMOD3D model;
    korvel::bench::read_prism_field(model, body_count(state));
    TMOD2D section;
    for (auto _ : state) {
        model.get_section(std::vector<double>{0, 0, 1, -25}.data(), section);
    }
    state.SetComplexityN(state.range(0));
    state.counters["polygons"] = section.polys.GetSize();
}

/// Adds one prism after another to the model.
void BM_RaisePrism(benchmark::State& state) {
    const korvel::bench::Silence silence;
    TMOD3D model;
    korvel::bench::read_prism_field(model, body_count(state));
    int cell = body_count(state);
    for (auto _ : state) {
        state.PauseTiming();
        PLYDT set;
        korvel::bench::prism_set(set, cell++);
        state.ResumeTiming();
        model.create3dmode(set);
    }
    state.SetComplexityN(state.range(0));
}

/// Times `work` on a fresh copy of a field of prisms; its second argument is the original.
template <class Work>
void change(benchmark::State& state, Work work) {
    TMOD3D model;
    korvel::bench::read_prism_field(model, body_count(state));
    for (auto _ : state) {
        state.PauseTiming();
        auto copy = std::make_unique<TMOD3D>(model);
        state.ResumeTiming();
        work(*copy, model);
        state.PauseTiming();
        copy.reset();
        state.ResumeTiming();
    }
    state.SetComplexityN(state.range(0));
    state.counters["faces"] = model.polys.GetSize();
}

int body_count(const benchmark::State& state) {
    return static_cast<int>(state.range(0));
}

void body_counts(benchmark::internal::Benchmark* each) {
    for (const int bodies : {1'250, 2'500, 5'000, 10'000}) {
        each->Arg(bodies);
    }
    each->ArgName("bodies")->Unit(benchmark::kMillisecond)->Complexity(benchmark::oAuto);
}

BENCHMARK(BM_AddModel)->Apply(body_counts);
BENCHMARK(BM_DeleteBody)->Apply(body_counts);
BENCHMARK(BM_ClearUnused)->Apply(body_counts);
BENCHMARK(BM_CutField)->Apply(body_counts);
BENCHMARK(BM_RaisePrism)->Apply(body_counts);

} // namespace
