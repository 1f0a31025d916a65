// The test of moved edges against its plain form, where most faces are out of reach.

#include <gtest/gtest.h>

#include "korvel/body/edit/edit_state.h"
#include "tests/body/plain_model.h"
#include "tests/support/dice.h"
#include "tests/support/model_state.h"

using namespace korvel::test;

namespace {

TMOD3D ball_around_cuboid() {
    TMOD3D model;
    TMOD3D cuboid;
    double centre[3] = {0, 0, 0};
    double radius[3] = {4, 4, 4};
    double edges[3] = {3, 4, 5};
    model.inti_mode(centre, radius, 0, 4);
    cuboid.inti_mode(centre, edges, 1, 1);
    model.add_model(cuboid);
    return model;
}

TEST(PlainCrossings, OfAFewEdgesAgree) {
    const TMOD3D start = ball_around_cuboid();
    int legal = 0;
    for (unsigned seed = 0; seed < 60; ++seed) {
        SCOPED_TRACE(seed);
        Dice dice(seed);
        TMOD3D model = start;
        model.edit_state[korvel::edit_picked_vertex] = dice(0, model.verts.GetUpperBound());
        model.edit_state[korvel::edit_neighbourhood_depth] = dice(1, 3);
        if (dice.one_in(3)) {
            model.set_body_as_relat(1);
        } else {
            model.set_rel_triangle_vert();
        }
        double by[3] = {dice.between(-2, 2), dice.between(-2, 2), dice.between(-2, 2)};
        double from[3] = {};
        model.change_mut_points(korvel::move_by_weight, by, from);
        model.change_mut_points(korvel::move_in_depth, by, from);
        TMOD3D plain = model;
        const bool is_legal = legal_body_rel_side_plainly(plain);
        ASSERT_EQ(model.legal_body_rel_side(), is_legal);
        ASSERT_PRED_FORMAT2(same_state, model, plain);
        legal += is_legal ? 1 : 0;
    }
    EXPECT_GT(legal, 12);
    EXPECT_LT(legal, 48);
}

} // namespace
