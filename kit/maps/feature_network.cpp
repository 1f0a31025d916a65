#include "kit/maps/feature_network.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "kit/base/error.h"
#include "kit/maps/find_regions.h"
#include "kit/maps/inner_point.h"
#include "kit/maps/region_locator.h"

namespace korvel::kit {
namespace {

/// The polygons of features as regions in steps of a grid.
struct SourcePolygons {
    Map regions;
    std::vector<std::size_t> feature_of_region;
};

SourcePolygons polygons_on_grid(const Features& features, const Grid& grid);
void add_ring(std::span<const Point2> points, const Grid& grid, int& next_point, CCPloy2DRg& set);
bool is_called(const std::string& name, const char* wanted);
std::vector<std::optional<std::size_t>> labels_by_region(const Map& map, const Features& labels,
                                                         LabelReport& report);
std::vector<std::size_t> slots_of(const std::vector<Field>& fields, std::vector<Field>& out);

} // namespace

Network network_of(const Features& features, const GridChoice& choice) {
    Network network;
    CurveNetwork placed;
    place_on_grid(features.points, choice, placed);
    network.set_placement({placed.grid, features.reference});
    network.set_largest_shift(placed.largest_shift);
    for (std::size_t i = 0; i < features.features.size(); ++i) {
        const Feature& feature = features.features[i];
        if (feature.shape != Shape::lines && feature.shape != Shape::polygons) {
            continue;
        }
        for (std::size_t path = features.first_path(i); path < feature.path_end; ++path) {
            const std::size_t first = path == 0 ? 0 : features.paths[path - 1].end;
            network.add_curve(std::span<const GridPoint>(begin(placed.pts), end(placed.pts))
                                  .subspan(first, features.paths[path].end - first));
        }
    }
    return network;
}

bool has_shape(const Features& features, Shape shape) {
    return std::any_of(features.features.begin(), features.features.end(),
                       [&](const Feature& feature) { return feature.shape == shape; });
}

Map with_sources(const Map& map, const Features& polygons, bool keeps_gaps, SourceReport& report,
                 const Context& context) {
    const SourcePolygons sources = polygons_on_grid(polygons, map.placement().grid);
    const RegionLocator locator(sources.regions);
    std::vector<int> kept;
    std::vector<std::size_t> source_of_kept;
    for (const Region region : map) {
        context.report("finding source polygons", region.index(), map.size());
        std::vector<std::size_t> found;
        if (const auto inner = inner_point(map.regions(), region.index())) {
            for (const int source : locator.regions_at(*inner)) {
                found.push_back(sources.feature_of_region[static_cast<std::size_t>(source)]);
            }
            std::sort(found.begin(), found.end());
            found.erase(std::unique(found.begin(), found.end()), found.end());
        }
        report.gaps += found.empty() ? 1 : 0;
        if (found.empty() && !keeps_gaps) {
            continue;
        }
        if (found.size() > 1) {
            report.overlaps.push_back(static_cast<int>(kept.size()));
        }
        kept.push_back(region.index());
        source_of_kept.push_back(found.empty() ? polygons.features.size() : found.front());
    }
    Map result(map.kept(kept).take_regions(), map.placement());
    result.set_fields(polygons.fields);
    const std::size_t name = name_field(polygons.fields);
    for (std::size_t i = 0; i < source_of_kept.size(); ++i) {
        if (source_of_kept[i] < polygons.features.size()) {
            result.set_values(static_cast<int>(i), polygons.features[source_of_kept[i]].values);
            result.set_name(static_cast<int>(i),
                            text_of_value(polygons.value(source_of_kept[i], name)));
        }
    }
    return result;
}

LabelReport take_labels(Map& map, const Features& labels) {
    LabelReport report;
    const std::vector<std::optional<std::size_t>> label_of = labels_by_region(map, labels, report);
    std::vector<Field> fields = map.fields();
    const std::vector<std::size_t> slots = slots_of(labels.fields, fields);
    const std::size_t name = name_field(labels.fields);
    std::vector<std::vector<FieldValue>> rows;
    rows.reserve(label_of.size());
    for (const Region region : map) {
        std::vector<FieldValue>& row = rows.emplace_back();
        for (std::size_t field = 0; field < map.fields().size(); ++field) {
            row.push_back(region.value(field));
        }
        row.resize(fields.size());
        const auto label = label_of[static_cast<std::size_t>(region.index())];
        if (!label) {
            continue;
        }
        for (std::size_t field = 0; field < slots.size(); ++field) {
            row[slots[field]] = labels.value(*label, field);
        }
        const std::string text = text_of_value(labels.value(*label, name));
        if (!text.empty()) {
            map.set_name(region.index(), text);
        }
    }
    map.set_fields(std::move(fields));
    for (std::size_t region = 0; region < rows.size(); ++region) {
        map.set_values(static_cast<int>(region), std::move(rows[region]));
    }
    return report;
}

namespace {

// The feature with the first label in each region.
std::vector<std::optional<std::size_t>> labels_by_region(const Map& map, const Features& labels,
                                                         LabelReport& report) {
    std::vector<std::optional<std::size_t>> label_of(static_cast<std::size_t>(map.size()));
    const RegionLocator locator(map);
    const auto take = [&](std::size_t label, const Point2& point) {
        const std::optional<int> region = locator.region_at(point);
        if (!region) {
            ++report.outside;
        } else if (label_of[static_cast<std::size_t>(*region)]) {
            ++report.repeated;
        } else {
            ++report.used;
            label_of[static_cast<std::size_t>(*region)] = label;
        }
    };
    for (std::size_t i = 0; i < labels.features.size(); ++i) {
        if (labels.features[i].shape != Shape::points) {
            continue;
        }
        for (std::size_t path = labels.first_path(i); path < labels.features[i].path_end; ++path) {
            for (const Point2& point : labels.path(path)) {
                take(i, point);
            }
        }
    }
    return label_of;
}

} // namespace

Map regions_of(const Features& features, const Context& context) {
    Network network = network_of(features);
    if (network.curve_count() == 0) {
        throw input_error("contains neither lines nor polygons");
    }
    Map map = find_regions(std::move(network), {}, context).take_map();
    if (has_shape(features, Shape::polygons)) {
        SourceReport report;
        map = with_sources(map, features, false, report, context);
    }
    if (has_shape(features, Shape::points)) {
        take_labels(map, features);
    }
    return map;
}

std::size_t name_field(const std::vector<Field>& fields) {
    for (const char* wanted : {"name", "label", "title", "id"}) {
        const auto found = std::find_if(fields.begin(), fields.end(), [&](const Field& field) {
            return is_called(field.name, wanted);
        });
        if (found != fields.end()) {
            return static_cast<std::size_t>(found - fields.begin());
        }
    }
    const auto text = std::find_if(fields.begin(), fields.end(), [](const Field& field) {
        return field.type == Field::Type::text;
    });
    return static_cast<std::size_t>(text - fields.begin());
}

namespace {

SourcePolygons polygons_on_grid(const Features& features, const Grid& grid) {
    SourcePolygons sources;
    auto set = std::make_unique<CCPloy2DRg>();
    set->pt_list.SetSize(static_cast<int>(features.points.size()));
    int next_point = 0;
    for (std::size_t i = 0; i < features.features.size(); ++i) {
        if (features.features[i].shape != Shape::polygons) {
            continue;
        }
        for (std::size_t path = features.first_path(i); path < features.features[i].path_end;
             ++path) {
            if (features.paths[path].starts_polygon || path == features.first_path(i)) {
                set->region_list.SetSize(set->region_list.GetSize() + 1);
                sources.feature_of_region.push_back(i);
            }
            add_ring(features.path(path), grid, next_point, *set);
        }
    }
    set->pt_list.SetSize(next_point);
    sources.regions = Map(std::move(set));
    return sources;
}

// To the last region.
void add_ring(std::span<const Point2> points, const Grid& grid, int& next_point, CCPloy2DRg& set) {
    const bool is_closed = points.size() > 1 && points.front() == points.back();
    const int ring = set.ring_list.GetSize();
    set.ring_list.SetSize(ring + 1);
    for (const Point2& point : points.first(points.size() - (is_closed ? 1 : 0))) {
        const GridPoint place = grid.nearest(point);
        set.pt_list[next_point].x = place.x;
        set.pt_list[next_point].y = place.y;
        set.ring_list[ring].pts.Add(next_point++);
    }
    set.region_list[set.region_list.GetSize() - 1].rings.Add(ring);
}

bool is_called(const std::string& name, const char* wanted) {
    return std::equal(name.begin(), name.end(), wanted,
                      wanted + std::char_traits<char>::length(wanted),
                      [](unsigned char a, char b) { return std::tolower(a) == b; });
}

// Where fields are among others, to which those are added that they lack.
std::vector<std::size_t> slots_of(const std::vector<Field>& fields, std::vector<Field>& out) {
    std::vector<std::size_t> slots;
    for (const Field& field : fields) {
        const auto same = std::find_if(
            out.begin(), out.end(), [&](const Field& other) { return other.name == field.name; });
        slots.push_back(static_cast<std::size_t>(same - out.begin()));
        if (same == out.end()) {
            out.push_back(field);
        } else if (same->type != field.type) {
            same->type = Field::Type::text;
        }
    }
    return slots;
}

} // namespace
} // namespace korvel::kit
