#include "kit/maps/cap.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <utility>
#include <vector>

#include "kit/base/disjoint_sets.h"
#include "kit/maps/delaunay.h"
#include "kit/maps/front.h"

namespace korvel::kit {
namespace {

// The points of a cap: those of an outline in the order of the set.
std::vector<int> copy_points(const Outline& outline, PLYDT& cap);
void copy_rings(const std::vector<std::vector<int>>& rings, const std::vector<int>& points,
                PLYDT& cap);
bool fill_by_front(const Outline& outline, bool may_be_flat, PLYDT& cap);
bool fill_by_delaunay(const Outline& outline, PLYDT& cap);
bool part_at_touching_points(PLYDT& cap);
int passes_of_rings(const PLYDT& cap);
void trace_rings(PLYDT& cap, std::vector<int>& successors);

// The corners of triangles, three for each, put together into fans: corners at the same point whose
// triangles share a side that ends there.
class Fans {
public:
    explicit Fans(const PLYDT& cap);

    // False where two triangles are on the same side of an edge, or where the triangles are not
    // connected.
    bool are_valid() const { return !has_doubled_side_ && triangles_.count() == 1; }

    // Numbers the fans as points: the first at each point keeps its number, further ones are
    // added. Returns the point of each corner.
    std::vector<int> number_points(PLYDT& cap);

    // The sides without a second triangle, each by the corners that start and end it.
    std::vector<std::pair<int, int>> open_sides() const;

private:
    static int next(int corner) { return corner % 3 == 2 ? corner - 2 : corner + 1; }

