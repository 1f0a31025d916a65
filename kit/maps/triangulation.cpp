#include "kit/maps/triangulation.h"

#include <algorithm>
#include <deque>
#include <mutex>
#include <string_view>

#include "kit/base/parallel.h"
#include "kit/files/triangle_file.h"
#include "kit/maps/delaunay.h"
#include "kit/maps/front.h"
#include "kit/maps/region_sets.h"

namespace korvel::kit {
namespace {

// The triangles of one region.
struct FilledRegion {
    std::vector<PLYDT::TRG> triangles;
    Filled filled = Filled::not_at_all;
};

// The regions of a map with their sides, in a set for each thread that asks at the same time.
class SetsOfThreads {
public:
    // The first one is the caller's.
    SetsOfThreads(const Map& map, PLYDT& first) : map_(map), free_{&first} {}

    PLYDT& take();
    void put_back(PLYDT& set);

private:
    const Map& map_;
    std::mutex mutex_;
    std::deque<PLYDT> others_;
    std::vector<PLYDT*> free_;
};

std::vector<FilledRegion> fill_regions(const Map& map, const TriangulateOptions& options,
                                       PLYDT& set, const Context& context);
void fill_by_delaunay(const PLYDT& set, int region, FilledRegion& out);
void list_triangles(const std::vector<FilledRegion>& regions, PLYDT& set);
std::vector<int> advance_front(PLYDT& set, const Context& context);

constexpr const char* triangulating = "triangulating regions";

} // namespace

Triangulation triangulate(const Map& map, const TriangulateOptions& options,
                          const Context& context) {
    const auto state = std::make_shared<Triangulation::State>();
    copy_oriented(map, state->set);
    state->is_on_grid = map.is_on_grid();
    state->placement = map.placement();
    Triangulation triangulation;
    triangulation.state_ = state;
    if (options.fill == Fill::front) {
        state->ends = advance_front(state->set, context);
        for (const Region region : map) {
            state->filled.push_back(triangulation.coverage(region.index()).is_tiling
                                        ? Filled::by_front
                                        : Filled::not_at_all);
        }
        return triangulation;
    }
    const std::vector<FilledRegion> regions = fill_regions(map, options, state->set, context);
    list_triangles(regions, state->set);
    int end = 0;
    for (const FilledRegion& region : regions) {
        end += static_cast<int>(region.triangles.size());
        state->ends.push_back(end);
        state->filled.push_back(region.filled);
    }
    return triangulation;
}

namespace {

std::vector<FilledRegion> fill_regions(const Map& map, const TriangulateOptions& options,
                                       PLYDT& set, const Context& context) {
    std::vector<FilledRegion> regions(static_cast<std::size_t>(map.size()));
    const auto out = [&](int region) -> FilledRegion& {
        return regions[static_cast<std::size_t>(region)];
    };
    if (options.fill == Fill::delaunay) {
        for_each_in_parallel(
            map.size(), options.threads,
            [&](int region) { fill_by_delaunay(set, region, out(region)); }, triangulating,
            context);
        return regions;
    }
    set.creat_top_rel();
    SetsOfThreads sets(map, set);
    for_each_in_parallel(
        map.size(), options.threads,
        [&](int region) {
            PLYDT& taken = sets.take();
            if (cover_by_front(taken, region, false, context)) {
                out(region) = {{taken.trg_list.begin(), taken.trg_list.end()}, Filled::by_front};
            } else {
                fill_by_delaunay(taken, region, out(region));
            }
            sets.put_back(taken);
        },
        triangulating, context);
    return regions;
}

PLYDT& SetsOfThreads::take() {
    PLYDT* set = nullptr;
    {
        const std::lock_guard lock(mutex_);
        if (!free_.empty()) {
            set = free_.back();
            free_.pop_back();
            return *set;
        }
        set = &others_.emplace_back();
    }
    copy_oriented(map_, *set);
    set->creat_top_rel();
    return *set;
}

void SetsOfThreads::put_back(PLYDT& set) {
    const std::lock_guard lock(mutex_);
    free_.push_back(&set);
}

void fill_by_delaunay(const PLYDT& set, int region, FilledRegion& out) {
    const Outline outline = outline_of(set, set.region_list[region]);
    out.triangles = delaunay_triangles(outline).between(outline.points);
    out.filled = out.triangles.empty() ? Filled::not_at_all : Filled::by_delaunay;
}

void list_triangles(const std::vector<FilledRegion>& regions, PLYDT& set) {
    std::size_t count = 0;
    for (const FilledRegion& region : regions) {
        count += region.triangles.size();
    }
    set.trg_list.SetSize(static_cast<int>(count));
    PLYDT::TRG* next = set.trg_list.GetData();
    for (const FilledRegion& region : regions) {
        next = std::copy(region.triangles.begin(), region.triangles.end(), next);
    }
}

// One call for all regions, because none of them lists a triangle that another one has listed:
// fronts leave their regions. Returns the number of triangles after each region.
std::vector<int> advance_front(PLYDT& set, const Context& context) {
    std::vector<int> ends;
    ends.reserve(static_cast<std::size_t>(set.region_list.GetSize()));
    const TraceFilesOverride no_traces(false);
    const CheckPointScope after_regions([&](std::string_view stage, long long done, long long all) {
        if (stage == "triangulating") {
            ends.push_back(set.trg_list.GetSize());
            context.report(triangulating, done, all);
        }
        context.stop_if_requested(triangulating);
    });
    set.region_tranglate();
    return ends;
}

} // namespace

void copy_oriented(const Map& map, PLYDT& set) {
    copy_regions(map.regions(), set);
    orient_rings(set);
}

Triangulation::Triangle Triangulation::At::operator()(int k) const {
    const PLYDT::TRG& triangle = set->trg_list[first + k];
    const auto corner = [&](int point) {
        return grid->to_user(Point2{set->pt_list[point].x, set->pt_list[point].y});
    };
    return {corner(triangle.va), corner(triangle.vb), corner(triangle.vc)};
}

IndexedRange<Triangulation::At> Triangulation::of_region(int region) const {
    const auto slot = static_cast<std::size_t>(region);
    const int first = region == 0 ? 0 : state_->ends[slot - 1];
    return {state_->ends[slot] - first, {&state_->set, &state_->placement.grid, first}};
}

int Triangulation::count(Filled filled) const {
    return static_cast<int>(std::count(state_->filled.begin(), state_->filled.end(), filled));
}

Coverage Triangulation::coverage(int region) const {
    const auto slot = static_cast<std::size_t>(region);
    Coverage coverage = measure_coverage(state_->set, state_->set.region_list[region],
                                         region == 0 ? 0 : state_->ends[slot - 1],
                                         state_->ends[slot], state_->is_on_grid);
    coverage.region_area = state_->placement.grid.area(coverage.region_area);
    coverage.triangle_area = state_->placement.grid.area(coverage.triangle_area);
    return coverage;
}

void Triangulation::write(const std::filesystem::path& file) const {
    write_completely(*this, file);
}

void Triangulation::write(OutputFile& out) const {
    write_triangles(state_->set, state_->ends, out.stream(), state_->placement.grid);
}

} // namespace korvel::kit
