#include "kit/maps/inner_point.h"

#include <algorithm>
#include <vector>

namespace korvel::kit {
namespace {

std::vector<double> rows_between_corners(const CCPloy2DRg& set, const CCPloy2DRg::PyToRg& region);
std::vector<double> crossings(const CCPloy2DRg& set, const CCPloy2DRg::PyToRg& region, double y);

} // namespace

std::optional<Point2> inner_point(const CCPloy2DRg& set, int region) {
    const CCPloy2DRg::PyToRg& record = set.region_list[region];
    std::optional<Point2> best;
    double widest = 0;
    for (const double y : rows_between_corners(set, record)) {
        const std::vector<double> at = crossings(set, record, y);
        for (std::size_t i = 0; i + 1 < at.size(); i += 2) {
            if (at[i + 1] - at[i] > widest) {
                widest = at[i + 1] - at[i];
                best = Point2{at[i] + widest / 2, y};
            }
        }
    }
    return best;
}

namespace {

// Rows at which no corner is, spread over the corners.
std::vector<double> rows_between_corners(const CCPloy2DRg& set, const CCPloy2DRg::PyToRg& region) {
    std::vector<double> heights;
    for (const int ring : region.rings) {
        for (const int point : set.ring_list[ring].pts) {
            heights.push_back(set.pt_list[point].y);
        }
    }
    std::sort(heights.begin(), heights.end());
    heights.erase(std::unique(heights.begin(), heights.end()), heights.end());
    std::vector<double> rows;
    constexpr std::size_t most_rows = 7;
    const std::size_t gaps = heights.empty() ? 0 : heights.size() - 1;
    for (std::size_t i = 0; i < std::min(gaps, most_rows); ++i) {
        const std::size_t gap = gaps <= most_rows ? i : (2 * i + 1) * gaps / (2 * most_rows);
        rows.push_back(heights[gap] + (heights[gap + 1] - heights[gap]) / 2);
    }
    return rows;
}

// The x of the sides that meet a row, ascending.
std::vector<double> crossings(const CCPloy2DRg& set, const CCPloy2DRg::PyToRg& region, double y) {
    std::vector<double> at;
    for (const int ring : region.rings) {
        const CArray<int>& corners = set.ring_list[ring].pts;
        for (int k = 0; k < corners.GetSize(); ++k) {
            const VERT2D& from = set.pt_list[corners[k]];
            const VERT2D& to = set.pt_list[corners[k + 1 < corners.GetSize() ? k + 1 : 0]];
            if ((from.y > y) != (to.y > y)) {
                at.push_back(from.x + (to.x - from.x) * ((y - from.y) / (to.y - from.y)));
            }
        }
    }
    std::sort(at.begin(), at.end());
    return at;
}

} // namespace
} // namespace korvel::kit
