// Models of many bodies: raising, merging and removing. No peer has these jobs.

#include <functional>
#include <vector>

#include "bench/compare/contest.h"
#include "bench/compare/jobs.h"
#include "bench/inputs/models.h"

namespace korvel::bench {
namespace {

constexpr DoublingGoal goal = {10'000, 2.3};

Run merge(TMOD3D& model);
Run remove_one(TMOD3D& model);
Run thin_out(TMOD3D& model);
Run raise_one(TMOD3D& model);
template <class Work>
Run change_copy(TMOD3D& model, Work work);
Run raise_prisms(int bodies);

} // namespace

void compare_merging(Table& table, bool is_quick) {
    const std::vector<int> sizes =
        is_quick ? std::vector{100, 200} : std::vector{1'250, 2'500, 5'000, 10'000};
    const struct {
        const char* name;
        Run (*job)(TMOD3D& model);
    } jobs[] = {
        {"add_model", merge},
        {"deletet", remove_one},
        {"clear_no_use_ele", thin_out},
        {"create3dmode", raise_one},
    };
    for (const auto& change : jobs) {
        Series series(table, change.name, "prisms", "bodies", goal);
        for (const int bodies : sizes) {
            TMOD3D model;
            read_prism_field(model, bodies);
            series.race(bodies, [&] { return change.job(model); });
        }
    }
    Series series(table, "all raised", "prisms", "bodies");
    for (std::size_t k = 0; k < sizes.size() && series.goes_on(); ++k) {
        series.race(sizes[k], [&] { return raise_prisms(sizes[k]); });
    }
}

namespace {

Run merge(TMOD3D& model) {
    return change_copy(model, [&](TMOD3D& copy) { copy.add_model(model); });
}

Run remove_one(TMOD3D& model) {
    return change_copy(model, [](TMOD3D& copy) { copy.deletet(copy.bodies.GetSize() / 2); });
}

Run raise_one(TMOD3D& model) {
    PLYDT set;
    prism_set(set, model.bodies.GetSize());
    const Silence silence;
    return change_copy(model, [&](TMOD3D& copy) { copy.create3dmode(set); });
}

Run thin_out(TMOD3D& model) {
    return change_copy(model, [](TMOD3D& copy) { copy.clear_no_use_ele(); });
}

/// Runs `work` on a copy of the model.
template <class Work>
Run change_copy(TMOD3D& model, Work work) {
    TMOD3D copy(model);
    Run run;
    run.seconds = seconds_of([&] { work(copy); });
    run.found = copy.bodies.GetSize();
    return run;
}

/// Raises one prism after another, until all are raised or the time is up.
Run raise_prisms(int bodies) {
    std::vector<PLYDT> sets(static_cast<std::size_t>(bodies));
    for (int cell = 0; cell < bodies; ++cell) {
        prism_set(sets[static_cast<std::size_t>(cell)], cell);
    }
    const Silence silence;
    TMOD3D model;
    Run run;
    for (PLYDT& set : sets) {
        run.seconds += seconds_of([&] { model.create3dmode(set); });
        if (run.seconds > run_limit) {
            run.finished = false;
            break;
        }
    }
    run.found = model.bodies.GetSize();
    return run;
}

} // namespace
} // namespace korvel::bench
