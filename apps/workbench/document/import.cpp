#include "apps/workbench/document/import.h"

#include <utility>
#include <variant>

#include <QCoreApplication>

namespace korvel::workbench {
namespace {

Imported from_features(const std::filesystem::path& file, const ImportOptions& options,
                       const kit::Context& context);
Imported from_text(const std::filesystem::path& file, const ImportOptions& options,
                   const kit::Context& context);
Imported from_network(const kit::Network& network);
Imported from_map(const kit::Map& map, const kit::Context& context);
Imported from_solids(kit::Solids solids);
kit::Network network_of(const kit::Map& map);
std::vector<RegionNote> notes_of(const kit::Map& map);

/// "48 curves with 3300 points"
QString counted(int count, const char* one, const char* many);

} // namespace

Imported import_file(const std::filesystem::path& file, const ImportOptions& options,
                     const kit::Context& context) {
    if (kit::holds_mesh(file)) {
        return from_solids(kit::read_solids(file, {}, nullptr, context));
    }
    if (kit::holds_features(file)) {
        return from_features(file, options, context);
    }
    return from_text(file, options, context);
}

namespace {

// Borders that polygons share become one curve, and names go to the regions.
Imported from_features(const std::filesystem::path& file, const ImportOptions& options,
                       const kit::Context& context) {
    const kit::Features features = kit::read_features(file, options.features, context);
    const kit::Network network = kit::network_of(features, options.grid);
    if (!kit::has_shape(features, kit::Shape::polygons)) {
        return from_network(network);
    }
    const kit::FoundRegions found = kit::find_regions(network, {}, context);
    kit::SourceReport report;
    const kit::Map map = kit::with_sources(found.map(), features, true, report, context);
    Imported imported = from_network(found.noded());
    imported.notes = notes_of(map);
    return imported;
}

Imported from_text(const std::filesystem::path& file, const ImportOptions& options,
                   const kit::Context& context) {
    const kit::TextFile text(file);
    kit::AnyFile any = kit::read_any(text, context);
    if (std::holds_alternative<kit::Network>(any.contents)) {
        return from_network(kit::Network::read(text, options.grid));
    }
    if (const auto* map = std::get_if<kit::Map>(&any.contents)) {
        return from_map(*map, context);
    }
    if (auto* solids = std::get_if<kit::Solids>(&any.contents)) {
        return from_solids(std::move(*solids));
    }
    throw kit::input_error(kit::text_of(file) + ": a " + kit::kind_name(any.kind) +
                               ", which contains neither a map nor solids",
                           {.file = kit::text_of(file)});
}

Imported from_network(const kit::Network& network) {
    Imported imported;
    imported.curves = Curves(network);
    imported.report = counted(network.curve_count(), "%1 curve", "%1 curves") +
                      counted(network.point_count(), " with %1 point", " with %1 points");
    return imported;
}

Imported from_map(const kit::Map& map, const kit::Context& context) {
    Imported imported = from_network(kit::find_regions(network_of(map), {}, context).noded());
    imported.notes = notes_of(map);
    return imported;
}

Imported from_solids(kit::Solids solids) {
    Imported imported;
    imported.report = counted(solids.size(), "%1 body", "%1 bodies") +
                      counted(solids.face_count(), " of %1 face", " of %1 faces");
    imported.solids = std::move(solids);
    return imported;
}

kit::Network network_of(const kit::Map& map) {
    const kit::Grid& grid = map.placement().grid;
    kit::Network network;
    network.set_placement(map.placement());
    for (const kit::Region region : map) {
        for (int ring = 0; ring < region.ring_count(); ++ring) {
            Curve curve;
            for (const kit::Point2& corner : region.ring(ring)) {
                curve.push_back(grid.nearest(corner));
            }
            if (!curve.empty()) {
                curve.push_back(curve.front());
            }
            network.add_curve(curve);
        }
    }
    return network;
}

std::vector<RegionNote> notes_of(const kit::Map& map) {
    std::vector<RegionNote> notes;
    for (const kit::Region region : map) {
        if (!region.name().empty()) {
            if (const auto place = region.inner_point()) {
                notes.push_back({.place = *place, .name = region.name()});
            }
        }
    }
    return notes;
}

QString counted(int count, const char* one, const char* many) {
    return QCoreApplication::translate("Import", count == 1 ? one : many).arg(count);
}

} // namespace
} // namespace korvel::workbench
