#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "kit/files/features.h"
#include "kit/files/json_input.h"

namespace korvel::kit {

/// Where in a GeoJSON text the reading is.
struct GeoJsonPlace {
    const JsonInput& input;
    long long feature = -1; ///< in its collection, from 0; −1 outside

    /// Throws "FILE:LINE: feature 3: message".
    [[noreturn]] void fail(const std::string& message, std::string_view value = {}) const;
};

/// How deeply positions are nested in the coordinates of a type: 1 for a point, 4 for polygons.
using CoordinateDepth = std::size_t;

/// Reads the coordinates of a geometry, whose type may not be known yet: appends points and paths
/// to a layer. A path is an array of positions. All positions have to be nested equally deeply.
class GeoJsonCoordinates {
public:
    GeoJsonCoordinates(Features& out, const GeoJsonPlace& place) : out_(out), place_(place) {}

    /// With the depth of the type; 0 if it is not known yet.
    void start(CoordinateDepth depth);

    void start_array();
    void number(double value);

    /// True when the coordinates are complete.
    bool end_array();

    /// Throws unless the coordinates fit a type of that depth.
    void check(CoordinateDepth depth) const;

    /// Gives the paths since `start` to a shape: rings are closed, and lines are independent of
    /// each other.
    void shape(Shape shape);

private:
    [[noreturn]] void fail_depth(CoordinateDepth expected, CoordinateDepth found) const;
    void end_position();
    void end_path();
    void close_rings();

    Features& out_;
    const GeoJsonPlace& place_;
    std::size_t first_path_ = 0;
    CoordinateDepth depth_ = 0; // of positions; 0 until it is known
    CoordinateDepth level_ = 0;
    CoordinateDepth deepest_empty_ = 0;
    bool is_empty_ = false; // the present array, so far
    bool starts_polygon_ = true;
    std::size_t numbers_ = 0; // of the present position
    Point2 position_ = {};
};

} // namespace korvel::kit
