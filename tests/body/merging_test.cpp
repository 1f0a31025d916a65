// Merging, removal and cleaning against models that are derived from the start.

#include <gtest/gtest.h>

#include "tests/support/models.h"

using namespace korvel::test;

namespace {

TMOD3D joined(TMOD3D model, const TMOD3D& other) {
    const int first_vertex = model.verts.GetSize();
    const int first_face = model.polys.GetSize();
    const int first_body = model.bodies.GetSize();
    for (VERT3D vertex : other.verts) {
        model.verts.Add(vertex);
    }
    for (POLY3D face : other.polys) {
        std::for_each(face.verts.begin(), face.verts.end(), [&](int& v) { v += first_vertex; });
        model.polys.Add(face);
    }
    for (BODY3D body : other.bodies) {
        std::for_each(body.polys.begin(), body.polys.end(), [&](int& f) { f += first_face; });
        model.bodies.Add(body);
    }
    return rebuilt(model, {.first_face = first_face, .first_added_body = first_body});
}

TEST(Merging, AddsOneModelToAnother) {
    const TMOD3D models[] = {TMOD3D(), starter(1, 0, {4, 2, 3}, {5, 0, 0}),
                             model_of(two_tetrahedra), starter(0, 1)};
    for (TMOD3D first : models) {
        first.vis_angle_2 = 40;
        first.change_vis_parm();
        for (const TMOD3D& second : models) {
            TMOD3D model = first;
            TMOD3D other = second;
            model.add_model(other);
            EXPECT_PRED_FORMAT2(same_shape, model, joined(first, second));
            EXPECT_PRED_FORMAT2(same_shape, other, second);
            EXPECT_EQ(model.mode_ok, 1);
        }
        TMOD3D doubled = first;
        doubled.add_model(doubled);
        EXPECT_PRED_FORMAT2(same_shape, doubled, joined(first, first));
    }
    TMOD3D model = starter(1, 0);
    TMOD3D other = starter(1, 0);
    other.bodies[0].hue = 200;
    other.polys[5].area = 4;
    other.back_all_vert();
    model.bodies[0].volume = 0;
    model.add_model(other);
    EXPECT_EQ(model.bodies[0].volume, 8); // computed for all
    EXPECT_EQ(model.bodies[1].hue, 200);
    EXPECT_EQ(model.polys[29].area, 4);
    EXPECT_EQ(point(model.verts[14].backup_xyz),
              Point{}); // of a vertex only the position is copied
    EXPECT_EQ(model.bodies[1].polys[23], 47);
    EXPECT_EQ(*std::min_element(model.bodies[1].verts.begin(), model.bodies[1].verts.end()), 14);
}

TEST(Merging, RemovesABodyAndWhatOnlyItUsed) {
    for (const int removed : {0, 1}) {
        TMOD3D model = model_of(two_tetrahedra);
        model.set_all_body_as_relat();
        model.relat_list_4.Add(99);
        model.mut_weights.Add(0.5);
        std::fill(model.edit_state, model.edit_state + 11, 77);
        const TMOD3D before = model;
        model.deletet(-1);
        model.deletet(2);
        EXPECT_PRED_FORMAT2(same_shape, model, before);
        model.deletet(removed);
        TMOD3D expected = model_of(two_tetrahedra);
        expected.lines.RemoveAll();
        expected.bodies.RemoveAt(1);
        expected.polys.RemoveAt(removed == 0 ? 1 : 4, 3);
        expected.verts.RemoveAt(removed == 0 ? 3 : 4);
        for (POLY3D& face : expected.polys) {
            std::replace(face.verts.begin(), face.verts.end(), 4, 3);
        }
        EXPECT_PRED_FORMAT2(same_shape, model, rebuilt(expected));
        EXPECT_EQ(model.mode_ok, 1);
        model.deletet(0);
        EXPECT_EQ(model.verts.GetSize() + model.lines.GetSize() + model.polys.GetSize(), 0);
        EXPECT_EQ(model.mode_ok, 0);
        EXPECT_EQ(model.relat_list_2.GetSize() + model.relat_list_4[0], 5 + 99); // left alone
        EXPECT_EQ(model.mut_weights[0] + model.edit_state[2] + model.edit_state[10], 0.5 + 2 * 77);
    }
}

TEST(Merging, RenumbersWhatIsUsed) {
    // Loose are the points 0 and 3, the faces 0 and 4, and point 6, which face 4 alone uses.
    TMOD3D model = model_of("7 9 9 9  0 0 0  1 0 0  8 8 8  0 1 0  0 0 1  7 7 7 "
                            "6 1 2 4  1 2 4  1 2 5  2 4 5  4 5 6  4 1 5 1 4 0 0 0 5 1 3 2");
    model.mode_ok = 7;
    model.bodies[0].polys.Add(6); // no face
    TMOD3D expected = model;
    model.clear_no_use_ele();
    EXPECT_EQ(model.mode_ok, 7);
    EXPECT_EQ(ints(model.bodies[0].polys), (Ints{3, 0, 2, 1, 6}));
    expected.lines.RemoveAll();
    expected.bodies[0].polys.Copy(model.bodies[0].polys);
    for (const int f : {4, 0}) {
        expected.polys.RemoveAt(f);
    }
    for (const int v : {6, 3, 0}) {
        expected.verts.RemoveAt(v);
        for (POLY3D& face : expected.polys) {
            std::for_each(face.verts.begin(), face.verts.end(),
                          [&](int& w) { w -= w > v ? 1 : 0; });
        }
    }
    EXPECT_PRED_FORMAT2(same_shape, model, rebuilt(expected));
}

} // namespace
