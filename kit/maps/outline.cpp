#include "kit/maps/outline.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <tuple>

namespace korvel::kit {
namespace {

bool has_usable_points(const CArray<VERT2D>& points, const CArray<RING>& rings,
                       const CArray<int>& rings_of_region);
void number_places(const CArray<VERT2D>& points, const CArray<RING>& rings,
                   const CArray<int>& rings_of_region, Outline& outline);
bool clear_spikes(std::vector<int>& ring);
void drop_empty_rings(Outline& outline);
void drop_unused_places(Outline& outline);

} // namespace

bool is_usable_coordinate(double v) {
    return v == 0 || (std::abs(v) >= 1e-60 && std::abs(v) <= 1e70);
}

Outline outline_of(const CArray<VERT2D>& points, const CArray<RING>& rings,
                   const CArray<int>& rings_of_region) {
    Outline outline;
    if (rings_of_region.IsEmpty() || !has_usable_points(points, rings, rings_of_region)) {
        return outline;
    }
    number_places(points, rings, rings_of_region, outline);
    bool is_cleared = false;
    for (std::vector<int>& ring : outline.rings) {
        is_cleared = clear_spikes(ring) || is_cleared;
    }
    if (is_cleared) {
        drop_empty_rings(outline);
        drop_unused_places(outline);
    }
    return outline;
}

int turn_of_ring(const Outline& outline, const std::vector<int>& ring) {
    const auto place = [&](int number) { return outline.places[static_cast<std::size_t>(number)]; };
    // All sides at the least place run to its right; the lowest of them starts the ring or ends it.
    const int least = *std::min_element(ring.begin(), ring.end());
    int lowest = -1;
    int result = 0;
    const auto try_side = [&](int other, int turn_if_lowest) {
        if (lowest < 0 || turn(place(least), place(lowest), place(other)) < 0) {
            lowest = other;
            result = turn_if_lowest;
        }
    };
    for (std::size_t k = 0; k < ring.size(); ++k) {
        if (ring[k] == least) {
            try_side(ring[(k + 1) % ring.size()], 1);
            try_side(ring[(k + ring.size() - 1) % ring.size()], -1);
        }
    }
    return result;
}

namespace {

bool has_usable_points(const CArray<VERT2D>& points, const CArray<RING>& rings,
                       const CArray<int>& rings_of_region) {
    return std::all_of(rings_of_region.begin(), rings_of_region.end(), [&](int ring) {
        const CArray<int>& corners = rings[ring].pts;
        return std::all_of(corners.begin(), corners.end(), [&](int point) {
            return is_usable_coordinate(points[point].x) && is_usable_coordinate(points[point].y);
        });
    });
}

void number_places(const CArray<VERT2D>& points, const CArray<RING>& rings,
                   const CArray<int>& rings_of_region, Outline& outline) {
    struct Corner {
        double x;
        double y;
        int point;
        int* number; // in the ring
    };
    std::vector<Corner> corners;
    for (int i = 0; i < rings_of_region.GetSize(); ++i) {
        const CArray<int>& ring = rings[rings_of_region[i]].pts;
        outline.rings.emplace_back(static_cast<std::size_t>(ring.GetSize()));
        outline.numbers.push_back(i);
        int* number = outline.rings.back().data();
        for (const int point : ring) {
            corners.push_back({points[point].x, points[point].y, point, number++});
        }
    }
    std::sort(corners.begin(), corners.end(), [](const Corner& a, const Corner& b) {
        return a.x != b.x ? a.x < b.x : a.y != b.y ? a.y < b.y : a.point < b.point;
    });
    for (const Corner& corner : corners) {
        if (outline.places.empty() || outline.places.back().x != corner.x ||
            outline.places.back().y != corner.y) {
            outline.places.push_back({corner.x, corner.y});
            outline.points.push_back(corner.point);
        }
        *corner.number = static_cast<int>(outline.places.size()) - 1;
    }
}

// True when there were any.
bool clear_spikes(std::vector<int>& ring) {
    std::vector<int> kept;
    kept.reserve(ring.size());
    for (const int point : ring) {
        if (!kept.empty() && kept.back() == point) {
            continue;
        }
        if (kept.size() >= 2 && kept[kept.size() - 2] == point) {
            kept.pop_back();
        } else {
            kept.push_back(point);
        }
    }
    auto first = kept.begin();
    auto last = kept.end();
    for (bool is_clear = false; !is_clear && last - first >= 3;) {
        if (*first == last[-1]) {
            --last;
        } else if (first[1] == last[-1]) {
            ++first;
            --last;
        } else if (*first == last[-2]) {
            last -= 2;
        } else {
            is_clear = true;
        }
    }
    const bool has_spikes = last - first < 3 || last - first < std::ssize(ring);
    ring.assign(first, last);
    return has_spikes;
}

void drop_empty_rings(Outline& outline) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < outline.rings.size(); ++i) {
        if (outline.rings[i].size() >= 3) {
            std::swap(outline.rings[kept], outline.rings[i]);
            outline.numbers[kept++] = outline.numbers[i];
        } else if (i == 0) {
            break;
        }
    }
    outline.rings.resize(kept);
    outline.numbers.resize(kept);
}

void drop_unused_places(Outline& outline) {
    std::vector<int> numbers(outline.places.size(), -1);
    for (const std::vector<int>& ring : outline.rings) {
        for (const int place : ring) {
            numbers[static_cast<std::size_t>(place)] = 0;
        }
    }
    std::size_t kept = 0;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (numbers[i] == 0) {
            outline.places[kept] = outline.places[i];
            outline.points[kept] = outline.points[i];
            numbers[i] = static_cast<int>(kept++);
        }
    }
    outline.places.resize(kept);
    outline.points.resize(kept);
    for (std::vector<int>& ring : outline.rings) {
        for (int& place : ring) {
            place = numbers[static_cast<std::size_t>(place)];
        }
    }
}

} // namespace
} // namespace korvel::kit
