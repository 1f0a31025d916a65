#pragma once

#include <vector>

#include "korvel/platform/framework.h"

namespace korvel::test {

struct Xy {
    double x;
    double y;
};
using Ints = std::vector<int>;

/// Points, rings and regions, for a set of either kind.
struct Shape {
    std::vector<Xy> points;
    std::vector<Ints> rings;
    std::vector<Ints> regions;

    template <class RegionSet>
    void add_to(RegionSet& set) const {
        const auto fill = [](CArray<int>& list, const Ints& values) {
            for (const int value : values) {
                list.Add(value);
            }
        };
        for (const Xy& at : points) {
            auto& pt = set.pt_list[set.pt_list.Add({})];
            pt.x = at.x;
            pt.y = at.y;
        }
        for (const Ints& ring : rings) {
            fill(set.ring_list[set.ring_list.Add({})].pts, ring);
        }
        for (const Ints& region : regions) {
            fill(set.region_list[set.region_list.Add({})].rings, region);
        }
    }
};

} // namespace korvel::test
