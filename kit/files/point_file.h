#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "kit/files/text_file.h"

namespace korvel::kit {

/// The points of a file, whose text must remain as long as the digits are used.
struct PointList {
    int dimensions = 2;
    std::vector<double> coordinates;      ///< `dimensions` for each point
    std::vector<std::string_view> digits; ///< the same as the file has them

    std::size_t size() const { return coordinates.size() / static_cast<std::size_t>(dimensions); }

    /// Coordinate `axis` of a point.
    double at(std::size_t point, int axis) const { return coordinates[index(point, axis)]; }

    /// The coordinates as the file has them, separated by commas.
    std::string text(std::size_t point) const;

private:
    std::size_t index(std::size_t point, int axis) const {
        return point * static_cast<std::size_t>(dimensions) + static_cast<std::size_t>(axis);
    }
};

/// Reads a point file: in each line the two or three coordinates of a point, separated by white
/// space, a comma or both. `#` begins a comment up to the end of the line; lines without a point
/// are skipped. Coordinates are finite numbers in double precision. Throws an input error that
/// names the line of the first thing that does not fit.
PointList read_points(const TextFile& file, int dimensions);

} // namespace korvel::kit
