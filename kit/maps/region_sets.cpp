#include "kit/maps/region_sets.h"
#include "kit/base/areas.h"

#include <utility>

namespace korvel::kit {
namespace {

// Numbers the used entries of a list densely, in the order of the list.
class Renumbering {
public:
    explicit Renumbering(int size) : new_index_(size, -1) {}

    void use(int index) { new_index_[index] = 0; }

    template <class Record>
    void compact(CArray<Record>& list) {
        int kept = 0;
        for (int i = 0; i < list.GetSize(); ++i) {
            if (new_index_[i] >= 0) {
                new_index_[i] = kept;
                if (kept != i) {
                    list[kept] = std::move(list[i]);
                }
                ++kept;
            }
        }
        list.SetSize(kept);
    }

    void rename(CArray<int>& indices) const {
        for (int& index : indices) {
            index = new_index_[index];
        }
    }

private:
    std::vector<int> new_index_;
};

} // namespace

void orient_rings(PLYDT& set) {
    for (RING& ring : set.ring_list) {
        if (twice_area<double>(set.pt_list, ring) < 0) {
            std::reverse(ring.pts.begin(), ring.pts.end());
        }
    }
}

template <class Set>
void keep_regions(Set& set, const std::vector<int>& regions) {
    Renumbering region_numbers(set.region_list.GetSize());
    Renumbering ring_numbers(set.ring_list.GetSize());
    Renumbering point_numbers(set.pt_list.GetSize());
    for (const int region : regions) {
        region_numbers.use(region);
        for (const int ring : set.region_list[region].rings) {
            ring_numbers.use(ring);
            for (const int point : set.ring_list[ring].pts) {
                point_numbers.use(point);
            }
        }
    }
    region_numbers.compact(set.region_list);
    ring_numbers.compact(set.ring_list);
    point_numbers.compact(set.pt_list);
    for (typename Set::PyToRg& region : set.region_list) {
        ring_numbers.rename(region.rings);
    }
    for (RING& ring : set.ring_list) {
        point_numbers.rename(ring.pts);
    }
}

template void keep_regions(PLYDT& set, const std::vector<int>& regions);
template void keep_regions(CCPloy2DRg& set, const std::vector<int>& regions);

} // namespace korvel::kit
