#include "apps/workbench/document/raise_map.h"

#include <string>
#include <vector>

#include <QCoreApplication>

#include "apps/workbench/document/map_model.h"
#include "apps/workbench/document/solid_model.h"
#include "apps/workbench/document/solid_operations.h"

namespace korvel::workbench {

void raise_map(const MapModel& map, SolidModel& solids, const RaiseSettings& settings) {
    const std::shared_ptr<const FoundMap> found = map.found();
    if (found == nullptr) {
        return;
    }
    const kit::RaiseOptions options =
        raise_options(settings, found->map.size(), found->levels, map.selected());
    solids.start(QCoreApplication::translate("SolidModel", "Raise"),
                 [found, options, adds = settings.adds](const kit::Solids& before,
                                                        const kit::Context& context) {
                     kit::RaiseOptions raising = options;
                     raising.on_left_out = [&](const kit::LeftOut& left_out) {
                         if (left_out.reason != kit::LeftOut::Reason::no_levels) {
                             context.warn("region " + std::to_string(left_out.region) +
                                          " was left out: " + kit::text(left_out));
                         }
                     };
                     kit::Raised raised = kit::raise(found->map, raising, context);
                     if (raised.solids.empty()) {
                         throw kit::input_error("no region became a body");
                     }
                     return with_added(before, std::move(raised.solids), adds, context);
                 });
}

kit::RaiseOptions raise_options(const RaiseSettings& settings, int regions,
                                const std::vector<std::optional<kit::Levels>>& levels,
                                const std::set<int>& selected) {
    kit::RaiseOptions options;
    options.axis = settings.axis;
    options.separate = settings.separate;
    options.only_listed = true;
    options.levels_of_region.resize(static_cast<std::size_t>(regions));
    for (int region = 0; region < regions; ++region) {
        const auto r = static_cast<std::size_t>(region);
        if (!settings.selected_only || selected.contains(region)) {
            options.levels_of_region[r] =
                r < levels.size() && levels[r] ? levels[r] : settings.levels;
        }
    }
    return options;
}

} // namespace korvel::workbench
