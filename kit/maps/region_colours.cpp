#include "kit/maps/region_colours.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

namespace korvel::kit {
namespace {

struct RealColour {
    double red;
    double green;
    double blue;
};

constexpr double golden_section = 0.61803398874989485;

template <class Nth, class Distance>
std::vector<int> choose(const CCPloy2DRg& set, Nth nth, Distance distance);
double nth_hue(int n);
double hue_distance(double a, double b);
RealColour nth_colour(int n);
RealColour from_hue(double hue, double saturation, double lightness);
double distance(const RealColour& a, const RealColour& b);

} // namespace

void colour_regions(CCPloy2DRg& set) {
    const std::vector<int> chosen = choose(set, nth_colour, distance);
    for (int region = 0; region < set.region_list.GetSize(); ++region) {
        const RealColour colour = nth_colour(chosen[region]);
        set.region_list[region].red = static_cast<unsigned char>(std::lround(255 * colour.red));
        set.region_list[region].green = static_cast<unsigned char>(std::lround(255 * colour.green));
        set.region_list[region].blue = static_cast<unsigned char>(std::lround(255 * colour.blue));
    }
}

std::vector<double> hues_of_regions(const CCPloy2DRg& set) {
    std::vector<double> hues;
    for (const int n : choose(set, nth_hue, hue_distance)) {
        hues.push_back(nth_hue(n));
    }
    return hues;
}

std::vector<std::vector<int>> neighbours_of_regions(const CCPloy2DRg& set) {
    constexpr std::size_t most_at_side = 4;
    std::vector<std::vector<int>> regions_at_side(set.side_list.GetSize());
    for (int region = 0; region < set.region_list.GetSize(); ++region) {
        for (const int ring : set.region_list[region].rings) {
            for (const int side : set.ring_list[ring].sides) {
                if (regions_at_side[side].size() < most_at_side) {
                    regions_at_side[side].push_back(region);
                }
            }
        }
    }
    std::vector<std::vector<int>> neighbours(set.region_list.GetSize());
    for (const std::vector<int>& regions : regions_at_side) {
        for (const int a : regions) {
            for (const int b : regions) {
                if (a != b) {
                    neighbours[a].push_back(b);
                }
            }
        }
    }
    for (std::vector<int>& list : neighbours) {
        std::sort(list.begin(), list.end());
        list.erase(std::unique(list.begin(), list.end()), list.end());
    }
    return neighbours;
}

namespace {

// Each region takes, out of the next few members of one long sequence, the member that is farthest
// from those of its neighbours; the others stay for the regions that follow.
template <class Nth, class Distance>
std::vector<int> choose(const CCPloy2DRg& set, Nth nth, Distance distance) {
    constexpr int choices = 12;
    const std::vector<std::vector<int>> neighbours = neighbours_of_regions(set);
    std::vector<int> chosen;
    std::vector<int> pool(choices);
    std::iota(pool.begin(), pool.end(), 0);
    for (int region = 0; region < set.region_list.GetSize(); ++region) {
        const auto clearance = [&](int n) {
            double nearest = std::numeric_limits<double>::max();
            for (const int other : neighbours[region]) {
                if (other < region) {
                    nearest = std::min(nearest, distance(nth(n), nth(chosen[other])));
                }
            }
            return nearest;
        };
        const auto best = std::max_element(
            pool.begin(), pool.end(), [&](int a, int b) { return clearance(a) < clearance(b); });
        chosen.push_back(*best);
        pool.erase(best);
        pool.push_back(region + choices);
    }
    return chosen;
}

double nth_hue(int n) {
    const double turns = 0.55 + n * golden_section;
    return 360 * (1 - (turns - std::floor(turns)));
}

double hue_distance(double a, double b) {
    const double apart = std::abs(a - b);
    return std::min(apart, 360 - apart);
}

// Steps of the golden angle spread hues evenly however many there are; lightness and saturation
// change with other periods, so that colours whose hues come close still differ.
RealColour nth_colour(int n) {
    constexpr std::array lightness = {0.70, 0.58, 0.80, 0.64};
    constexpr std::array saturation = {0.55, 0.42, 0.62};
    const double turns = 0.55 + n * golden_section;
    return from_hue(turns - std::floor(turns), saturation[n % saturation.size()],
                    lightness[n % lightness.size()]);
}

// Red, green and blue of a hue (in turns), saturation and lightness in the HSL model.
RealColour from_hue(double hue, double saturation, double lightness) {
    const auto part = [&](double offset) {
        const double k = std::fmod(offset + hue * 12, 12.0);
        const double amplitude = saturation * std::min(lightness, 1 - lightness);
        return lightness - amplitude * std::max(-1.0, std::min({k - 3, 9 - k, 1.0}));
    };
    return {part(0), part(8), part(4)};
}

// The eye is most sensitive to green and least to blue.
double distance(const RealColour& a, const RealColour& b) {
    return std::hypot(std::sqrt(0.30) * (a.red - b.red), std::sqrt(0.59) * (a.green - b.green),
                      std::sqrt(0.11) * (a.blue - b.blue));
}

} // namespace
} // namespace korvel::kit
