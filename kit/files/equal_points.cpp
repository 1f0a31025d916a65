#include "kit/files/equal_points.h"

#include <bit>

namespace korvel::kit {

std::int32_t EqualPoints::find_or_add(const Point3& point, const std::vector<Point3>& points) {
    // At most two thirds full.
    if (3 * (points.size() + 1) > 2 * places_.size()) {
        enlarge(points);
    }
    std::size_t place = place_of(point);
    for (; places_[place] >= 0; place = (place + 1) & (places_.size() - 1)) {
        if (points[static_cast<std::size_t>(places_[place])] == point) {
            return places_[place];
        }
    }
    return places_[place] = static_cast<std::int32_t>(points.size());
}

void EqualPoints::enlarge(const std::vector<Point3>& points) {
    constexpr std::size_t least = 256;
    const std::size_t size = places_.empty() ? least : 2 * places_.size();
    shift_ = 64U - static_cast<unsigned>(std::countr_zero(size));
    places_ = {}; // before the new ones take their memory
    places_.assign(size, -1);
    for (std::size_t i = 0; i < points.size(); ++i) {
        std::size_t place = place_of(points[i]);
        while (places_[place] >= 0) {
            place = (place + 1) & (size - 1);
        }
        places_[place] = static_cast<std::int32_t>(i);
    }
}

// The upper bits of a product depend on all bits of the factor.
std::size_t EqualPoints::place_of(const Point3& point) const {
    constexpr std::uint64_t odd = 0x9E3779B97F4A7C15U;
    std::uint64_t mixed = 0;
    for (const double coordinate : point) {
        mixed = (std::rotr(mixed, 29) ^ std::bit_cast<std::uint64_t>(coordinate + 0.0)) * odd;
    }
    return static_cast<std::size_t>((mixed ^ mixed >> 32U) * odd >> shift_);
}

} // namespace korvel::kit
