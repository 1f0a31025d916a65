#include "kit/pictures/main_extent.h"

#include <algorithm>
#include <utility>

namespace korvel::kit {
namespace {

std::pair<double, double> main_interval(std::vector<double>& values);
std::pair<double, double> shortest_interval(const std::vector<double>& sorted);
std::pair<double, double> with_what_is_near(const std::vector<double>& sorted,
                                            std::pair<double, double> interval);

} // namespace

Rectangle main_extent(std::vector<double> xs, std::vector<double> ys) {
    if (xs.empty()) {
        return {};
    }
    const auto [left, right] = main_interval(xs);
    const auto [top, bottom] = main_interval(ys);
    return {left, top, right, bottom};
}

namespace {

std::pair<double, double> main_interval(std::vector<double>& values) {
    constexpr std::size_t fewest = 1000;
    constexpr double clearly_smaller = 0.75;
    std::sort(values.begin(), values.end());
    const std::pair<double, double> whole = {values.front(), values.back()};
    if (values.size() < fewest) {
        return whole;
    }
    const std::pair<double, double> main = with_what_is_near(values, shortest_interval(values));
    return main.second - main.first < clearly_smaller * (whole.second - whole.first) ? main : whole;
}

std::pair<double, double> shortest_interval(const std::vector<double>& sorted) {
    constexpr std::size_t left_out_of = 200; // half a per cent
    const std::size_t spare = sorted.size() / left_out_of;
    std::pair<double, double> best = {sorted.front(), sorted.back()};
    for (std::size_t first = 0; first <= spare; ++first) {
        const std::size_t last = sorted.size() - 1 - (spare - first);
        if (sorted[last] - sorted[first] < best.second - best.first) {
            best = {sorted[first], sorted[last]};
        }
    }
    return best;
}

std::pair<double, double> with_what_is_near(const std::vector<double>& sorted,
                                            std::pair<double, double> interval) {
    constexpr double share = 0.25;
    const double margin = share * (interval.second - interval.first);
    const auto first = std::lower_bound(sorted.begin(), sorted.end(), interval.first - margin);
    const auto last = std::upper_bound(sorted.begin(), sorted.end(), interval.second + margin);
    return {*first, *(last - 1)};
}

} // namespace
} // namespace korvel::kit
