#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "kit/base/box_tree.h"
#include "kit/base/exact_predicates.h"
#include "kit/base/grid_scale.h"
#include "kit/base/points.h"
#include "kit/base/rectangle.h"

namespace korvel::kit {

class Map;

/// Finds the regions of many points: `Map::region_at` with an index that is built once, in
/// n log n. Valid as long as the map exists and keeps its regions. Several threads may ask at once.
class RegionLocator {
public:
    explicit RegionLocator(const Map& map);

    /// What `Map::region_at` returns. Usually takes as long as a search of a tree.
    std::optional<int> region_at(const Point2& point) const;

    /// All regions that contain a point, ascending.
    std::vector<int> regions_at(const Point2& point) const;

private:
    struct Side {
        PlanePoint from;
        PlanePoint to;
    };

    // A ring with its sides sorted into bands of equal height, each side into every band that it
    // meets.
    class Ring {
    public:
        explicit Ring(const std::vector<PlanePoint>& corners);
        bool encloses(const Point2& point) const;

    private:
        std::size_t band_of(double y) const;

        double bottom_ = 0;
        double bands_per_unit_ = 0;
        std::vector<Side> sides_;       // of the first band, the second, …
        std::vector<std::size_t> ends_; // of each band in `sides_`
    };

    template <class Visit>
    void for_each_at(const Point2& point, Visit visit) const;
    bool contains(int region, const Point2& point) const;

    std::vector<Ring> rings_;       // of all regions, in their order
    std::vector<std::size_t> ends_; // of each region in `rings_`
    std::vector<int> regions_;      // those with a ring, as numbered in the tree
    GridScale columns_;
    GridScale rows_;
    Rectangle bounds_;
    BoxTree outlines_;
};

} // namespace korvel::kit
