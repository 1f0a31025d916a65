#include "apps/workbench/document/import.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <variant>

#include <QCoreApplication>

namespace korvel::workbench {
namespace {

Imported from_features(const std::filesystem::path& file, const ImportOptions& options,
                       const kit::Context& context, MapSource& source);
Imported from_text(const std::filesystem::path& file, const ImportOptions& options,
                   const kit::Context& context, MapSource& source);
Imported from_curves(const kit::TextFile& text, const kit::Network& network,
                     const ImportOptions& options, MapSource& source);
Imported from_map(kit::Map map, const ImportOptions& options, const kit::Context& context,
                  MapSource& source);
Imported from_network(const kit::Network& network);
Imported from_solids(kit::Solids solids);
bool transform(std::vector<kit::Point2>& points, std::string& reference,
               const ImportOptions& options, MapSource& source);
kit::Network network_of(const kit::Map& map);
std::vector<RegionNote> notes_of(const kit::Map& map);

/// "48 curves with 3300 points"
QString counted(int count, const char* one, const char* many);

} // namespace

Imported import_file(const std::filesystem::path& file, const ImportOptions& options,
                     const kit::Context& context) {
    MapSource source;
    return import_file(file, options, context, source);
}

Imported import_file(const std::filesystem::path& file, const ImportOptions& options,
                     const kit::Context& context, MapSource& source) {
    for (const std::string& system : {options.reference, options.project}) {
        kit::reference_name(system); // throws for one that is not known
    }
    if (kit::holds_mesh(file)) {
        return from_solids(kit::read_solids(file, {}, nullptr, context));
    }
    if (kit::holds_features(file)) {
        return from_features(file, options, context, source);
    }
    return from_text(file, options, context, source);
}

namespace {

// Borders that polygons share become one curve, and names go to the regions.
Imported from_features(const std::filesystem::path& file, const ImportOptions& options,
                       const kit::Context& context, MapSource& source) {
    kit::Features features = kit::read_features(file, options.features, context);
    if (features.layers.size() > 1) {
        source.layers = features.layers;
    }
    transform(features.points, features.reference, options, source);
    const kit::Network network = kit::network_of(features, options.grid);
    if (network.curve_count() == 0) {
        throw kit::input_error(kit::text_of(file) + ": contains neither lines nor polygons" +
                                   (options.features.where.empty() ? "" : " of the condition"),
                               {.file = kit::text_of(file)});
    }
    Imported imported;
    if (kit::has_shape(features, kit::Shape::polygons)) {
        const kit::FoundRegions found = kit::find_regions(network, {}, context);
        kit::SourceReport report;
        imported = from_network(found.noded());
        imported.notes = notes_of(kit::with_sources(found.map(), features, true, report, context));
    } else {
        imported = from_network(network);
    }
    imported.largest_shift = network.largest_shift();
    return imported;
}

Imported from_text(const std::filesystem::path& file, const ImportOptions& options,
                   const kit::Context& context, MapSource& source) {
    const kit::TextFile text(file);
    kit::AnyFile any = kit::read_any(text, context);
    if (const auto* network = std::get_if<kit::Network>(&any.contents)) {
        return from_curves(text, *network, options, source);
    }
    if (auto* map = std::get_if<kit::Map>(&any.contents)) {
        return from_map(std::move(*map), options, context, source);
    }
    if (auto* solids = std::get_if<kit::Solids>(&any.contents)) {
        return from_solids(std::move(*solids));
    }
    throw kit::input_error(kit::text_of(file) + ": a " + kit::kind_name(any.kind) +
                               ", which contains neither a map nor solids",
                           {.file = kit::text_of(file)});
}

// The grid that was chosen is one of the coordinates after they are transformed.
Imported from_curves(const kit::TextFile& text, const kit::Network& network,
                     const ImportOptions& options, MapSource& source) {
    kit::Features curves = kit::features_of(network);
    const bool are_other = transform(curves.points, curves.reference, options, source);
    kit::Network placed =
        are_other ? kit::network_of(curves, options.grid) : kit::Network::read(text, options.grid);
    placed.set_placement({placed.placement().grid, curves.reference});
    Imported imported = from_network(placed);
    imported.largest_shift = placed.largest_shift();
    return imported;
}

Imported from_map(kit::Map map, const ImportOptions& options, const kit::Context& context,
                  MapSource& source) {
    std::vector<kit::Point2> points = map.points();
    std::string reference = map.placement().reference;
    const bool are_other = transform(points, reference, options, source);
    const bool has_choice = options.grid.step || options.grid.origin;
    const bool keeps_grid = map.is_on_grid() && !has_choice && !are_other;
    const kit::Grid grid = keeps_grid ? map.placement().grid : kit::grid_for(points, options.grid);
    double largest_shift = 0;
    if (!keeps_grid) {
        for (const kit::Point2& point : points) {
            const kit::Point2 moved = grid.to_user(grid.nearest(point));
            largest_shift = std::max(
                {largest_shift, std::abs(moved[0] - point[0]), std::abs(moved[1] - point[1])});
        }
        map.move_points(points, {grid, reference});
    }
    map.set_placement({grid, std::move(reference)});
    Imported imported = from_network(kit::find_regions(network_of(map), {}, context).noded());
    imported.notes = notes_of(map);
    imported.largest_shift = largest_shift;
    return imported;
}

Imported from_network(const kit::Network& network) {
    Imported imported;
    imported.curves = Curves(network);
    imported.report = counted(network.curve_count(), "%1 curve", "%1 curves") +
                      counted(network.point_count(), " with %1 point", " with %1 points");
    return imported;
}

Imported from_solids(kit::Solids solids) {
    Imported imported;
    imported.report = counted(solids.size(), "%1 body", "%1 bodies") +
                      counted(solids.face_count(), " of %1 face", " of %1 faces");
    imported.solids = std::move(solids);
    return imported;
}

// Points and their system become those that were chosen. Whether the points become other ones.
bool transform(std::vector<kit::Point2>& points, std::string& reference,
               const ImportOptions& options, MapSource& source) {
    source.is_read = true;
    source.reference = reference;
    for (const auto& [x, y] : points) {
        source.bounds.take_in(x, y);
    }
    if (!options.reference.empty()) {
        reference = options.reference;
    }
    if (options.project.empty() || options.project == reference) {
        return false;
    }
    if (reference.empty()) {
        throw kit::input_error("the file does not name its reference system, from which to "
                               "transform to " +
                               options.project);
    }
    kit::projection(reference, options.project)->forward(points);
    reference = options.project;
    return true;
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
