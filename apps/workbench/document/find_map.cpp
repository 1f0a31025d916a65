#include "apps/workbench/document/find_map.h"

#include <QCoreApplication>

namespace korvel::workbench {
namespace {

void measure(FoundMap& found);
void take_notes(FoundMap& found, const std::vector<RegionNote>& notes);
void list_problems(FoundMap& found, const kit::FoundRegions& regions,
                   const std::vector<kit::Gap>& gaps);
Problem problem_of(const kit::Gap& gap, const kit::Grid& grid);
Problem problem_of(const kit::Dropped& dropped, const kit::Grid& grid);

} // namespace

std::shared_ptr<const FoundMap> find_map(kit::Network network, const FindMapOptions& options,
                                         const std::vector<RegionNote>& notes,
                                         const kit::Context& context) {
    const std::vector<kit::Gap> gaps =
        kit::find_gaps(network, options.gap_reach, options.tolerance, context);
    const kit::FindOptions find = {.tolerance = options.tolerance};
    kit::FoundRegions regions = kit::find_regions(std::move(network), find, context);
    auto found = std::make_shared<FoundMap>(regions.take_map());
    found->map.colour_distinctly();
    found->neighbours = found->map.neighbours();
    found->report = regions.report();
    context.stop_if_requested("finding regions");
    measure(*found);
    take_notes(*found, notes);
    list_problems(*found, regions, gaps);
    return found;
}

namespace {

void measure(FoundMap& found) {
    const auto count = static_cast<std::size_t>(found.map.size());
    found.areas.reserve(count);
    found.boxes.reserve(count);
    found.places.reserve(count);
    for (const kit::Region region : found.map) {
        found.areas.push_back(region.area());
        found.boxes.push_back(region.bounds());
        found.places.push_back(region.inner_point());
    }
}

// Of several notes in a region the last one holds.
void take_notes(FoundMap& found, const std::vector<RegionNote>& notes) {
    found.levels.resize(static_cast<std::size_t>(found.map.size()));
    for (const RegionNote& note : notes) {
        if (const auto region = found.locator.region_at(note.place)) {
            found.map.set_name(*region, note.name);
            found.levels[static_cast<std::size_t>(*region)] = note.levels;
        }
    }
}

void list_problems(FoundMap& found, const kit::FoundRegions& regions,
                   const std::vector<kit::Gap>& gaps) {
    const kit::Grid& grid = found.map.placement().grid;
    for (const kit::Gap& gap : gaps) {
        found.problems.push_back(problem_of(gap, grid));
    }
    for (const kit::Dropped& dropped : regions.dropped()) {
        found.problems.push_back(problem_of(dropped, grid));
    }
    for (const int sliver : found.map.slivers()) {
        found.problems.push_back(
            {Problem::Kind::sliver,
             QCoreApplication::translate("Problem", "region %1 is a sliver").arg(sliver),
             found.map[sliver].bounds(),
             {}});
    }
}

Problem problem_of(const kit::Gap& gap, const kit::Grid& grid) {
    const std::string size = kit::number_text(grid.length(gap.length()));
    Problem problem;
    problem.kind = Problem::Kind::gap;
    problem.text = QCoreApplication::translate("Problem", "curve %1 ends %2 before a line")
                       .arg(gap.curve)
                       .arg(QString::fromStdString(size));
    for (const kit::GridPoint& point : {gap.end, gap.to}) {
        const kit::Point2 user = grid.to_user(point);
        problem.bounds.take_in(user[0], user[1]);
    }
    return problem;
}

Problem problem_of(const kit::Dropped& dropped, const kit::Grid& grid) {
    using Reason = kit::Dropped::Reason;
    Problem problem;
    switch (dropped.reason) {
    case Reason::no_length:
        problem.kind = Problem::Kind::no_length;
        break;
    case Reason::duplicate:
        problem.kind = Problem::Kind::duplicate;
        break;
    case Reason::bridge:
        problem.kind = Problem::Kind::bridge;
        break;
    case Reason::dangling:
    case Reason::touching_itself:
        problem.kind = Problem::Kind::loose_end;
        break;
    }
    problem.text = QString::fromStdString(kit::text(dropped));
    problem.line.reserve(dropped.line.size());
    for (const kit::GridPoint& point : dropped.line) {
        const kit::Point2 user = grid.to_user(point);
        problem.bounds.take_in(user[0], user[1]);
        problem.line.push_back(user);
    }
    return problem;
}

} // namespace

} // namespace korvel::workbench
