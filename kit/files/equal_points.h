#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kit/base/points.h"

namespace korvel::kit {

/// The indices of points by their coordinates: a table with open addressing, four bytes for each
/// place, so that it is small beside the points.
class EqualPoints {
public:
    /// The index in `points` of the point of these coordinates, of which 0 equals −0; the size of
    /// the list if it is not in it, after which the caller adds it. Constant time.
    std::int32_t find_or_add(const Point3& point, const std::vector<Point3>& points);

private:
    void enlarge(const std::vector<Point3>& points);
    std::size_t place_of(const Point3& point) const;

    std::vector<std::int32_t> places_; // −1 where none is; a power of two
    unsigned shift_ = 64;
};

} // namespace korvel::kit
