#include "bench/inputs/rings.h"

#include <cmath>
#include <numbers>

#include "tests/support/dice.h"

namespace korvel::bench {
namespace {

constexpr double outer_radius = 1e6;

void add_noisy_ring(PLYDT& set, test::Dice& dice, double x, double y, double radius, int corners);
template <class DistanceOf>
void add_ring(PLYDT& set, double x, double y, int corners, DistanceOf distance_of);
double point_spacing(double radius, int corners);

} // namespace

void add_noisy_region(PLYDT& set, int corners, bool with_holes) {
    constexpr int holes_per_row = 10;
    constexpr int holes = holes_per_row * holes_per_row;
    test::Dice dice;
    set.region_list.Add({});
    add_noisy_ring(set, dice, 0, 0, outer_radius, with_holes ? corners / 4 : corners);
    if (!with_holes) {
        return;
    }
    // The square of the holes fits into the outer ring, whose noise is outward only. A hole, at
    // most half wider by its noise, fits into its cell of the square.
    constexpr double cell = outer_radius * std::numbers::sqrt2 / holes_per_row;
    for (int hole = 0; hole < holes; ++hole) {
        const double x = (hole % holes_per_row - (holes_per_row - 1) / 2.0) * cell;
        const double y =
            (static_cast<double>(hole / holes_per_row) - (holes_per_row - 1) / 2.0) * cell;
        add_noisy_ring(set, dice, x, y, 0.25 * cell, (corners - corners / 4) / holes);
    }
}

void add_spiky_region(PLYDT& set, int corners, bool is_uneven) {
    test::Dice dice;
    const double most_noise = is_uneven ? 2 * point_spacing(outer_radius, corners) : 0;
    set.region_list.Add({});
    add_ring(set, 0, 0, corners, [&](int k) {
        return (k % 2 == 0 ? outer_radius : outer_radius / 2) + dice.up_to(most_noise);
    });
}

namespace {

void add_noisy_ring(PLYDT& set, test::Dice& dice, double x, double y, double radius, int corners) {
    const double most_noise = 2 * point_spacing(radius, corners);
    add_ring(set, x, y, corners, [&](int) { return radius + dice.up_to(most_noise); });
}

/// Points at whole coordinates, as near as possible to the distances from the centre.
template <class DistanceOf>
void add_ring(PLYDT& set, double x, double y, int corners, DistanceOf distance_of) {
    constexpr double full_turn = 2 * std::numbers::pi;
    RING ring;
    for (int k = 0; k < corners; ++k) {
        const double distance = distance_of(k);
        VERT2D pt;
        pt.x = std::round(x + distance * std::cos(full_turn * k / corners));
        pt.y = std::round(y + distance * std::sin(full_turn * k / corners));
        ring.pts.Add(set.pt_list.Add(pt));
    }
    set.region_list[0].rings.Add(set.ring_list.Add(ring));
}

double point_spacing(double radius, int corners) {
    return radius * 2 * std::numbers::pi / corners;
}

} // namespace
} // namespace korvel::bench
