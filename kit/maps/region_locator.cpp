#include "kit/maps/region_locator.h"

#include <algorithm>
#include <cmath>

#include "kit/maps/map.h"
#include "kit/maps/ring_rule.h"

namespace korvel::kit {

RegionLocator::RegionLocator(const Map& map) {
    std::vector<Rectangle> boxes;
    for (const Region region : map) {
        for (int ring = 0; ring < region.ring_count(); ++ring) {
            std::vector<PlanePoint> corners;
            Rectangle box;
            for (const Point2& corner : region.ring(ring)) {
                corners.push_back({corner[0], corner[1]});
                box.take_in(corner[0], corner[1]);
            }
            rings_.emplace_back(corners);
            if (ring == 0 && !box.is_empty()) {
                boxes.push_back(box);
                regions_.push_back(region.index());
                bounds_.take_in(box.left, box.top);
                bounds_.take_in(box.right, box.bottom);
            }
        }
        ends_.push_back(rings_.size());
    }
    columns_ = GridScale(bounds_.left, bounds_.right);
    rows_ = GridScale(bounds_.top, bounds_.bottom);
    outlines_ = BoxTree(boxes.size(), [&](std::size_t i) {
        const Rectangle& box = boxes[i];
        return BoxTree::Box{columns_(box.left), rows_(box.top), columns_(box.right),
                            rows_(box.bottom)};
    });
}

std::optional<int> RegionLocator::region_at(const Point2& point) const {
    std::optional<int> first;
    for_each_at(point, [&](int region) {
        if ((!first || region < *first) && contains(region, point)) {
            first = region;
        }
    });
    return first;
}

std::vector<int> RegionLocator::regions_at(const Point2& point) const {
    std::vector<int> regions;
    for_each_at(point, [&](int region) {
        if (contains(region, point)) {
            regions.push_back(region);
        }
    });
    std::sort(regions.begin(), regions.end());
    return regions;
}

// Those whose boxes contain the point.
template <class Visit>
void RegionLocator::for_each_at(const Point2& point, Visit visit) const {
    const std::int32_t column = columns_(point[0]);
    const std::int32_t row = rows_(point[1]);
    outlines_.for_each_at({column, row, column, row}, [&](std::size_t i) { visit(regions_[i]); });
}

bool RegionLocator::contains(int region, const Point2& point) const {
    const auto index = static_cast<std::size_t>(region);
    const auto outer =
        rings_.begin() + static_cast<std::ptrdiff_t>(index > 0 ? ends_[index - 1] : 0);
    const auto end = rings_.begin() + static_cast<std::ptrdiff_t>(ends_[index]);
    const auto encloses = [&](const Ring& ring) { return ring.encloses(point); };
    return encloses(*outer) && std::none_of(outer + 1, end, encloses);
}

// A side that is met by a band counts four times as an average at most, so that the bands of a ring
// with many long sides do not take more than linear memory.
RegionLocator::Ring::Ring(const std::vector<PlanePoint>& corners) {
    std::vector<Side> sides;
    double top = 0;
    double heights = 0;
    for (std::size_t k = 0; k < corners.size(); ++k) {
        const Side side = {corners[k], corners[k + 1 < corners.size() ? k + 1 : 0]};
        bottom_ = k == 0 ? side.from.y : std::min(bottom_, side.from.y);
        top = k == 0 ? side.from.y : std::max(top, side.from.y);
        // A level side bounds nothing upward or downward.
        if (side.from.y != side.to.y) {
            sides.push_back(side);
            heights += std::abs(side.from.y - side.to.y);
        }
    }
    const double share = heights > 0 ? (top - bottom_) / heights : 0;
    const double bands = std::max(1.0, std::floor(3 * static_cast<double>(sides.size()) * share));
    bands_per_unit_ = top > bottom_ ? bands / (top - bottom_) : 0;
    ends_.assign(static_cast<std::size_t>(bands) + 2, 0);
    const auto for_each_band = [&](const Side& side, auto visit) {
        const std::size_t last = band_of(std::max(side.from.y, side.to.y));
        for (std::size_t band = band_of(std::min(side.from.y, side.to.y)); band <= last; ++band) {
            visit(band);
        }
    };
    for (const Side& side : sides) {
        for_each_band(side, [&](std::size_t band) { ++ends_[band + 1]; });
    }
    for (std::size_t band = 1; band < ends_.size(); ++band) {
        ends_[band] += ends_[band - 1];
    }
    sides_.resize(ends_.back());
    for (const Side& side : sides) {
        // What was the start of a band becomes its end.
        for_each_band(side, [&](std::size_t band) { sides_[ends_[band]++] = side; });
    }
}

std::size_t RegionLocator::Ring::band_of(double y) const {
    const double band = (y - bottom_) * bands_per_unit_;
    const auto last = static_cast<double>(ends_.size() - 2);
    return band > 0 ? static_cast<std::size_t>(std::min(band, last)) : 0;
}

// The rule of `Map::region_at`.
bool RegionLocator::Ring::encloses(const Point2& point) const {
    const std::size_t band = band_of(point[1]);
    bool is_inside = false;
    for (std::size_t i = band > 0 ? ends_[band - 1] : 0; i < ends_[band]; ++i) {
        is_inside ^= is_right_of(point, sides_[i].from, sides_[i].to);
    }
    return is_inside;
}

} // namespace korvel::kit
