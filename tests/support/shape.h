#pragma once

#include <vector>

#include "tests/support/lists.h"

namespace korvel::test {

struct Xy {
    double x;
    double y;
};

/// Points, rings and regions, for a set of either kind.
struct Shape {
    std::vector<Xy> points;
    std::vector<Ints> rings;
    std::vector<Ints> regions;

    template <class RegionSet>
    void add_to(RegionSet& set) const {
        for (const Xy& at : points) {
            auto& pt = set.pt_list[set.pt_list.Add({})];
            pt.x = at.x;
            pt.y = at.y;
        }
        for (const Ints& ring : rings) {
            set_ints(set.ring_list[set.ring_list.Add({})].pts, ring);
        }
        for (const Ints& region : regions) {
            set_ints(set.region_list[set.region_list.Add({})].rings, region);
        }
    }
};

} // namespace korvel::test
