// Volumes by the bodies' own orientation, and welding.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "kit/kit.h"
#include "kit/maps/faces.h"
#include "kit/maps/noding.h"
#include "kit/solids/join.h"
#include "kit/solids/own_orientation.h"
#include "tests/support/dice.h"

namespace korvel::test {
namespace {

using testing::HasSubstr;

/// A box around 0,0,0 with a smaller one inside, as one body, and each face turned at random.
TMOD3D hollow_box(Dice& dice) {
    TMOD3D model;
    for (const double size : {6.0, 4.0, 2.0}) {
        kit::Solids box = kit::make_cuboid({1e6, -2e6, 3e6}, {size, size, size});
        kit::append_bodies(box.model(), model);
    }
    CArray<int>& listed = model.bodies[0].polys;
    for (int body = 1; body < 3; ++body) {
        for (const int face : model.bodies[body].polys) {
            listed.InsertAt(dice(0, listed.GetSize()), face);
        }
    }
    model.bodies.SetSize(1);
    for (POLY3D& face : model.polys) {
        if (dice(0, 1) == 0) {
            face.invert_poly_range();
        }
    }
    return model;
}

TEST(OwnOrientation, TurnsCavitiesInwards) {
    Dice dice(5);
    for (int round = 0; round < 20; ++round) {
        const TMOD3D model = hollow_box(dice);
        EXPECT_EQ(kit::own_orientation(model, 0).volume, 216 - 64 + 8);
    }
}

} // namespace
} // namespace korvel::test
