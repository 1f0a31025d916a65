// Regions to triangles.

#include <cmath>
#include <optional>
#include <vector>

#include "bench/compare/contest.h"
#include "bench/compare/jobs.h"
#include "bench/compare/peers.h"
#include "bench/inputs/rings.h"
#include "bench/inputs/samples.h"

namespace korvel::bench {
namespace {

void compare_map(Table& table, const char* name, std::optional<double> goal);
void compare_rings(Table& table, bool with_holes, const std::vector<int>& sizes, int goal_size);
void race(Series& series, PLYDT& set, int size, std::optional<double> goal);
Run triangulate(PLYDT& set);
double area(const PLYDT& set);

} // namespace

void compare_triangles(Table& table, bool is_quick) {
    compare_map(table, "us-states", {});
    compare_map(table, "us-counties", 1.5);
    const std::vector<int> sizes =
        is_quick ? std::vector{2'000, 4'000} : std::vector{5'000, 10'000, 20'000, 50'000};
    for (const bool with_holes : {false, true}) {
        compare_rings(table, with_holes, sizes, 20'000);
    }
}

namespace {

void compare_map(Table& table, const char* name, std::optional<double> goal) {
    PLYDT set;
    sample_regions(name, 4, set);
    Series series(table, "triangles", name, "area");
    race(series, set, set.pt_list.GetSize(), goal);
}

void compare_rings(Table& table, bool with_holes, const std::vector<int>& sizes, int goal_size) {
    Series series(table, "triangles", with_holes ? "ring, 100 holes" : "ring", "area");
    for (const int size : sizes) {
        PLYDT set;
        add_noisy_region(set, size, with_holes);
        race(series, set, size,
             size == goal_size && !with_holes ? std::optional(3.0) : std::nullopt);
        if (!series.goes_on()) {
            break;
        }
    }
}

void race(Series& series, PLYDT& set, int size, std::optional<double> goal) {
    series.race(size, [&] { return triangulate(set); },
                {{"CGAL", [&] { return triangulate_with_cgal(set); }, goal}});
}

/// Topology and triangles of all regions, without trace files.
Run triangulate(PLYDT& set) {
    PLYDT::set_trace_files(false);
    set.side_list.RemoveAll(); // each run would add to the sides of the run before
    Run run;
    run.seconds = seconds_of([&] { set.region_tranglate(); });
    run.found = area(set);
    return run;
}

double area(const PLYDT& set) {
    double twice = 0;
    for (const PLYDT::TRG& t : set.trg_list) {
        const VERT2D& a = set.pt_list[t.va];
        const VERT2D& b = set.pt_list[t.vb];
        const VERT2D& c = set.pt_list[t.vc];
        twice += std::abs((b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y));
    }
    return twice / 2;
}

} // namespace
} // namespace korvel::bench
