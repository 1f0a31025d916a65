#pragma once

#include <string_view>

#include "kit/files/features.h"
#include "kit/files/geojson_coordinates.h"

namespace korvel::kit {

/// What the member "type" of an object names.
struct GeoJsonType {
    enum class Kind { collection, feature, geometries, geometry, topology };

    std::string_view name;
    Kind kind = Kind::geometry;
    Shape shape = Shape::none;
    CoordinateDepth depth = 0; ///< of a geometry
    bool is_single = true;     ///< a Polygon, in contrast to a MultiPolygon
};

/// Null if there is none of that name.
const GeoJsonType* find_geojson_type(std::string_view name);

/// The name of the type for a feature with one part or several.
std::string_view geojson_type_name(Shape shape, bool is_single);

/// The reference system that the name in a member "crs" names: "EPSG:25832", also for
/// "urn:ogc:def:crs:EPSG::25832"; names of WGS 84 in the order of longitude and latitude give
/// "EPSG:4326".
std::string reference_of_crs(std::string_view name);

} // namespace korvel::kit
