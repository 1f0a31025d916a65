#include "kit/maps/small_faces.h"

#include <cmath>
#include <functional>
#include <queue>
#include <unordered_map>
#include <utility>
#include <vector>

#include "kit/base/areas.h"

namespace korvel::kit {
namespace {

// Faces that are put together, each group under the number of one of its faces.
class Groups {
public:
    Groups(const NodedNetwork& network, const Faces& faces);

    int merge_below(double least_area);

    int group_of(int face) {
        while (group_[face] != face) {
            face = group_[face] = group_[group_[face]];
        }
        return face;
    }

private:
    int neighbour_with_longest_border(int group) const;
    void merge(int group, int into);

    std::vector<int> group_;
    std::vector<double> areas_;
    std::vector<std::unordered_map<int, double>> borders_; // lengths, by neighbour
};

} // namespace

int merge_small_faces(NodedNetwork& network, const Faces& faces, double least_area) {
    Groups groups(network, faces);
    const int merged = groups.merge_below(least_area);
    std::size_t kept = 0;
    for (std::size_t i = 0; i < network.segments.size(); ++i) {
        const auto [left, right] = faces.sides[i];
        if (left < 0 || right < 0 || groups.group_of(left) != groups.group_of(right)) {
            network.segments[kept++] = network.segments[i];
        }
    }
    network.segments.resize(kept);
    return merged;
}

namespace {

Groups::Groups(const NodedNetwork& network, const Faces& faces)
    : borders_(static_cast<std::size_t>(faces.regions->region_list.GetSize())) {
    for (const CCPloy2DRg::PyToRg& region : faces.regions->region_list) {
        group_.push_back(static_cast<int>(group_.size()));
        areas_.push_back(region_area(*faces.regions, region, true));
    }
    for (std::size_t i = 0; i < network.segments.size(); ++i) {
        const auto [left, right] = faces.sides[i];
        if (left >= 0 && right >= 0 && left != right) {
            const GridPoint& from = network.points[network.segments[i].from];
            const GridPoint& to = network.points[network.segments[i].to];
            const double length =
                std::hypot(static_cast<double>(to.x) - from.x, static_cast<double>(to.y) - from.y);
            borders_[left][right] += length;
            borders_[right][left] += length;
        }
    }
}

int Groups::merge_below(double least_area) {
    using Entry = std::pair<double, int>; // of a group: its area, its number
    std::priority_queue<Entry, std::vector<Entry>, std::greater<>> small;
    const auto add = [&](int group) {
        if (areas_[group] < least_area) {
            small.emplace(areas_[group], group);
        }
    };
    for (const int group : std::vector<int>(group_)) {
        add(group);
    }
    int merged = 0;
    while (!small.empty()) {
        const auto [area, group] = small.top();
        small.pop();
        const bool is_current = group_[group] == group && areas_[group] == area;
        if (const int into = is_current ? neighbour_with_longest_border(group) : -1; into >= 0) {
            merge(group, into);
            ++merged;
            add(group_of(into));
        }
    }
    return merged;
}

int Groups::neighbour_with_longest_border(int group) const {
    int best = -1;
    double longest = 0;
    for (const auto& [neighbour, length] : borders_[group]) {
        if (best < 0 || length > longest || (length == longest && neighbour < best)) {
            best = neighbour;
            longest = length;
        }
    }
    return best;
}

// The group with fewer neighbours goes into the other, so that each border moves log n times.
void Groups::merge(int group, int into) {
    if (borders_[group].size() > borders_[into].size()) {
        std::swap(group, into);
    }
    borders_[into].erase(group);
    borders_[group].erase(into);
    for (const auto& [neighbour, length] : borders_[group]) {
        borders_[into][neighbour] += length;
        borders_[neighbour].erase(group);
        borders_[neighbour][into] += length;
    }
    borders_[group].clear();
    areas_[into] += areas_[group];
    group_[group] = into;
}

} // namespace
} // namespace korvel::kit
