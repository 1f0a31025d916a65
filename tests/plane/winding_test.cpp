// The quick winding test against the plain sum of angles.

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "korvel/plane/winding.h"
#include "tests/support/dice.h"

namespace {

using korvel::PlanePoint;
using korvel::test::Dice;
using Ring = std::vector<PlanePoint>;

bool encloses_origin(const Ring& ring) {
    return korvel::winding_encloses(static_cast<int>(ring.size()), [&](int k) { return ring[k]; });
}

bool plainly_encloses_origin(const Ring& ring) {
    return korvel::plain_winding_encloses(static_cast<int>(ring.size()),
                                          [&](int k) { return ring[k]; });
}

TEST(Winding, CountsATurnWhoseCrossProductUnderflows) {
    // The first side passes the x axis at 1e-130; 1e-200 · 1e-130 is 0 in double precision.
    Ring ring = {{1, -1e-200}, {1e-130, 0}, {0, 1}, {-1, 0}, {0, -1}};
    EXPECT_TRUE(encloses_origin(ring));
    EXPECT_TRUE(encloses_origin({ring.rbegin(), ring.rend()}));
    ring = {{-1e-130, 0}, {-1, -1e-200}, {-1, -1}, {-1, 1}}; // beside the point, not around it
    EXPECT_FALSE(encloses_origin(ring));
    EXPECT_FALSE(encloses_origin({}));
}

/// A coordinate whose products with others may underflow, overflow or be exactly 0.
double coordinate(Dice& dice, int widest_exponent) {
    if (dice.one_in(4)) {
        return 0;
    }
    const double sign = dice.one_in(2) ? 1 : -1;
    const double mantissa = dice.one_in(2) ? 1 : 1 + dice(0, 999) / 1000.0;
    const int exponent = dice.one_in(3) ? 0 : dice(-widest_exponent, widest_exponent - 1);
    return sign * std::ldexp(mantissa, exponent);
}

TEST(Winding, IsThePlainSumForTinyAndHugeCoordinates) {
    Dice dice;
    int enclosing = 0;
    constexpr int rounds = 200000;
    for (int round = 0; round < rounds; ++round) {
        constexpr int widest_exponents[] = {2, 30, 400, 480, 1000};
        const int widest_exponent = dice.pick(widest_exponents);
        Ring ring(static_cast<std::size_t>(dice(3, 7)));
        for (PlanePoint& corner : ring) {
            corner = {coordinate(dice, widest_exponent), coordinate(dice, widest_exponent)};
        }
        const bool expected = plainly_encloses_origin(ring);
        enclosing += expected ? 1 : 0;
        ASSERT_EQ(encloses_origin(ring), expected) << "round " << round;
    }
    EXPECT_GT(enclosing, rounds / 20);
}

} // namespace
