#pragma once

#include <map>
#include <utility>
#include <vector>

#include "kit/base/exact_predicates.h"
#include "korvel/module/korvel.h"

namespace korvel::test {

/// The outer ring of a region and its holes.
using Rings = std::vector<std::vector<kit::PlanePoint>>;

/// Fills an empty set with one region. Rings share points at the same place, or each corner has a
/// point of its own.
template <class Set>
void fill(Set& set, const Rings& rings, bool is_shared) {
    std::map<std::pair<double, double>, int> known;
    set.region_list.SetSize(1);
    set.ring_list.SetSize(static_cast<int>(rings.size()));
    for (int i = 0; i < set.ring_list.GetSize(); ++i) {
        set.region_list[0].rings.Add(i);
        for (const kit::PlanePoint& p : rings[static_cast<std::size_t>(i)]) {
            const auto [entry, is_new] = known.try_emplace({p.x, p.y}, set.pt_list.GetSize());
            if (is_new || !is_shared) {
                entry->second = set.pt_list.GetSize();
                set.pt_list.SetSize(entry->second + 1);
                set.pt_list[entry->second].x = p.x;
                set.pt_list[entry->second].y = p.y;
            }
            set.ring_list[i].pts.Add(entry->second);
        }
    }
}

} // namespace korvel::test
