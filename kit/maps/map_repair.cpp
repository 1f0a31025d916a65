#include "kit/maps/map_repair.h"

#include <functional>

#include "kit/base/areas.h"
#include "kit/base/points.h"

namespace korvel::kit {
namespace {

template <class Points, class IsSame>
int drop_repeated_points(Points& points, IsSame is_same_point, CArray<int>& counts,
                         std::vector<bool>& is_kept, int& repeated);
int drop_repeated_points(const CCPloy2DRg& set, CArray<int>& ring);
bool encloses_area(const CCPloy2DRg& set, int ring);
void drop_rings_without_area(FileContents& contents, std::vector<Repair>& out);
void drop_unused(FileContents& contents, std::vector<Repair>& out);
void write_indices(const CArray<int>& indices, FILE* out);

} // namespace

void repair_curves(FileContents& contents, std::vector<Repair>& out) {
    CurveNetwork& network = contents.curves;
    std::vector<Point2>& decimals = network.decimals;
    std::vector<bool> is_kept;
    int repeated = 0;
    if (decimals.empty()) {
        network.pts.SetSize(
            drop_repeated_points(network.pts, is_same, network.counts, is_kept, repeated));
    } else {
        decimals.resize(
            drop_repeated_points(decimals, std::equal_to<>(), network.counts, is_kept, repeated));
    }
    const int curves = network.counts.GetSize();
    keep_records(is_kept, network.counts, contents.lines.wholes);
    note_repair("repeated points of curves removed", repeated, out);
    note_repair("curves of fewer than two points removed", curves - network.counts.GetSize(), out);
}

namespace {

// Keeps of equal points that follow one another the first, and no curve of one point. Returns how
// many are kept.
template <class Points, class IsSame>
int drop_repeated_points(Points& points, IsSame is_same_point, CArray<int>& counts,
                         std::vector<bool>& is_kept, int& repeated) {
    int first = 0;
    int kept = 0; // points of the curves so far
    for (int& count : counts) {
        const int begin = kept;
        for (int i = first; i < first + count; ++i) {
            if (kept > begin && is_same_point(points[i], points[kept - 1])) {
                ++repeated;
            } else {
                points[kept++] = points[i];
            }
        }
        first += count;
        count = kept - begin;
        is_kept.push_back(count > 1);
        kept -= count > 1 ? 0 : count;
    }
    return kept;
}

} // namespace

void repair_regions(FileContents& contents, std::vector<Repair>& out) {
    CCPloy2DRg& set = contents.regions;
    int repeated = 0;
    for (RING& ring : set.ring_list) {
        repeated += drop_repeated_points(set, ring.pts);
    }
    note_repair("repeated points of rings removed", repeated, out);
    drop_rings_without_area(contents, out);
    drop_unused(contents, out);
}

void write_curve_file(const FileContents& contents, FILE* out) {
    const CurveNetwork& network = contents.curves;
    std::fprintf(out, "%d\n", network.counts.GetSize());
    int next = 0;
    for (const int count : network.counts) {
        std::fprintf(out, "%d\n", count);
        for (const int end = next + count; next < end; ++next) {
            const Point2 point =
                network.decimals.empty() ? to_point(network.pts[next]) : network.decimals[next];
            std::fprintf(out, "%s %s\n", plain_digits(point[0]).c_str(),
                         plain_digits(point[1]).c_str());
        }
    }
}

void write_region_file(const FileContents& contents, FILE* out) {
    const CCPloy2DRg& set = contents.regions;
    std::fprintf(out, "%d\n", set.pt_list.GetSize());
    if (set.pt_list.IsEmpty()) {
        return;
    }
    for (const VERT2D& point : set.pt_list) {
        std::fprintf(out, "%s %s\n", file_digits(point.x).c_str(), file_digits(point.y).c_str());
    }
    std::fprintf(out, "%d\n", set.ring_list.GetSize());
    for (const RING& ring : set.ring_list) {
        write_indices(ring.pts, out);
    }
    std::fprintf(out, "%d\n", set.region_list.GetSize());
    for (const CCPloy2DRg::PyToRg& region : set.region_list) {
        write_indices(region.rings, out);
    }
}

namespace {

// Points at the place of the one before, around the ring. Returns how many.
int drop_repeated_points(const CCPloy2DRg& set, CArray<int>& ring) {
    const auto are_together = [&](int a, int b) {
        return set.pt_list[a].x == set.pt_list[b].x && set.pt_list[a].y == set.pt_list[b].y;
    };
    int kept = 0;
    for (const int point : ring) {
        if (kept == 0 || !are_together(point, ring[kept - 1])) {
            ring[kept++] = point;
        }
    }
    while (kept > 1 && are_together(ring[kept - 1], ring[0])) {
        --kept;
    }
    const int dropped = ring.GetSize() - kept;
    ring.SetSize(kept);
    return dropped;
}

// By the measure of `check_regions`.
bool encloses_area(const CCPloy2DRg& set, int ring) {
    return set.ring_list[ring].pts.GetSize() >= 3 &&
           twice_area<double>(set.pt_list, set.ring_list[ring]) != 0;
}

void drop_rings_without_area(FileContents& contents, std::vector<Repair>& out) {
    CCPloy2DRg& set = contents.regions;
    std::vector<bool> is_kept;
    int holes = 0;
    for (CCPloy2DRg::PyToRg& region : set.region_list) {
        const std::vector<int> rings(region.rings.begin(), region.rings.end());
        region.rings.SetSize(0);
        for (const int ring : rings) {
            if (encloses_area(set, ring)) {
                region.rings.Add(ring);
            } else if (ring == rings.front()) {
                break; // without its outer ring a region is nothing
            } else {
                ++holes;
            }
        }
        is_kept.push_back(!region.rings.IsEmpty());
    }
    const int regions = set.region_list.GetSize();
    keep_records(is_kept, set.region_list, contents.lines.wholes);
    note_repair("holes without area removed", holes, out);
    note_repair("regions without area removed", regions - set.region_list.GetSize(), out);
}

void drop_unused(FileContents& contents, std::vector<Repair>& out) {
    CCPloy2DRg& set = contents.regions;
    const int rings = set.ring_list.GetSize();
    const int points = set.pt_list.GetSize();
    std::vector<bool> is_used(static_cast<std::size_t>(rings), false);
    for (const CCPloy2DRg::PyToRg& region : set.region_list) {
        for (const int ring : region.rings) {
            is_used[static_cast<std::size_t>(ring)] = true;
        }
    }
    const std::vector<int> ring_numbers =
        keep_records(is_used, set.ring_list, contents.lines.parts);
    for (CCPloy2DRg::PyToRg& region : set.region_list) {
        renumber(ring_numbers, region.rings);
    }
    is_used.assign(static_cast<std::size_t>(points), false);
    for (const RING& ring : set.ring_list) {
        for (const int point : ring.pts) {
            is_used[static_cast<std::size_t>(point)] = true;
        }
    }
    const std::vector<int> point_numbers =
        keep_records(is_used, set.pt_list, contents.lines.points);
    for (RING& ring : set.ring_list) {
        renumber(point_numbers, ring.pts);
    }
    note_repair("rings of no region removed", rings - set.ring_list.GetSize(), out);
    note_repair("points of no ring removed", points - set.pt_list.GetSize(), out);
}

void write_indices(const CArray<int>& indices, FILE* out) {
    std::fprintf(out, "%d\n", indices.GetSize());
    for (const int index : indices) {
        std::fprintf(out, "%d ", index);
    }
    std::fprintf(out, "\n");
}

} // namespace
} // namespace korvel::kit
