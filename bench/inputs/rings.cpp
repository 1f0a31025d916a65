#include "bench/inputs/rings.h"

#include <cmath>
#include <numbers>

#include "tests/support/dice.h"

namespace korvel::bench {
namespace {

constexpr double full_turn = 2 * std::numbers::pi;
constexpr double outer_radius = 1e6;

void add_noisy_ring(PLYDT& set, test::Dice& dice, double x, double y, double radius, int corners) {
    const double spacing = radius * full_turn / corners;
    RING ring;
    for (int k = 0; k < corners; ++k) {
        const double distance = radius + dice.up_to(2 * spacing);
        VERT2D pt;
        pt.x = std::round(x + distance * std::cos(full_turn * k / corners));
        pt.y = std::round(y + distance * std::sin(full_turn * k / corners));
        ring.pts.Add(set.pt_list.Add(pt));
    }
    set.region_list[0].rings.Add(set.ring_list.Add(ring));
}

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
    // The square that holds the holes fits into the outer ring, whose points only lie further out,
    // and the holes, up to a half wider by their noise, into their cells of it.
    constexpr double cell = outer_radius * std::numbers::sqrt2 / holes_per_row;
    for (int hole = 0; hole < holes; ++hole) {
        const double x = (hole % holes_per_row - (holes_per_row - 1) / 2.0) * cell;
        const double y =
            (static_cast<double>(hole / holes_per_row) - (holes_per_row - 1) / 2.0) * cell;
        add_noisy_ring(set, dice, x, y, 0.25 * cell, (corners - corners / 4) / holes);
    }
}

} // namespace korvel::bench
