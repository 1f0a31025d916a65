#include "kit/solids/inside.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "kit/solids/exact.h"

namespace korvel::kit {
namespace {

Point3 direction_of_ray(int ray);

} // namespace

int body_at(const TMOD3D& model, const Point3& point) {
    constexpr int enough = 3;
    constexpr int most_rays = 15;
    std::map<int, int> votes;
    for (int ray = 0; ray < most_rays; ++ray) {
        Point3 place = point;
        Point3 direction = direction_of_ray(ray);
        const int answer = operand(model).detect_a_point_in_body(place.data(), direction.data());
        if (++votes[answer] == enough) {
            return answer;
        }
    }
    return std::max_element(votes.begin(), votes.end(),
                            [](const auto& a, const auto& b) { return a.second < b.second; })
        ->first;
}

namespace {

// Spread over the sphere by multiples of two irrational numbers, so that no two components of a
// direction are in a ratio that a model has by design.
Point3 direction_of_ray(int ray) {
    constexpr double full_turn = 6.283185307179586;
    constexpr double step_up = 0.7548776662466927; // 1/r and 1/r² of the root r of r³ = r + 1
    constexpr double step_around = 0.5698402909980532;
    const double up = 2 * std::fmod((ray + 1) * step_up, 1) - 1;
    const double around = full_turn * std::fmod((ray + 1) * step_around, 1);
    const double level = std::sqrt(1 - up * up);
    return {level * std::cos(around), level * std::sin(around), up};
}

} // namespace
} // namespace korvel::kit
