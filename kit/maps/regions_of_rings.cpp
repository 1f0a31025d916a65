#include "kit/maps/regions_of_rings.h"

#include <algorithm>
#include <cstddef>

namespace korvel::kit {
namespace {

std::vector<int> numbers_of_used(const std::vector<std::vector<PointRing>>& rings_of_regions,
                                 std::size_t points);

} // namespace

std::unique_ptr<CCPloy2DRg> regions_of(const std::vector<std::vector<PointRing>>& rings_of_regions,
                                       const std::vector<GridPoint>& points) {
    auto set = std::make_unique<CCPloy2DRg>();
    const std::vector<int> numbers = numbers_of_used(rings_of_regions, points.size());
    set->pt_list.SetSize(numbers.empty() ? 0
                                         : 1 + *std::max_element(numbers.begin(), numbers.end()));
    for (std::size_t point = 0; point < numbers.size(); ++point) {
        if (numbers[point] >= 0) {
            set->pt_list[numbers[point]].x = points[point].x;
            set->pt_list[numbers[point]].y = points[point].y;
        }
    }
    set->region_list.SetSize(static_cast<int>(rings_of_regions.size()));
    std::size_t rings = 0;
    for (const std::vector<PointRing>& of_region : rings_of_regions) {
        rings += of_region.size();
    }
    set->ring_list.SetSize(static_cast<int>(rings));
    int number = 0;
    for (int region = 0; region < set->region_list.GetSize(); ++region) {
        for (const PointRing& ring : rings_of_regions[region]) {
            set->region_list[region].rings.Add(number);
            CArray<int>& corners = set->ring_list[number++].pts;
            corners.SetSize(static_cast<int>(ring.size()));
            std::transform(ring.begin(), ring.end(), corners.begin(),
                           [&](int point) { return numbers[point]; });
        }
    }
    return set;
}

namespace {

/// −1 for a point that no ring uses.
std::vector<int> numbers_of_used(const std::vector<std::vector<PointRing>>& rings_of_regions,
                                 std::size_t points) {
    std::vector<int> numbers(points, -1);
    for (const std::vector<PointRing>& rings : rings_of_regions) {
        for (const PointRing& ring : rings) {
            for (const int point : ring) {
                numbers[point] = 0;
            }
        }
    }
    int used = 0;
    for (int& number : numbers) {
        number = number < 0 ? -1 : used++;
    }
    return numbers;
}

} // namespace
} // namespace korvel::kit
