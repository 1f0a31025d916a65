#include "kit/maps/find_regions.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "kit/base/error.h"
#include "kit/maps/curve_index.h"
#include "kit/maps/dropped.h"
#include "kit/maps/join_ends.h"
#include "kit/maps/small_faces.h"

namespace korvel::kit {
namespace {

std::size_t crossings_in(std::uint64_t memory);
void count_kinds(const std::vector<SegmentKind>& kinds, NetworkReport& report);
template <class CurveOf>
std::vector<std::vector<int>> curves_of_sides(const CCPloy2DRg& set, CurveOf curve_of);

// Finds the segments of a noded network by their ends.
class SegmentIndex {
public:
    explicit SegmentIndex(const NodedNetwork& noded);

    // The curve of the segment between two points.
    int curve_between(const GridPoint& a, const GridPoint& b) const;

private:
    std::pair<int, int> ends(int segment) const {
        return std::minmax(noded_.segments[segment].from, noded_.segments[segment].to);
    }
    int number(const GridPoint& point) const;

    const NodedNetwork& noded_;
    std::vector<int> by_place_; // points
    std::vector<int> by_ends_;  // segments
};

} // namespace

FoundRegions find_regions(Network network, const FindOptions& options, const Context& context) {
    const Placement& placement = network.placement();
    const double step = placement.grid.step();
    const double tolerance = options.tolerance ? *options.tolerance / step : 1;
    const auto state = std::make_shared<FoundRegions::State>();
    state->is_traced = options.as_traced;
    const std::size_t most_crossings = crossings_in(options.memory);
    FoundRegions found;
    if (options.as_traced) {
        state->traced.trace(network, tolerance, most_crossings, context);
        state->report.points = state->traced.builder.unique_pts.GetSize();
        found.map_ = Map(state->traced.regions(), placement);
    } else {
        const std::optional<JoinedEnds> joined = join_ends(network, tolerance);
        state->report.joined_ends = joined ? joined->moved : 0;
        state->noded = node(joined ? joined->network : network, context, most_crossings);
        Faces faces = faces_of(state->noded, context);
        state->report.crossings = state->noded.crossings;
        state->report.duplicates = static_cast<int>(state->noded.duplicates.size());
        state->report.points = static_cast<int>(state->noded.points.size());
        count_kinds(faces.kinds, state->report);
        if (options.min_area > 0) {
            const double min_area = options.min_area / (step * step);
            state->report.merged = merge_small_faces(state->noded, faces, min_area);
            faces = faces_of(state->noded, context);
        }
        state->kinds = std::move(faces.kinds);
        found.map_ = Map(std::move(faces.regions), placement);
    }
    state->network = std::move(network);
    found.state_ = state;
    return found;
}

std::vector<Dropped> FoundRegions::dropped() const {
    std::vector<Dropped> dropped;
    add_curves_without_length(state_->network, dropped);
    if (state_->is_traced) {
        add_what_is_not_traced(state_->network, state_->traced.builder, dropped);
    } else {
        add_leftover_lines(state_->noded, state_->kinds, dropped);
    }
    // Rings have no curve and come last.
    std::stable_sort(dropped.begin(), dropped.end(), [](const Dropped& a, const Dropped& b) {
        return static_cast<unsigned>(a.curve) < static_cast<unsigned>(b.curve);
    });
    return dropped;
}

Network FoundRegions::leftover() const {
    Network network;
    network.set_placement(state_->network.placement());
    for (const Dropped& dropped : dropped()) {
        if (dropped.line.size() > 1) {
            network.add_curve(dropped.line);
        }
    }
    return network;
}

std::vector<std::vector<int>> FoundRegions::curves_of_rings() const {
    if (state_->is_traced) {
        const CurveIndex index(state_->network);
        return curves_of_sides(map_.regions(), [&](const GridPoint& a, const GridPoint& b) {
            return index.nearest_curve(to_point(a), to_point(b));
        });
    }
    const SegmentIndex index(state_->noded);
    return curves_of_sides(map_.regions(), [&](const GridPoint& a, const GridPoint& b) {
        return index.curve_between(a, b);
    });
}

Map FoundRegions::around(const Point2& seed) const {
    if (state_->is_traced) {
        const Placement& placement = state_->network.placement();
        return Map(state_->traced.around(placement.grid.nearest(seed)), placement);
    }
    const std::optional<int> region = map_.region_at(seed);
    return region ? map_.kept(std::vector<int>{*region}) : Map();
}

Network FoundRegions::noded() const {
    Network network;
    network.set_placement(state_->network.placement());
    std::vector<GridPoint> line;
    const NodedSegment* last = nullptr;
    const NodedNetwork& noded = state_->noded;
    for (std::size_t i = 0; i < noded.segments.size(); ++i) {
        const NodedSegment& segment = noded.segments[i];
        if (state_->kinds[i] != SegmentKind::border) {
            continue;
        }
        if (last == nullptr || last->to != segment.from || last->curve != segment.curve) {
            if (last != nullptr) {
                network.add_curve(line);
            }
            line = {noded.points[segment.from]};
        }
        line.push_back(noded.points[segment.to]);
        last = &segment;
    }
    if (last != nullptr) {
        network.add_curve(line);
    }
    return network;
}

const CREGION& FoundRegions::builder() const {
    if (!state_->is_traced) {
        std::call_once(state_->is_built,
                       [&] { state_->traced.trace(noded(), 1, crossings_in(available_memory())); });
    }
    return state_->traced.builder;
}

namespace {

template <class CurveOf>
std::vector<std::vector<int>> curves_of_sides(const CCPloy2DRg& set, CurveOf curve_of) {
    const auto corner = [&](int point) {
        const VERT2D& at = set.pt_list[point];
        return GridPoint{static_cast<int>(at.x), static_cast<int>(at.y)};
    };
    std::vector<std::vector<int>> curves;
    for (const RING& ring : set.ring_list) {
        std::vector<int>& list = curves.emplace_back();
        for (int k = 0; k < ring.pts.GetSize(); ++k) {
            const int next = k + 1 < ring.pts.GetSize() ? k + 1 : 0;
            list.push_back(curve_of(corner(ring.pts[k]), corner(ring.pts[next])));
        }
        std::sort(list.begin(), list.end());
        list.erase(std::unique(list.begin(), list.end()), list.end());
    }
    return curves;
}

SegmentIndex::SegmentIndex(const NodedNetwork& noded)
    : noded_(noded), by_place_(noded.points.size()), by_ends_(noded.segments.size()) {
    std::iota(by_place_.begin(), by_place_.end(), 0);
    std::sort(by_place_.begin(), by_place_.end(),
              [&](int a, int b) { return is_before(noded_.points[a], noded_.points[b]); });
    std::iota(by_ends_.begin(), by_ends_.end(), 0);
    std::sort(by_ends_.begin(), by_ends_.end(), [&](int a, int b) { return ends(a) < ends(b); });
}

int SegmentIndex::curve_between(const GridPoint& a, const GridPoint& b) const {
    const std::pair<int, int> wanted = std::minmax(number(a), number(b));
    const auto found =
        std::lower_bound(by_ends_.begin(), by_ends_.end(), wanted,
                         [&](int segment, const auto& pair) { return ends(segment) < pair; });
    return noded_.segments[*found].curve;
}

int SegmentIndex::number(const GridPoint& point) const {
    return *std::lower_bound(
        by_place_.begin(), by_place_.end(), point,
        [&](int number, const GridPoint& p) { return is_before(noded_.points[number], p); });
}

std::size_t crossings_in(std::uint64_t memory) {
    // Measured on grids, with the regions and a copy of them.
    constexpr std::uint64_t bytes_of_crossing = 700;
    return static_cast<std::size_t>(memory / bytes_of_crossing);
}

void count_kinds(const std::vector<SegmentKind>& kinds, NetworkReport& report) {
    const auto count = [&](SegmentKind kind) {
        return static_cast<int>(std::count(kinds.begin(), kinds.end(), kind));
    };
    report.borders = count(SegmentKind::border);
    report.bridges = count(SegmentKind::bridge);
    report.dangling = count(SegmentKind::dangling);
    report.segments = static_cast<int>(kinds.size()) + report.duplicates;
}

} // namespace
} // namespace korvel::kit
