// The nesting of rings into regions.

#include <memory>

#include "korvel/base/indices.h"
#include "korvel/base/packed_lists.h"
#include "korvel/plane/live_points.h"
#include "korvel/platform/check_point.h"
#include "korvel/platform/prefetch.h"
#include "korvel/region/ring_points.h"

namespace {

constexpr const char* stage = "nesting rings";

/// Finds the rings directly inside another one among those before it.
class HoleFinder {
public:
    HoleFinder(const CArray<CREGION::RToPt>& rings, const CArray<tagPOINT>& pts);

    void prefetch_points_of(int ring) const;

    /// The holes of a ring, ascending, each of which is thereby claimed. To be called once for each
    /// ring, in order. The list holds until the next call.
    const std::vector<int>& claim_holes_of(int ring);

private:
    static std::vector<POINT> first_points_of(const CArray<CREGION::RToPt>& rings,
                                              const CArray<tagPOINT>& pts);
    void set_outline(int ring);
    bool encloses(tagPOINT pt) const;
    bool touches(int ring, int other);

    const CArray<CREGION::RToPt>& rings_;
    const CArray<tagPOINT>& pts_;
    std::vector<POINT> first_points_;
    korvel::LivePoints unclaimed_; ///< alive are those of the rings so far that nobody claimed
    std::vector<int> holes_;

    std::vector<tagPOINT> corners_; ///< of the ring asked about
    korvel::IntBox box_;

    std::unique_ptr<korvel::PackedLists> rings_at_; ///< the rings through each point, once needed
    std::vector<int> touched_by_; ///< of each ring the last one asked about that touches it
    int last_asked_ = -1;
};

void start_regions(CArray<CREGION::PyToRg>& regions, CArray<CREGION::RToPt>& rings);

} // namespace

void CREGION::SearchAllRegion() {
    start_regions(regions, ring_pts);
    HoleFinder finder(ring_pts, unique_pts);
    for (int ring = 0; ring < ring_pts.GetSize(); ++ring) {
        constexpr int rings_ahead = 2;
        finder.prefetch_points_of(ring + rings_ahead);
        for (const int hole : finder.claim_holes_of(ring)) {
            regions[ring].rings.Add(hole);
            ring_pts[hole].is_hole = 1;
        }
        korvel::check_point_after(ring, ring_pts.GetSize(), 256, stage);
    }
}

namespace {

/// Gives each ring a region of its own. Regions that there were before keep both tags.
void start_regions(CArray<CREGION::PyToRg>& regions, CArray<CREGION::RToPt>& rings) {
    regions.SetSize(rings.GetSize());
    for (int ring = 0; ring < rings.GetSize(); ++ring) {
        rings[ring].is_hole = 0;
        regions[ring].is_select = 0;
        regions[ring].rings.RemoveAll();
        regions[ring].rings.Add(ring);
    }
}

HoleFinder::HoleFinder(const CArray<CREGION::RToPt>& rings, const CArray<tagPOINT>& pts)
    : rings_(rings), pts_(pts), first_points_(first_points_of(rings, pts)),
      unclaimed_(first_points_) {}

/// The first point of each ring; any point for an empty one, which never comes alive.
std::vector<POINT> HoleFinder::first_points_of(const CArray<CREGION::RToPt>& rings,
                                               const CArray<tagPOINT>& pts) {
    std::vector<POINT> points;
    points.reserve(static_cast<std::size_t>(rings.GetSize()));
    for (const CREGION::RToPt& ring : rings) {
        const bool has_first = !ring.pts.IsEmpty() && korvel::has_element(pts, ring.pts[0]);
        points.push_back(has_first ? pts[ring.pts[0]] : POINT{});
    }
    return points;
}

void HoleFinder::prefetch_points_of(int ring) const {
    if (korvel::has_element(rings_, ring)) {
        for (const int pt : rings_[ring].pts) {
            if (korvel::has_element(pts_, pt)) {
                korvel::prefetch(&pts_[pt]);
            }
        }
    }
}

const std::vector<int>& HoleFinder::claim_holes_of(int ring) {
    holes_.clear();
    // A ring that a host has emptied, or given points that do not exist, lies nowhere.
    if (rings_[ring].pts.IsEmpty() || !korvel::has_elements(pts_, rings_[ring].pts)) {
        return holes_;
    }
    set_outline(ring);
    unclaimed_.collect(box_, holes_); // a point outside the box is outside the ring
    // Touching rings are found at a cost for each ring asked about, which few candidates do not
    // repay.
    constexpr std::size_t few = 8;
    const bool are_many = holes_.size() > few;
    std::size_t corners_compared = 0;
    std::erase_if(holes_, [&](int other) {
        constexpr std::size_t many_corners = 1 << 16;
        corners_compared += corners_.size();
        if (corners_compared >= many_corners) {
            corners_compared = 0;
            korvel::check_point(stage, ring, rings_.GetSize());
        }
        return (are_many && touches(ring, other)) || !encloses(first_points_[other]) ||
               touches(ring, other);
    });
    for (const int hole : holes_) {
        unclaimed_.set_alive(hole, false);
    }
    unclaimed_.set_alive(ring, true);
    return holes_;
}

void HoleFinder::set_outline(int ring) {
    corners_.clear();
    box_ = korvel::IntBox();
    for (const int pt : rings_[ring].pts) {
        corners_.push_back(pts_[pt]);
        box_.include(corners_.back());
    }
}

bool HoleFinder::encloses(tagPOINT pt) const {
    const auto corner = [&](int k) { return korvel::vector_between(pt, corners_[k]); };
    return korvel::winding_encloses(static_cast<int>(corners_.size()), corner);
}

/// Whether two rings share a point. Linear in the first ring when it is asked about anew, constant
/// for further questions about it.
bool HoleFinder::touches(int ring, int other) {
    if (rings_at_ == nullptr) {
        const int points = pts_.GetSize();
        rings_at_ = std::make_unique<korvel::PackedLists>(
            points, [&](auto add) { korvel::for_each_ring_at_point(rings_, points, add); });
        touched_by_.assign(static_cast<std::size_t>(rings_.GetSize()), -1);
    }
    if (std::exchange(last_asked_, ring) != ring) {
        for (const int pt : rings_[ring].pts) {
            for (const int neighbour : (*rings_at_)[pt]) {
                touched_by_[neighbour] = ring;
            }
        }
    }
    return touched_by_[other] == ring;
}

} // namespace

int CREGION::PtInRing(tagPOINT pt, const RToPt& ring, CArray<tagPOINT>& pts) {
    return korvel::ring_encloses(ring, pts, pt) ? 1 : 0;
}