    std::vector<int> points_;                  // of the corners
    std::map<std::pair<int, int>, int> sides_; // the corner that starts a side, by its points
    DisjointSets corners_;                     // in fans
    DisjointSets triangles_;                   // put together at sides
    bool has_doubled_side_ = false;
};

} // namespace

Filled make_cap(const PLYDT& set, const PLYDT::PyToRg& region, Fill fill, PLYDT& cap) {
    const Outline outline = outline_of(set, region);
    cap.RemoveAll();
    if (outline.rings.empty()) {
        return Filled::not_at_all;
    }
    if (fill != Fill::delaunay && fill_by_front(outline, fill == Fill::front, cap) &&
        part_at_touching_points(cap)) {
        return Filled::by_front;
    }
    cap.RemoveAll();
    if (fill != Fill::front && fill_by_delaunay(outline, cap) && part_at_touching_points(cap)) {
        return Filled::by_delaunay;
    }
    return Filled::not_at_all;
}

namespace {

std::vector<int> copy_points(const Outline& outline, PLYDT& cap) {
    std::vector<int> places(outline.places.size());
    std::iota(places.begin(), places.end(), 0);
    std::sort(places.begin(), places.end(), [&](int a, int b) {
        return outline.points[static_cast<std::size_t>(a)] <
               outline.points[static_cast<std::size_t>(b)];
    });
    std::vector<int> points(places.size());
    cap.pt_list.SetSize(static_cast<int>(places.size()));
    for (int point = 0; point < cap.pt_list.GetSize(); ++point) {
        const auto place = static_cast<std::size_t>(places[static_cast<std::size_t>(point)]);
        points[place] = point;
        cap.pt_list[point].x = outline.places[place].x;
        cap.pt_list[point].y = outline.places[place].y;
    }
    return points;
}

void copy_rings(const std::vector<std::vector<int>>& rings, const std::vector<int>& points,
                PLYDT& cap) {
    cap.region_list.SetSize(1);
    cap.ring_list.SetSize(static_cast<int>(rings.size()));
    for (int ring = 0; ring < cap.ring_list.GetSize(); ++ring) {
        cap.region_list[0].rings.Add(ring);
        for (const int place : rings[static_cast<std::size_t>(ring)]) {
            cap.ring_list[ring].pts.Add(points[static_cast<std::size_t>(place)]);
        }
    }
}

// Triangles without area would make faces without direction.
bool fill_by_front(const Outline& outline, bool may_be_flat, PLYDT& cap) {
    copy_rings(outline.rings, copy_points(outline, cap), cap);
    cap.creat_top_rel();
    return cover_by_front(cap, 0, may_be_flat);
}

bool fill_by_delaunay(const Outline& outline, PLYDT& cap) {
    DelaunayTriangles found = delaunay_triangles(outline);
    for (std::vector<int>& ring : found.rings) {
        if (turn_of_ring(outline, ring) < 0) {
            std::reverse(ring.begin(), ring.end());
        }
    }
    const std::vector<int> points = copy_points(outline, cap);
    copy_rings(found.rings, points, cap);
    for (PLYDT::TRG& triangle : found.between(points)) {
        cap.trg_list.Add(triangle);
    }
    return !found.corners.empty();
}

// A body must be one piece, or the library does not know how to turn the faces of all others. Where
// rings touch, the region's sectors at the point are no neighbours: over one point for all of
// them the body would have an edge with four faces. Each fan of triangles gets a point of its own
// there, and the rings go anew along the sides that have one triangle. False where that does not
// bring each point onto one ring.
bool part_at_touching_points(PLYDT& cap) {
    Fans fans(cap);
    if (!fans.are_valid()) {
        return false;
    }
    if (passes_of_rings(cap) == cap.pt_list.GetSize()) {
        return true;
    }
    const std::vector<int> points = fans.number_points(cap);
    for (int i = 0; i < cap.trg_list.GetSize(); ++i) {
        cap.trg_list[i].va = points[3 * i];
        cap.trg_list[i].vb = points[3 * i + 1];
        cap.trg_list[i].vc = points[3 * i + 2];
    }
    std::vector<int> successors(cap.pt_list.GetSize(), -1);
    for (const auto& [start, end] : fans.open_sides()) {
        successors[points[start]] = points[end];
    }
    trace_rings(cap, successors);
    return passes_of_rings(cap) == cap.pt_list.GetSize();
}

int passes_of_rings(const PLYDT& cap) {
    int passes = 0;
    for (const RING& ring : cap.ring_list) {
        passes += ring.pts.GetSize();
    }
    return passes;
}

void trace_rings(PLYDT& cap, std::vector<int>& successors) {
    cap.ring_list.RemoveAll();
    cap.region_list[0].rings.RemoveAll();
    for (int start = 0; start < cap.pt_list.GetSize(); ++start) {
        if (successors[start] < 0) {
            continue;
        }
        const int ring = cap.ring_list.GetSize();
        cap.ring_list.SetSize(ring + 1);
        cap.region_list[0].rings.Add(ring);
        for (int point = start; successors[point] >= 0;) {
            cap.ring_list[ring].pts.Add(point);
            point = std::exchange(successors[point], -1);
        }
    }
}

Fans::Fans(const PLYDT& cap)
    : corners_(3 * cap.trg_list.GetSize()), triangles_(cap.trg_list.GetSize()) {
    for (const PLYDT::TRG& triangle : cap.trg_list) {
        points_.insert(points_.end(), {triangle.va, triangle.vb, triangle.vc});
    }
    for (int corner = 0; corner < static_cast<int>(points_.size()); ++corner) {
        const int end = next(corner);
        if (!sides_.try_emplace({points_[corner], points_[end]}, corner).second) {
            has_doubled_side_ = true;
        }
        const auto opposite = sides_.find({points_[end], points_[corner]});
        if (opposite != sides_.end()) {
            corners_.join(corner, next(opposite->second));
            corners_.join(end, opposite->second);
            triangles_.join(corner / 3, opposite->second / 3);
        }
    }
}

std::vector<int> Fans::number_points(PLYDT& cap) {
    std::vector<bool> is_taken(cap.pt_list.GetSize(), false);
    std::map<int, int> numbers; // of the fans
    std::vector<int> numbered;
    for (int corner = 0; corner < static_cast<int>(points_.size()); ++corner) {
        const int point = points_[corner];
        const auto [entry, is_new] = numbers.try_emplace(corners_.root(corner), point);
        if (is_new && is_taken[point]) {
            entry->second = cap.pt_list.GetSize();
            cap.pt_list.SetSize(entry->second + 1);
            cap.pt_list[entry->second].x = cap.pt_list[point].x;
            cap.pt_list[entry->second].y = cap.pt_list[point].y;
        }
        is_taken[point] = true;
        numbered.push_back(entry->second);
    }
    return numbered;
}

std::vector<std::pair<int, int>> Fans::open_sides() const {
    std::vector<std::pair<int, int>> open;
    for (const auto& [side, corner] : sides_) {
        if (sides_.count({side.second, side.first}) == 0) {
            open.emplace_back(corner, next(corner));
        }
    }
    return open;
}

} // namespace
} // namespace korvel::kit
