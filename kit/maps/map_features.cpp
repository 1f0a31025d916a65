#include "kit/maps/map_features.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "kit/base/areas.h"

namespace korvel::kit {
namespace {

using RingOfPoints = std::vector<int>; // indices of points, the first one not repeated

void add_region(const Map& map, const Region& region, Features& out);
std::vector<RingOfPoints> simple_rings(const CCPloy2DRg& set, const CCPloy2DRg::PyToRg& region);
void add_simple_rings(const CCPloy2DRg& set, const CArray<int>& ring,
                      std::vector<RingOfPoints>& out);
std::size_t outer_ring(const CCPloy2DRg& set, const std::vector<RingOfPoints>& rings);
void add_ring(const Map& map, const RingOfPoints& ring, bool is_outer, Features& out);
std::vector<Field> fields_of(const Map& map, std::vector<std::size_t>& kept);
std::string list_text(const std::vector<int>& numbers);

constexpr std::size_t own_fields = 6;

} // namespace

Features features_of(const Map& map, const Map* measured) {
    const Map& sizes = measured != nullptr ? *measured : map;
    Features features;
    features.name = "regions";
    features.reference = map.placement().reference;
    std::vector<std::size_t> kept;
    features.fields = fields_of(map, kept);
    Map coloured = map;
    coloured.colour_distinctly();
    const std::vector<std::vector<int>> neighbours = map.neighbours();
    for (const Region region : coloured) {
        add_region(map, region, features);
        std::vector<int> beside;
        for (const int neighbour : neighbours[static_cast<std::size_t>(region.index())]) {
            beside.push_back(map[neighbour].number());
        }
        Feature& feature = features.features.emplace_back();
        feature.shape = Shape::polygons;
        feature.path_end = features.paths.size();
        feature.values = {std::int64_t{region.number()},
                          sizes[region.index()].area(),
                          sizes[region.index()].perimeter(),
                          list_text(beside),
                          colour_text(region.colour()),
                          region.name().empty() ? FieldValue() : FieldValue(region.name())};
        for (const std::size_t field : kept) {
            feature.values.push_back(region.value(field));
        }
    }
    return features;
}

Features features_of(const Network& network) {
    Features features;
    features.name = "curves";
    features.reference = network.placement().reference;
    features.fields = {{"number", Field::Type::integer}};
    for (int i = 0; i < network.curve_count(); ++i) {
        for (const GridPoint& point : network.curve(i)) {
            features.points.push_back(network.placement().grid.to_user(point));
        }
        features.paths.push_back({features.points.size()});
        features.features.push_back({Shape::lines, features.paths.size(), {std::int64_t{i}}});
    }
    return features;
}

Features features_of(const Triangulation& triangles) {
    Features features;
    features.name = "triangles";
    features.reference = triangles.placement().reference;
    features.is_tin = true;
    features.fields = {{"region", Field::Type::integer}};
    for (int region = 0; region < triangles.region_count(); ++region) {
        for (const Triangulation::Triangle& triangle : triangles.of_region(region)) {
            features.points.insert(features.points.end(), triangle.begin(), triangle.end());
            features.points.push_back(triangle[0]);
            features.paths.push_back({features.points.size()});
        }
        if (!triangles.of_region(region).empty()) {
            features.features.push_back(
                {Shape::polygons, features.paths.size(), {std::int64_t{region}}});
        }
    }
    return features;
}

namespace {

// Attributes that a map has from its source give way to those that are computed.
std::vector<Field> fields_of(const Map& map, std::vector<std::size_t>& kept) {
    std::vector<Field> fields = {
        {"number", Field::Type::integer}, {"area", Field::Type::real},
        {"perimeter", Field::Type::real}, {"neighbours", Field::Type::text},
        {"colour", Field::Type::text},    {"name", Field::Type::text}};
    for (std::size_t i = 0; i < map.fields().size(); ++i) {
        const auto own_end = fields.begin() + own_fields;
        if (std::none_of(fields.begin(), own_end,
                         [&](const Field& own) { return own.name == map.fields()[i].name; })) {
            fields.push_back(map.fields()[i]);
            kept.push_back(i);
        }
    }
    return fields;
}

void add_region(const Map& map, const Region& region, Features& out) {
    const CCPloy2DRg& set = map.regions();
    const std::vector<RingOfPoints> rings = simple_rings(set, set.region_list[region.index()]);
    if (rings.empty()) {
        return;
    }
    const std::size_t outer = outer_ring(set, rings);
    add_ring(map, rings[outer], true, out);
    for (std::size_t i = 0; i < rings.size(); ++i) {
        if (i != outer) {
            add_ring(map, rings[i], false, out);
        }
    }
}

std::vector<RingOfPoints> simple_rings(const CCPloy2DRg& set, const CCPloy2DRg::PyToRg& region) {
    std::vector<RingOfPoints> rings;
    for (const int ring : region.rings) {
        add_simple_rings(set, set.ring_list[ring].pts, rings);
    }
    return rings;
}

// A ring that comes back to a point is divided there: what lies between is a ring of its own.
void add_simple_rings(const CCPloy2DRg& set, const CArray<int>& ring,
                      std::vector<RingOfPoints>& out) {
    const auto key = [&](int point) {
        return std::pair(set.pt_list[point].x, set.pt_list[point].y);
    };
    std::map<std::pair<double, double>, std::size_t> place_of; // of the points of the open line
    RingOfPoints line;
    for (const int point : ring) {
        const auto before = place_of.find(key(point));
        if (before == place_of.end()) {
            place_of.emplace(key(point), line.size());
            line.push_back(point);
            continue;
        }
        const auto first = line.begin() + static_cast<std::ptrdiff_t>(before->second);
        const RingOfPoints loop(first, line.end());
        for (auto passed = first + 1; passed != line.end(); ++passed) {
            place_of.erase(key(*passed));
        }
        line.erase(first + 1, line.end());
        if (loop.size() > 2) {
            out.push_back(loop);
        }
    }
    if (line.size() > 2) {
        out.push_back(line);
    }
}

// The one that encloses all others has the largest box.
std::size_t outer_ring(const CCPloy2DRg& set, const std::vector<RingOfPoints>& rings) {
    std::vector<double> widths;
    for (const RingOfPoints& ring : rings) {
        Rectangle box;
        for (const int point : ring) {
            box.take_in(set.pt_list[point].x, set.pt_list[point].y);
        }
        widths.push_back((box.right - box.left) + (box.bottom - box.top));
    }
    return static_cast<std::size_t>(std::max_element(widths.begin(), widths.end()) -
                                    widths.begin());
}

void add_ring(const Map& map, const RingOfPoints& ring, bool is_outer, Features& out) {
    const std::size_t first = out.points.size();
    for (const int point : ring) {
        const VERT2D& at = map.regions().pt_list[point];
        out.points.push_back(map.placement().grid.to_user(Point2{at.x, at.y}));
    }
    out.points.push_back(out.points[first]);
    out.paths.push_back({out.points.size(), is_outer});
}

std::string list_text(const std::vector<int>& numbers) {
    std::string text;
    for (const int number : numbers) {
        text.append(text.empty() ? "" : " ").append(std::to_string(number));
    }
    return text;
}

} // namespace
} // namespace korvel::kit
