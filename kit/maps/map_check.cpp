#include "kit/maps/map_check.h"

#include <algorithm>
#include <string>

#include "kit/base/areas.h"
#include "kit/files/region_file.h"

namespace korvel::kit {
namespace {

void check_ring(const CCPloy2DRg& set, int ring, int line, Findings& out);

} // namespace

void check_curves(const FileContents& contents, Findings& out) {
    const CArray<int>& counts = contents.curves.counts;
    for (int curve = 0; curve < counts.GetSize(); ++curve) {
        if (counts[curve] < 2) {
            out.notes.push_back(
                {contents.lines.wholes[curve],
                 numbered("curve", curve + 1) +
                     (counts[curve] == 0 ? " has no point" : " has only one point")});
        }
    }
}

void check_regions(const FileContents& contents, Findings& out) {
    const CCPloy2DRg& set = contents.regions;
    std::vector<bool> is_point_used(set.pt_list.GetSize(), false);
    std::vector<bool> is_ring_used(set.ring_list.GetSize(), false);
    for (int ring = 0; ring < set.ring_list.GetSize(); ++ring) {
        check_ring(set, ring, contents.lines.parts[ring], out);
        for (const int point : set.ring_list[ring].pts) {
            if (point >= 0) {
                is_point_used[point] = true;
            }
        }
    }
    for (int region = 0; region < set.region_list.GetSize(); ++region) {
        const CArray<int>& rings = set.region_list[region].rings;
        if (rings.IsEmpty()) {
            out.problems.push_back(
                {contents.lines.wholes[region], numbered("region", region) + " has no ring"});
        }
        for (const int ring : rings) {
            if (ring >= 0) {
                is_ring_used[ring] = true;
            }
        }
    }
    note_unused(is_point_used, contents.lines.points, "point", "ring", out);
    note_unused(is_ring_used, contents.lines.parts, "ring", "region", out);
    if (const auto change = first_change(set, contents.lines)) {
        out.notes.push_back(*change);
    }
}

namespace {

void check_ring(const CCPloy2DRg& set, int ring, int line, Findings& out) {
    const CArray<int>& points = set.ring_list[ring].pts;
    if (points.GetSize() < 3) {
        out.problems.push_back({line, numbered("ring", ring) + " has " +
                                          std::to_string(points.GetSize()) +
                                          " points, it encloses nothing"});
    } else if (std::find(points.begin(), points.end(), -1) == points.end() &&
               twice_area<double>(set.pt_list, set.ring_list[ring]) == 0) {
        out.problems.push_back({line, numbered("ring", ring) + " encloses no area"});
    }
}

} // namespace

void check_triangles(const FileContents& contents, Findings& out) {
    const PLYDT& set = contents.triangles;
    for (int i = 0; i < set.trg_list.GetSize(); ++i) {
        const PLYDT::TRG& t = set.trg_list[i];
        if (std::min({t.va, t.vb, t.vc}) >= 0 && (t.va == t.vb || t.vb == t.vc || t.vc == t.va)) {
            out.problems.push_back(
                {contents.lines.parts[i], numbered("triangle", i) + " has a point twice"});
        }
    }
}

} // namespace korvel::kit
