#include "kit/maps/triangulation.h"

#include "kit/files/triangle_file.h"
#include "kit/maps/region_sets.h"

namespace korvel::kit {

Triangulation triangulate(const Map& map, const Context& context) {
    const auto state = std::make_shared<Triangulation::State>();
    PLYDT& set = state->set;
    copy_oriented(map, set);
    state->is_on_grid = map.is_on_grid();
    state->ends.reserve(static_cast<std::size_t>(map.size()));
    const TraceFilesOverride no_traces(false);
    // One call for all regions, which reports after each of them.
    const CheckPointScope after_regions([&](std::string_view stage, long long done, long long all) {
        if (stage == "triangulating") {
            state->ends.push_back(set.trg_list.GetSize());
            context.report("triangulating regions", done, all);
        }
        context.stop_if_requested("triangulating regions");
    });
    set.region_tranglate();
    Triangulation triangulation;
    triangulation.state_ = state;
    return triangulation;
}

void copy_oriented(const Map& map, PLYDT& set) {
    copy_regions(map.regions(), set);
    orient_rings(set);
}

Triangulation::Triangle Triangulation::At::operator()(int k) const {
    const PLYDT::TRG& triangle = set->trg_list[first + k];
    const auto corner = [&](int point) {
        return Point2{set->pt_list[point].x, set->pt_list[point].y};
    };
    return {corner(triangle.va), corner(triangle.vb), corner(triangle.vc)};
}

IndexedRange<Triangulation::At> Triangulation::of_region(int region) const {
    const auto slot = static_cast<std::size_t>(region);
    const int first = region == 0 ? 0 : state_->ends[slot - 1];
    return {state_->ends[slot] - first, {&state_->set, first}};
}

Coverage Triangulation::coverage(int region) const {
    const auto slot = static_cast<std::size_t>(region);
    return measure_coverage(state_->set, state_->set.region_list[region],
                            region == 0 ? 0 : state_->ends[slot - 1], state_->ends[slot],
                            state_->is_on_grid);
}

void Triangulation::write(const std::filesystem::path& file) const {
    write_completely(*this, file);
}

void Triangulation::write(OutputFile& out) const {
    write_triangles(state_->set, state_->ends, out.stream());
}

} // namespace korvel::kit
