// What the passes over a body model cost, on balls of 20 · 4^rounds triangles, and what one edit of
// a model of many prisms costs.

#include <cstdio>
#include <memory>
#include <numeric>
#include <utility>

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

/// Tests every edge of the ball against every face that is not at its ends.
void BM_TestCrossings(benchmark::State& state) {
    TMOD3D model;
    make_ball(model, static_cast<int>(state.range(0)));
    model.set_all_body_as_relat();
    for (auto _ : state) {
        benchmark::DoNotOptimize(model.legal_body_rel_side());
    }
    count_faces(state);
}

/// A prism of eight vertices and twelve faces, the `place`-th of a row.
void set_prism(PLYDT& d, int place) {
    d.prism_pts.RemoveAll();
    for (const double z : {0.0, 1.0}) {
        for (const auto& [x, y] : {std::pair(0, 0), {2, 0}, {2, 1}, {0, 1}}) {
            d.prism_pts.Add({x + 3.0 * place, static_cast<double>(y), z, 0});
        }
    }
    d.trg_list.SetSize(2);
    for (int t = 0; t < 2; ++t) {
        d.trg_list[t].va = 0;
        d.trg_list[t].vb = t + 1;
        d.trg_list[t].vc = t + 2;
    }
    d.ring_list.SetSize(1);
    d.ring_list[0].pts.SetSize(4);
    std::iota(d.ring_list[0].pts.begin(), d.ring_list[0].pts.end(), 0);
}

/// A model of as many prisms as the state says, half of them added to the other half.
void make_prisms(TMOD3D& model, PLYDT& d, int prisms) {
    set_prism(d, 0);
    model.create3dmode(d);
    while (model.bodies.GetSize() < prisms) {
        TMOD3D more(model);
        for (VERT3D& vertex : more.verts) {
            vertex.model_xyz[0] += 3.0 * model.bodies.GetSize();
        }
        while (model.bodies.GetSize() + more.bodies.GetSize() > prisms) {
            more.bodies.RemoveAt(more.bodies.GetUpperBound());
        }
        model.add_model(more);
        model.clear_no_use_ele();
    }
}

/// One more call on a model of many prisms: raising, adding, removing one.
template <class Edit>
void edit_prisms(benchmark::State& state, Edit edit) {
    const auto before = korvel::set_message_box_handler([](const char*, unsigned) { return IDOK; });
    const auto prisms = static_cast<int>(state.range(0));
    TMOD3D model;
    TMOD3D one;
    PLYDT d;
    make_prisms(model, d, prisms);
    make_prisms(one, d, 1);
    set_prism(d, prisms);
    for (auto _ : state) {
        edit(model, one, d);
    }
    korvel::set_message_box_handler(before);
}

void BM_RaisePrism(benchmark::State& state) {
    edit_prisms(state, [](TMOD3D& model, TMOD3D&, PLYDT& d) { model.create3dmode(d); });
}

void BM_AddPrism(benchmark::State& state) {
    edit_prisms(state, [](TMOD3D& model, TMOD3D& one, PLYDT&) { model.add_model(one); });
}

void BM_RemovePrism(benchmark::State& state) {
    edit_prisms(state, [](TMOD3D& model, TMOD3D&, PLYDT&) { model.deletet(1); });
}

void BM_CleanPrisms(benchmark::State& state) {
    edit_prisms(state, [](TMOD3D& model, TMOD3D&, PLYDT&) { model.clear_no_use_ele(); });
}

constexpr int fewest_prisms = 1250;
constexpr int most_prisms = 10000;

BENCHMARK(BM_StartBall)->DenseRange(fewest_rounds, most_rounds)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadModel)->DenseRange(fewest_rounds, most_rounds)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindRelations)->DenseRange(fewest_rounds, most_rounds)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CutSection)->DenseRange(fewest_rounds, most_rounds)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TestCrossings)->DenseRange(fewest_rounds, 6)->Unit(benchmark::kMillisecond);

void on_prisms(benchmark::internal::Benchmark* edit) {
    // A fixed number of calls, since each one changes the model.
    for (int prisms = fewest_prisms; prisms <= most_prisms; prisms *= 2) {
        edit->Arg(prisms);
    }
    edit->Iterations(20)->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_RaisePrism)->Apply(on_prisms);
BENCHMARK(BM_AddPrism)->Apply(on_prisms);
BENCHMARK(BM_RemovePrism)->Apply(on_prisms);
BENCHMARK(BM_CleanPrisms)->Apply(on_prisms);

} // namespace
