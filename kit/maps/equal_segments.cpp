#include "kit/maps/equal_segments.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <span>
#include <utility>
#include <vector>

namespace korvel::kit {

void leave_out_equal_segments(NodedNetwork& noded) {
    const std::size_t count = noded.segments.size();
    // Of the segments with a point as the lesser end.
    std::vector<int> first_of(noded.points.size() + 1, 0);
    const auto lesser = [&](std::size_t i) {
        return std::min(noded.segments[i].from, noded.segments[i].to);
    };
    for (std::size_t i = 0; i < count; ++i) {
        ++first_of[lesser(i) + 1];
    }
    std::partial_sum(first_of.begin(), first_of.end(), first_of.begin());
    using Ends = std::pair<int, int>; // of a segment the greater end, and its index
    std::vector<Ends> by_ends(count);
    std::vector<int> next(first_of.begin(), first_of.end() - 1);
    for (std::size_t i = 0; i < count; ++i) {
        const NodedSegment& segment = noded.segments[i];
        by_ends[next[lesser(i)]++] = {std::max(segment.from, segment.to), static_cast<int>(i)};
    }
    std::vector<bool> is_repeated(count, false);
    for (std::size_t point = 0; point + 1 < first_of.size(); ++point) {
        const std::span ends = std::span(by_ends).subspan(
            static_cast<std::size_t>(first_of[point]),
            static_cast<std::size_t>(first_of[point + 1] - first_of[point]));
        if (ends.size() > 1) {
            std::sort(ends.begin(), ends.end());
        }
        for (std::size_t k = 1; k < ends.size(); ++k) {
            is_repeated[ends[k].second] = ends[k].first == ends[k - 1].first;
        }
    }
    std::size_t kept = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (is_repeated[i]) {
            noded.duplicates.push_back(noded.segments[i]);
        } else {
            noded.segments[kept++] = noded.segments[i];
        }
    }
    noded.segments.resize(kept);
}

} // namespace korvel::kit
