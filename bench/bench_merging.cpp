// What raising, merging and thinning cost in models of many bodies.

#include <memory>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/inputs/models.h"

namespace {

void make_model(TMOD3D& model, int bodies) {
    TMOD3D made;
    korvel::bench::prism_field(made, bodies);
    const korvel::bench::ModelFile file(made);
    korvel::bench::read_model(file.path(), model);
}

/// Times `work` on a fresh copy of a field of prisms.
template <class Work>
void change(benchmark::State& state, Work work) {
    TMOD3D model;
    make_model(model, static_cast<int>(state.range(0)));
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

void BM_AddModel(benchmark::State& state) {
    change(state, [](TMOD3D& model, TMOD3D& same) { model.add_model(same); });
}

void BM_DeleteBody(benchmark::State& state) {
    change(state, [](TMOD3D& model, TMOD3D&) { model.deletet(model.bodies.GetSize() / 2); });
}

void BM_ClearUnused(benchmark::State& state) {
    change(state, [](TMOD3D& model, TMOD3D&) { model.clear_no_use_ele(); });
}

void BM_CutField(benchmark::State& state) {
    TMOD3D model;
    make_model(model, static_cast<int>(state.range(0)));
    TMOD2D section;
    for (auto _ : state) {
        model.get_section(std::vector<double>{0, 0, 1, -25}.data(), section); // every body
    }
    state.SetComplexityN(state.range(0));
    state.counters["polygons"] = section.polys.GetSize();
}

/// One more prism on top of as many as there are.
void BM_RaisePrism(benchmark::State& state) {
    const korvel::bench::Silence silence;
    TMOD3D model;
    make_model(model, static_cast<int>(state.range(0)));
    int cell = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        PLYDT set;
        korvel::bench::prism_set(set, cell++);
        state.ResumeTiming();
        model.create3dmode(set);
    }
    state.SetComplexityN(state.range(0));
}

void sizes(benchmark::internal::Benchmark* each) {
    for (const int bodies : {1'250, 2'500, 5'000, 10'000}) {
        each->Arg(bodies);
    }
    each->ArgName("bodies")->Unit(benchmark::kMillisecond)->Complexity(benchmark::oAuto);
}

BENCHMARK(BM_AddModel)->Apply(sizes);
BENCHMARK(BM_DeleteBody)->Apply(sizes);
BENCHMARK(BM_ClearUnused)->Apply(sizes);
BENCHMARK(BM_CutField)->Apply(sizes);
BENCHMARK(BM_RaisePrism)->Apply(sizes);

} // namespace
