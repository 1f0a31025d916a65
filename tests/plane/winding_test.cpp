// The fast winding test against the plain sum of angles.

#include <cmath>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "korvel/plane/winding.h"

namespace {

using korvel::PlanePoint;
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
double coordinate(std::mt19937_64& random, int widest_exponent) {
    if (random() % 4 == 0) {
        return 0;
    }
    const double sign = random() % 2 == 0 ? 1 : -1;
    const double mantissa = random() % 2 == 0 ? 1 : 1 + static_cast<double>(random() % 1000) / 1000;
    const int exponent = static_cast<int>(random() % (2 * static_cast<unsigned>(widest_exponent)));
    return sign * std::ldexp(mantissa, random() % 3 == 0 ? 0 : exponent - widest_exponent);
}

TEST(Winding, IsThePlainSumForTinyAndHugeCoordinates) {
    std::mt19937_64 random(1);
    int enclosing = 0;
    constexpr int rounds = 200000;
    for (int round = 0; round < rounds; ++round) {
        constexpr int widest_exponents[] = {2, 30, 400, 480, 1000};
        const int widest_exponent = widest_exponents[random() % std::size(widest_exponents)];
        Ring ring(3 + random() % 5);
        for (PlanePoint& corner : ring) {
            corner = {coordinate(random, widest_exponent), coordinate(random, widest_exponent)};
        }
        const bool expected = plainly_encloses_origin(ring);
        enclosing += expected ? 1 : 0;
        ASSERT_EQ(encloses_origin(ring), expected) << "round " << round;
    }
    EXPECT_GT(enclosing, rounds / 20);
}

} // namespace
