#include "kit/solids/inside.h"

#include <cmath>

#include "kit/solids/exact.h"

namespace korvel::kit {
int body_at(const TMOD3D& model, const Point3& point) {
    return vote_of_rays([&](int ray) {
        Point3 place = point;
        Point3 direction = direction_of_ray(ray);
        return operand(model).detect_a_point_in_body(place.data(), direction.data());
    });
}

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

} // namespace korvel::kit
