#pragma once

#include <vector>

#include "kit/base/rectangle.h"
#include "korvel/module/korvel.h"

// Work on the two kinds of region set, `CCPloy2DRg` and `PLYDT`, whose records have the same shape.
// All indices in a set must be valid.

namespace korvel::kit {

/// Enlarges a rectangle by the points of a region.
template <class Set>
void take_in_region(Rectangle& box, const Set& set, const typename Set::PyToRg& region) {
    for (const int ring : region.rings) {
        for (const int point : set.ring_list[ring].pts) {
            box.take_in(set.pt_list[point].x, set.pt_list[point].y);
        }
    }
}

/// The smallest rectangle around the regions of a set. Points that no region uses do not count.
template <class Set>
Rectangle box_of_regions(const Set& set) {
    Rectangle box;
    for (const auto& region : set.region_list) {
        take_in_region(box, set, region);
    }
    return box;
}

/// Replaces the target's contents by the points, rings and regions of the source. Nothing derived
/// comes along.
template <class Source, class Target>
void copy_regions(const Source& source, Target& target) {
    target.RemoveAll();
    target.pt_list.SetSize(source.pt_list.GetSize());
    for (int i = 0; i < source.pt_list.GetSize(); ++i) {
        target.pt_list[i].x = source.pt_list[i].x;
        target.pt_list[i].y = source.pt_list[i].y;
    }
    target.ring_list.SetSize(source.ring_list.GetSize());
    for (int i = 0; i < source.ring_list.GetSize(); ++i) {
        target.ring_list[i].pts.Copy(source.ring_list[i].pts);
    }
    target.region_list.SetSize(source.region_list.GetSize());
    for (int i = 0; i < source.region_list.GetSize(); ++i) {
        target.region_list[i].rings.Copy(source.region_list[i].rings);
    }
}

/// Turns every ring the way the triangulation expects: with positive area, clockwise where y grows
/// downward.
void orient_rings(PLYDT& set);

/// Keeps the regions of the given indices, in index order, and the rings and points that they use.
template <class Set>
void keep_regions(Set& set, const std::vector<int>& regions);

} // namespace korvel::kit
