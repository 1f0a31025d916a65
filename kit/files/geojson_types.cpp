#include "kit/files/geojson_types.h"

#include <algorithm>
#include <array>
#include <string>

namespace korvel::kit {
namespace {

using Kind = GeoJsonType::Kind;

constexpr std::array<GeoJsonType, 10> all_types = {{
    {"FeatureCollection", Kind::collection},
    {"Feature", Kind::feature},
    {"Point", Kind::geometry, Shape::points, 1, true},
    {"MultiPoint", Kind::geometry, Shape::points, 2, false},
    {"LineString", Kind::geometry, Shape::lines, 2, true},
    {"MultiLineString", Kind::geometry, Shape::lines, 3, false},
    {"Polygon", Kind::geometry, Shape::polygons, 3, true},
    {"MultiPolygon", Kind::geometry, Shape::polygons, 4, false},
    {"GeometryCollection", Kind::geometries},
    {"Topology", Kind::topology},
}};

} // namespace

const GeoJsonType* find_geojson_type(std::string_view name) {
    const auto* const type = std::find_if(all_types.begin(), all_types.end(),
                                          [&](const GeoJsonType& any) { return any.name == name; });
    return type == all_types.end() ? nullptr : type;
}

std::string_view geojson_type_name(Shape shape, bool is_single) {
    return std::find_if(all_types.begin(), all_types.end(),
                        [&](const GeoJsonType& any) {
                            return any.kind == Kind::geometry && any.shape == shape &&
                                   any.is_single == is_single;
                        })
        ->name;
}

std::string reference_of_crs(std::string_view name) {
    if (name.ends_with(":CRS84")) {
        return "EPSG:4326";
    }
    constexpr std::string_view urn = "urn:ogc:def:crs:";
    if (!name.starts_with(urn)) {
        return std::string(name);
    }
    // AUTHORITY:VERSION:CODE, the version is empty in most files.
    const std::string_view rest = name.substr(urn.size());
    const std::size_t authority = rest.find(':');
    const std::size_t code = rest.rfind(':');
    if (authority == std::string_view::npos || authority == code) {
        return std::string(name);
    }
    return std::string(rest.substr(0, authority)).append(rest.substr(code));
}

} // namespace korvel::kit
