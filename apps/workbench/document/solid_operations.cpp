#include "apps/workbench/document/solid_operations.h"

#include <string>
#include <utility>
#include <vector>

#include <QCoreApplication>

#include "apps/workbench/document/solid_model.h"

namespace korvel::workbench {
namespace {

QString title(const char* text) {
    return QCoreApplication::translate("SolidModel", text);
}

} // namespace

void make_starter(SolidModel& solids, const Starter& starter) {
    solids.start(
        title(starter.is_ball ? "New ball" : "New cuboid"),
        [starter](const kit::Solids& before, const kit::Context& context) {
            kit::Solids made =
                starter.is_ball
                    ? kit::make_ball(starter.centre, starter.lengths[0], starter.rounds, context)
                    : kit::make_cuboid(starter.centre, starter.lengths, starter.rounds, context);
            return with_added(before, std::move(made), starter.adds, context);
        });
}

void weld(SolidModel& solids, double tolerance) {
    solids.start(title("Weld"), [tolerance](kit::Solids welded, const kit::Context& context) {
        const kit::WeldReport report = kit::weld(welded, {.tolerance = tolerance}, context);
        context.warn("joined " + std::to_string(report.vertices_joined) + " vertices, " +
                     std::to_string(report.faces_shared) + " faces are now shared");
        return welded;
    });
}

void clean(SolidModel& solids) {
    solids.start(title("Clean"), [](kit::Solids cleaned, const kit::Context& context) {
        const CheckPointScope calls = context.follow_calls();
        cleaned.clean();
        return cleaned;
    });
}

void remove_bodies(SolidModel& solids, const std::set<int>& bodies) {
    solids.start(title("Delete bodies"), [numbers = std::vector<int>(bodies.begin(), bodies.end())](
                                             kit::Solids left, const kit::Context& context) {
        if (numbers.size() == static_cast<std::size_t>(left.size())) {
            return kit::Solids();
        }
        const CheckPointScope calls = context.follow_calls();
        left.remove(numbers);
        return left;
    });
}

kit::Solids with_added(const kit::Solids& before, kit::Solids others, bool adds,
                       const kit::Context& context) {
    if (!adds || before.empty()) {
        return others;
    }
    std::vector<kit::Solids> parts;
    parts.push_back(before);
    parts.push_back(std::move(others));
    return kit::merge(std::move(parts), context);
}

} // namespace korvel::workbench
