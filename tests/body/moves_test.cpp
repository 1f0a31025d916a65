// Moves of many vertices.

#include <gtest/gtest.h>

#include "korvel/body/edit/edit_state.h"
#include "tests/support/models.h"

using namespace korvel::test;

namespace {

/// Seen along y, with z down and the middle at (10, 2.5, 3.5). The vertices 0, 1, 3 and 2 are
/// gathered around vertex 0, at the levels 0, 1, 1 and 2.
TMOD3D gathered_fan() {
    TMOD3D model = model_of("8 0 0 0  1 0 0  16 0 0  0 0 -1  16 0 -5  20 7 0  20 0 -5  20 3 -2 "
                            "4 0 1 3  1 2 3  2 4 5  5 6 7  2 3 0 0 0 0 1 2  2 0 0 0 1 3");
    model.vis_angle_1 = 0;
    model.vis_angle_2 = 90;
    model.change_vis_parm();
    model.get_body_span(0);
    model.edit_state[korvel::edit_neighbourhood_depth] = 2;
    model.set_rel_triangle_vert();
    EXPECT_EQ(ints(model.relat_list_2), (Ints{0, 1, 3, 2}));
    return model;
}

// p is an eighth and a quarter of the view box of body 0 beyond q.
double p[] = {3.5, 2.25, 0.5};
double q[] = {1, 1, 9};
const double weights[] = {1, 0.625, 0.625, 0.25};

struct Move {
    int kind;
    int quadrant;
    double grow_x, fixed_x, grow_y, fixed_y; ///< x += grow · (x − fixed)
    Point shift;
};

/// A model before the move, with entries in the list that are no vertices.
TMOD3D ready_for(const Move& move) {
    TMOD3D model = gathered_fan();
    model.relat_list_2.Add(-1);
    model.relat_list_2.Add(8);
    model.bodies[0].change_dirt = move.quadrant;
    model.edit_state[korvel::edit_scaled_body] = 0;
    model.edit_state[korvel::edit_picked_body] = 1;
    return model;
}

/// The same after it, with everything derived again that a move refreshes.
TMOD3D plainly_moved(TMOD3D model, const Move& move) {
    for (int k = 0; k < 4; ++k) {
        const double part = move.kind == korvel::move_by_weight ? weights[k] : 1;
        VERT3D& vertex = model.verts[model.relat_list_2[k]];
        const auto [x, y, z] = point(vertex.view_xyz);
        vertex.model_xyz[0] = x + move.grow_x * (x - move.fixed_x) + part * move.shift[0] + 10;
        vertex.model_xyz[1] = z + move.shift[2] + 3.5;
        vertex.model_xyz[2] = -(y + move.grow_y * (y - move.fixed_y) + part * move.shift[1] + 2.5);
    }
    model.comput_mode_aux_parm();
    model.model_wrap_cuboid();
    model.roate_wrap_cuboid();
    model.get_body_span(1);
    return model;
}

/// The gathered vertices and the edges and faces at them.
void expect_same_elements(const TMOD3D& model, const TMOD3D& expected) {
    for (int v = 0; v < 8; ++v) {
        for (int k = 0; k < 3; ++k) {
            EXPECT_NEAR(model.verts[v].model_xyz[k], expected.verts[v].model_xyz[k], 1e-12)
                << "vertex " << v << ", axis " << k;
        }
    }
    for (int k = 0; k < 3; ++k) {
        EXPECT_NEAR(std::fabs(model.polys[2].plane[k]), std::fabs(expected.polys[2].plane[k]),
                    1e-12)
            << k;
    }
    for (const int e : model.relat_list_3) {
        EXPECT_NEAR(model.lines[e].length, expected.lines[e].length, 1e-12) << "edge " << e;
    }
}

/// The bounds and one body's extents follow; the middle of the view stays.
void expect_same_bounds(const TMOD3D& model, const TMOD3D& expected) {
    for (int k = 0; k < 3; ++k) {
        EXPECT_NEAR(model.wrap_cuboid[2 * k + 1], expected.wrap_cuboid[2 * k + 1], 1e-12) << k;
        EXPECT_NEAR(model.rotated_corners[0][k], expected.rotated_corners[0][k], 1e-12) << k;
        EXPECT_NEAR(model.bodies[1].model_min[k], expected.bodies[1].model_min[k], 1e-12) << k;
    }
    EXPECT_EQ(point(model.view_center), point(expected.view_center));
}

/// The positions before the move are kept; moves with weights compute them.
void expect_records_of(const TMOD3D& model, const TMOD3D& before, int kind) {
    for (int k = 0; k < 4; ++k) {
        const int v = model.relat_list_2[k];
        EXPECT_EQ(point(model.verts[v].temp_view_xyz), point(before.verts[v].view_xyz));
        if (kind == korvel::move_by_weight || kind == korvel::move_in_depth_with_weights) {
            EXPECT_DOUBLE_EQ(model.mut_weights[k], weights[k]);
        }
    }
}

TEST(Moves, Kinds) {
    const Move moves[] = {
        {korvel::move_onto_point, 1, -1, 3.5, -1, 2.25, {}},
        {korvel::move_picked_onto_point, 1, 0, 0, 0, 0, {13.5, 4.75, 0}},
        {korvel::move_scale_box, 1, 0.125, -10, 0.25, -2.5, {}},
        {korvel::move_scale_box, 2, 0.125, -10, -0.25, 2.5, {}},
        {korvel::move_scale_box, 3, -0.125, 10, -0.25, 2.5, {}},
        {korvel::move_scale_box, 4, -0.125, 10, 0.25, -2.5, {}},
        {korvel::move_scale_box, 0, 0, 0, 0, 0, {}},
        {korvel::move_scale_box, 5, 0, 0, 0, 0, {}},
        {korvel::move_by_weight, 1, 0, 0, 0, 0, {2.5, 1.25, 0}},
        {korvel::move_in_depth_with_weights, 1, 0, 0, 0, 0, {0, 0, 0.5}},
        {korvel::move_in_depth, 1, 0, 0, 0, 0, {0, 0, 0.5}},
        {0, 1, 0, 0, 0, 0, {}},
        {7, 1, 0, 0, 0, 0, {}},
    };
    for (const Move& move : moves) {
        SCOPED_TRACE(testing::Message() << "kind " << move.kind << ", quadrant " << move.quadrant);
        const TMOD3D before = ready_for(move);
        TMOD3D model = before;
        model.change_mut_points(move.kind, p, q);
        const TMOD3D expected = plainly_moved(before, move);
        expect_records_of(model, before, move.kind);
        expect_same_elements(model, expected);
        expect_same_bounds(model, expected);
    }
}

TEST(Moves, KeepEditedCoordinatesWithoutAStep) {
    TMOD3D model = starter(0, 1, {7, 0, 0});
    model.set_all_body_as_relat();
    model.verts[5].model_xyz[0] = 100;
    model.change_mut_points(7, nullptr, nullptr);
    EXPECT_EQ(model.wrap_cuboid[1], 100);
    double no_step[] = {0, 0, 0};
    model.change_mut_points(6, no_step, nullptr); // turned back from the view
    EXPECT_NEAR(model.wrap_cuboid[1], 7, 1);
}

TEST(Moves, RelationSets) {
    TMOD3D model = model_of(two_tetrahedra);
    const auto sizes = [&] {
        return Ints{model.relat_list_1.GetSize(), model.relat_list_2.GetSize(),
                    model.relat_list_3.GetSize(), model.relat_list_4.GetSize(),
                    model.mut_weights.GetSize()};
    };
    model.set_rel_triangle_vert();
    model.set_body_as_relat(1);
    EXPECT_EQ(ints(model.relat_list_1), (Ints{0, 4, 5, 6}));
    EXPECT_EQ(ints(model.relat_list_2), ints(model.bodies[1].verts));
    EXPECT_EQ(ints(model.relat_list_3), ints(model.bodies[1].lines));
    EXPECT_EQ(sizes(), (Ints{4, 4, 6, 0, 4})); // a weight for each face
    EXPECT_EQ(std::count(model.mut_weights.begin(), model.mut_weights.end(), 1.0), 4);
    model.set_all_body_as_relat();
    EXPECT_EQ(sizes(), (Ints{7, 5, 9, 0, 0}));
    EXPECT_EQ(ints(model.relat_list_2), (Ints{0, 1, 2, 3, 4}));
    model.set_body_as_relat(2);
    EXPECT_EQ(sizes(), (Ints{0, 0, 0, 0, 0}));

    std::copy_n(Point{1, 2, 3}.begin(), 3, model.bodies[1].view_mid);
    const std::pair<Point, int> quadrants[] = {
        {{1, 2, 0}, 1}, {{1.5, 1.5, 0}, 2}, {{0.5, 1.5, 9}, 3}, {{0.5, 2, 0}, 4}};
    for (auto [p, quadrant] : quadrants) {
        model.get_body_change_dirt(1, p.data());
        EXPECT_EQ(model.bodies[1].change_dirt, quadrant);
    }
}

} // namespace
