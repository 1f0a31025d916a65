// Pick, gather, weigh, move, judge and undo on the exact classes. docs/exact_editing.md quotes what
// is between two lines with a name in brackets.

#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "korvel/module/korvel.h"
#include "tests/support/model_state.h"
#include "tests/support/models.h"

namespace korvel::test {
namespace {

// [refresh]
/// Brings everything that is derived from vertex positions up to date.
void refresh(TMOD3D& model) {
    model.comput_mode_aux_parm(); // edges and faces, orientation, volumes
    model.model_wrap_cuboid();    // bounds
    model.rotate_model();         // view coordinates, which faces face the viewer
    for (int b = 0; b < model.bodies.GetSize(); ++b) {
        model.get_body_span(b); // the bodies' extents
    }
}
// [refresh]

// [pick]
/// Picks what is under a click in view coordinates. Needs a current view.
bool pick(TMOD3D& model, double u, double v) {
    double click[3] = {u, v, 0}; // click[2] receives the depth of the hit
    return model.get_point_xyz(click) == 0;
}
// [pick]

// [gather]
/// Gathers the vertices at most `depth` edges away from the picked one, with their faces and edges,
/// and saves the positions of these vertices.
void gather(TMOD3D& model, int depth) {
    model.edit_state[edit_neighbourhood_depth] = depth;
    model.set_rel_triangle_vert();
    model.back_rel_vert();
}
// [gather]

// [weigh]
/// Whether weights exist: not all gathered vertices have the same position.
bool can_fade(const TMOD3D& model) {
    const auto position = [&](int v) { return model.verts[v].model_xyz; };
    for (const int v : model.relat_list_2) {
        if (!std::equal(position(v), position(v) + 3, position(model.relat_list_2[0]))) {
            return true;
        }
    }
    return false;
}
// [weigh]

// [move]
/// Moves the gathered vertices by (du, dv) in the view: by their weights, or the picked one alone.
void move(TMOD3D& model, double du, double dv) {
    double from[3] = {0, 0, 0};
    double to[3] = {du, dv, 0};
    if (can_fade(model)) {
        model.change_mut_points(move_by_weight, to, from);
    } else {
        const double* const at = model.verts[model.edit_state[edit_picked_vertex]].view_xyz;
        double onto[3] = {at[0] + du, at[1] + dv, 0};
        model.change_mut_points(move_picked_onto_point, onto, from);
    }
}
// [move]

// [judge]
/// Keeps a move after which no moved edge passes through a face, else undoes it.
bool judge(TMOD3D& model) {
    const bool is_legal = model.legal_body_rel_side();
    if (!is_legal) {
        for (const int v : model.relat_list_2) {
            model.verts[v].restorvert();
        }
    }
    refresh(model);
    return is_legal;
}
// [judge]

TEST(ExactEditing, KeepsALegalMoveAndUndoesAnotherOne) {
    for (const int depth : {0, 2}) {
        TMOD3D ball = starter(0, 3);
        refresh(ball);
        const TMOD3D before = ball;
        EXPECT_FALSE(pick(ball, 5, 5));
        ASSERT_TRUE(pick(ball, 0.8, 0.1));
        gather(ball, depth);
        ASSERT_EQ(ball.relat_list_2[0], ball.edit_state[edit_picked_vertex]);
        EXPECT_EQ(can_fade(ball), depth > 0);

        move(ball, -4, 0); // through the opposite side of the ball
        EXPECT_NE(file_of(ball), file_of(const_cast<TMOD3D&>(before)));
        EXPECT_FALSE(judge(ball));
        for (int v = 0; v < ball.verts.GetSize(); ++v) {
            ASSERT_EQ(point(ball.verts[v].model_xyz), point(before.verts[v].model_xyz));
            ASSERT_EQ(point(ball.verts[v].view_xyz), point(before.verts[v].view_xyz));
        }
        EXPECT_EQ(ball.bodies[0].volume, before.bodies[0].volume);

        move(ball, 0.01, 0.02);
        EXPECT_TRUE(judge(ball));
        const int picked = ball.relat_list_2[0];
        EXPECT_NEAR(ball.verts[picked].view_xyz[0] - before.verts[picked].view_xyz[0], 0.01, 0.001);
    }
}

} // namespace
} // namespace korvel::test
