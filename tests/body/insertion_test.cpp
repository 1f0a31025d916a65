// Vertices inserted at the picked point.

#include <functional>

#include <gtest/gtest.h>

#include "korvel/body/edit/edit_state.h"
#include "tests/support/dice.h"
#include "tests/support/models.h"

using namespace korvel::test;

namespace {

/// Picks, wherever they lie in the view, the middle of a face and a point on an edge.
void pick(TMOD3D& model, int face, int edge) {
    const auto at = [&](int v, int k) { return model.verts[v].model_xyz[k]; };
    const CArray<int>& corners = model.polys[face].verts;
    const LINE3D& line = model.lines[edge];
    for (int k = 0; k < 3; ++k) {
        model.pick_data[k] = (at(corners[0], k) + at(corners[1], k) + at(corners[2], k)) / 3;
        model.pick_data[6 + k] = 0.25 * at(line.start_vert, k) + 0.75 * at(line.end_vert, k);
    }
    model.edit_state[korvel::edit_is_picked] = 1;
    model.edit_state[korvel::edit_picked_face] = face;
    model.edit_state[korvel::edit_picked_edge] = edge;
}

/// `cut` of the former faces have the new vertex, the others have the corners that they had.
void expect_cut_faces(TMOD3D& model, const TMOD3D& before, int cut) {
    const int vertex = before.verts.GetSize();
    for (int f = 0; f < before.polys.GetSize(); ++f) {
        const CArray<int>& verts = model.polys[f].verts;
        if (model.polys[f].is_composed_vert(vertex)) {
            --cut;
        } else {
            EXPECT_TRUE(
                std::is_permutation(verts.begin(), verts.end(), before.polys[f].verts.begin()))
                << "face " << f;
        }
    }
    EXPECT_EQ(cut, 0);
}

void expect_closed_bodies(const TMOD3D& model, const TMOD3D& before) {
    for (int b = 0; b < model.bodies.GetSize(); ++b) {
        const int sides = model.bodies[b].lines.GetSize();
        EXPECT_EQ(2 * sides, 3 * model.bodies[b].polys.GetSize());
        EXPECT_EQ(model.bodies[b].verts.GetSize() - sides + model.bodies[b].polys.GetSize(), 2);
        EXPECT_NEAR(std::fabs(model.bodies[b].volume), std::fabs(before.bodies[b].volume), 1e-9);
    }
}

/// Inserts and compares: `cut` faces give one more each, the rest stays, everything is derived.
void expect_insertion(TMOD3D& model, bool on_face, int cut) {
    const auto insert = on_face ? &TMOD3D::insert_point_on_poly : &TMOD3D::insert_point_on_side;
    const TMOD3D before = model;
    const int vertex = before.verts.GetSize();
    ASSERT_TRUE((model.*insert)());
    ASSERT_EQ(model.verts.GetSize(), vertex + 1);
    EXPECT_EQ(model.lines.GetSize() - before.lines.GetSize(), on_face ? 3 : cut + 1);
    EXPECT_EQ(model.polys.GetSize() - before.polys.GetSize(), on_face ? 2 : cut);
    const int picked = on_face ? korvel::pick_point : korvel::pick_edge_point;
    EXPECT_EQ(point(model.verts[vertex].model_xyz), point(before.pick_data + picked));
    for (int v = 0; v < vertex; ++v) {
        EXPECT_EQ(point(model.verts[v].model_xyz), point(before.verts[v].model_xyz));
    }
    expect_cut_faces(model, before, cut);
    expect_closed_bodies(model, before);
    EXPECT_EQ(model.edit_state[korvel::edit_picked_vertex], vertex);
    EXPECT_EQ(model.edit_state[korvel::edit_is_picked], 0);
    TMOD3D expected = model;
    expected.lines.RemoveAll();
    EXPECT_PRED_FORMAT2(same_shape, model, rebuilt(expected, {.chained = false}));
}

TEST(Insertion, OnFacesAndEdgesOfOneBodyAndOfTwo) {
    const TMOD3D model = model_of(two_tetrahedra);
    for (int f = 0; f < 7; ++f) {
        TMOD3D on_face = model;
        pick(on_face, f, 0);
        expect_insertion(on_face, true, 1);
        EXPECT_EQ(on_face.bodies[1].polys.GetSize(), f == 0 || f > 3 ? 6 : 4);
    }
    for (int e = 0; e < 9; ++e) {
        TMOD3D on_edge = model;
        pick(on_edge, model.lines[e].faces[0], e);
        expect_insertion(on_edge, false, model.lines[e].bodies.GetSize() + 1);
    }
}

TEST(Insertion, RepeatsAtEachPickedPosition) {
    Dice dice(3);
    for (TMOD3D model : {starter(0, 0), starter(1, 0), model_of(raised_l)}) {
        for (int done = 0; done < 20;) {
            model.vis_angle_1 = dice.between(-180, 180);
            model.vis_angle_2 = dice.between(-180, 180);
            model.change_vis_parm();
            double p[3] = {dice.between(model.view_bounds[0], model.view_bounds[1]),
                           dice.between(model.view_bounds[2], model.view_bounds[3]), 0};
            if (model.get_point_xyz(p) == 0) {
                const bool on_face = done++ % 2 == 0;
                expect_insertion(model, on_face, on_face ? 1 : 2);
            }
        }
    }
}

TEST(Insertion, RefusesAndLeavesTheModel) {
    const auto put = [](TMOD3D& model, int k, double x) {
        model.pick_data[k] = model.pick_data[6 + k] = x;
    };
    const std::pair<const char*, std::function<void(TMOD3D&)>> cases[] = {
        {"nothing picked", [](TMOD3D& model) { model = model_of(two_tetrahedra); }},
        {"used up", [](TMOD3D& model) { model.edit_state[korvel::edit_is_picked] = 0; }},
        {"no number", [&](TMOD3D& model) { put(model, 0, NAN); }},
        {"off the face", [&](TMOD3D& model) { put(model, 2, 40); }},
        {"no face or edge",
         [](TMOD3D& model) {
             model.edit_state[korvel::edit_picked_face] =
                 model.edit_state[korvel::edit_picked_edge] = 99;
         }},
        {"removed", [](TMOD3D& model) { model.deletet(0); }},
        {"moved",
         [](TMOD3D& model) { ++model.verts[1].model_xyz[2], model.comput_mode_aux_parm(); }},
        {"a corner",
         [&](TMOD3D& model) {
             for (int k = 0; k < 3; ++k) {
                 put(model, k, model.verts[1].model_xyz[k]);
             }
         }},
    };
    for (const auto& [name, spoil] : cases) {
        for (const auto insert : {&TMOD3D::insert_point_on_poly, &TMOD3D::insert_point_on_side}) {
            TMOD3D model = model_of(two_tetrahedra);
            pick(model, 1, 3); // the edge 1-3
            spoil(model);
            const TMOD3D before = model;
            const Ints state(model.edit_state, model.edit_state + 11);
            EXPECT_FALSE((model.*insert)()) << name;
            EXPECT_PRED_FORMAT2(same_shape, model, before) << name;
            EXPECT_EQ(Ints(model.edit_state, model.edit_state + 11), state) << name;
        }
    }
}

} // namespace
