#pragma once

#include <memory>
#include <span>
#include <string>

#include "kit/base/points.h"
#include "kit/base/rectangle.h"

// Reference systems and the ways between them, by PROJ, if the kit was built with it and its module
// is installed. Coordinates are x and y: longitude and latitude in degrees in geographic systems,
// whatever order their definitions have.

namespace korvel::kit {

/// Whether PROJ can be used.
bool has_projections();

/// A transformation from one reference system to another.
class MapProjection {
public:
    virtual ~MapProjection() = default;

    /// Replaces coordinates by those in the other system. Throws an `Error` that names the first
    /// point that has none.
    virtual void forward(std::span<Point2> points) const = 0;
    virtual void back(std::span<Point2> points) const = 0;
};

/// The transformation between systems as `Placement::reference` names them, or as "+proj=…". Throws
/// an `Error` for a system that is not known, and where there is no PROJ.
std::shared_ptr<const MapProjection> projection(const std::string& from, const std::string& to);

/// Whether the coordinates of a system are longitude and latitude. "EPSG:4326", "EPSG:4269" and
/// "OGC:CRS84" are answered without PROJ.
bool is_geographic(const std::string& reference);

/// "EPSG:25832", where the definition is one that has such a code, else the definition in one line
/// of WKT; empty for an empty one.
std::string short_reference(const std::string& definition);

/// A name for people: "WGS 84 / UTM zone 32N (EPSG:32632)".
std::string reference_name(const std::string& reference);

/// The definition of a map projection in metres that keeps areas, for the surroundings of a
/// rectangle in longitude and latitude: Lambert's azimuthal one about its middle, in whole tenths
/// of a degree, or Equal Earth where the rectangle is larger than a hemisphere.
std::string equal_area_about(const std::string& reference, const Rectangle& degrees);

} // namespace korvel::kit
