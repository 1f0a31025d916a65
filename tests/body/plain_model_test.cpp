// The passes over a model against their plain form: every list, every flag and every bit, on random
// models.

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

#include <gtest/gtest.h>

#include "korvel/polyregion/plydt.h"
#include "tests/body/plain_model.h"
#include "tests/support/dice.h"
#include "tests/support/model_state.h"

using namespace korvel::test;

namespace {

using IntArray = CArray<int>;

void add_face(TMOD3D& model, const std::vector<int>& corners) {
    POLY3D face;
    for (const int v : corners) {
        face.add_a_vert(v);
    }
    model.bodies[model.bodies.GetUpperBound()].polys.Add(model.polys.Add(face));
}

/// On a coarse grid points coincide or are in line; off it every rounding shows.
void add_vertices(TMOD3D& model, Dice& dice, int count, bool on_grid) {
    for (; count > 0; --count) {
        VERT3D vertex;
        for (double& x : vertex.model_xyz) {
            x = on_grid ? dice(-2, 2) : dice(-9999, 9999) / 7.0;
        }
        model.verts.Add(vertex);
    }
}

void add_starter(TMOD3D& model, Dice& dice) {
    TMOD3D shape;
    double centre[3] = {double(dice(-3, 3)), 0.3, 0};
    double size[3] = {2, 1.7, double(dice(1, 4))};
    shape.inti_mode(centre, size, dice(0, 1), dice.one_in(6) ? 1 : 0);
    const int v = model.verts.GetSize();
    model.verts.Append(shape.verts);
    for (const POLY3D& face : shape.polys) {
        add_face(model, {face.verts[0] + v, face.verts[1] + v, face.verts[2] + v});
    }
}

/// A chain of tetrahedra, one body each; neighbours share a face.
void add_tetrahedra(TMOD3D& model, Dice& dice, int count, bool on_grid) {
    const int first = model.verts.GetSize();
    add_vertices(model, dice, 3 + count, on_grid);
    add_face(model, {first, first + 1, first + 2});
    for (int v = first;;) {
        add_face(model, {v, v + 1, v + 3});
        add_face(model, {v, v + 2, v + 3});
        add_face(model, {v + 1, v + 2, v + 3});
        if (++v == first + count) {
            return;
        }
        model.bodies.SetSize(model.bodies.GetSize() + 1);
        model.bodies[model.bodies.GetUpperBound()].polys.Add(model.polys.GetUpperBound());
    }
}

/// Faces of any vertices: doubled sides and faces, repeated vertices, surfaces of one side only.
void add_soup(TMOD3D& model, Dice& dice, bool triangles_only, bool on_grid) {
    const int first = model.verts.GetSize();
    const int count = dice(1, 7);
    add_vertices(model, dice, count, on_grid);
    for (int f = dice(0, 12); f > 0; --f) {
        std::vector<int> corners;
        for (int k = triangles_only || dice.one_in(2) ? 3 : dice(0, 6); k > 0; --k) {
            corners.push_back(first + dice(0, count - 1));
        }
        add_face(model, corners);
    }
}

/// What a file keeps of a model, or a single body of all its faces in order.
TMOD3D bare(const TMOD3D& model, bool is_one_body) {
    TMOD3D bare;
    bare.verts.SetSize(model.verts.GetSize());
    for (int v = 0; v < model.verts.GetSize(); ++v) {
        std::copy_n(model.verts[v].model_xyz, 3, bare.verts[v].model_xyz);
    }
    bare.polys.SetSize(model.polys.GetSize());
    bare.bodies.SetSize(is_one_body ? 1 : model.bodies.GetSize());
    for (int f = 0; f < model.polys.GetSize(); ++f) {
        bare.polys[f].verts.Copy(model.polys[f].verts);
        if (is_one_body) {
            bare.bodies[0].polys.Add(f);
        }
    }
    for (int b = 0; b < model.bodies.GetSize() && !is_one_body; ++b) {
        bare.bodies[b].polys.Copy(model.bodies[b].polys);
    }
    return bare;
}

/// Turns, shuffles, drops, doubles and lends faces, adds edges and sets marks.
void disturb(TMOD3D& model, Dice& dice) {
    const int last_vert = model.verts.GetUpperBound();
    for (POLY3D& face : model.polys) {
        if (dice.one_in(3)) {
            face.invert_poly_range();
        }
        face.state_flags = dice(0, 127);
    }
    for (BODY3D& body : model.bodies) {
        for (int i = body.polys.GetUpperBound(); i > 0; --i) {
            std::swap(body.polys[i], body.polys[dice(0, i)]);
        }
        for (int k = dice.one_in(2) ? 0 : dice(1, 3); k > 0 && !model.polys.IsEmpty(); --k) {
            if (dice.one_in(2)) {
                body.polys.RemoveAt(dice(0, body.polys.GetSize()));
            } else {
                body.polys.Add(dice(0, model.polys.GetUpperBound()));
            }
        }
        body.body_flags = dice(0, 127);
        body.hue = dice(0, 360);
        body.saturation = dice(0, 8) / 8.0;
        body.lightness = dice(0, 8) / 8.0;
    }
    for (int k = dice.one_in(2) || last_vert < 0 ? 0 : dice(1, 9); k > 0; --k) {
        LINE3D line;
        line.set_line_point(dice(0, last_vert), dice(0, last_vert));
        line.state_flags = dice(0, 127);
        model.lines.Add(line);
    }
}

TMOD3D random_model(Dice& dice, bool triangles_only) {
    TMOD3D model;
    const bool on_grid = dice.one_in(3);
    for (int part = dice(1, 3); part > 0; --part) {
        model.bodies.SetSize(model.bodies.GetSize() + 1);
        const int kind = dice(0, 7);
        if (kind == 0) {
            add_starter(model, dice);
        } else if (kind < 4) {
            add_tetrahedra(model, dice, dice(1, 4), on_grid);
        } else if (kind < 7) {
            add_soup(model, dice, triangles_only, on_grid);
        } // or a body without faces
    }
    disturb(model, dice);
    return model;
}

/// Moves vertices, faces' planes and edges' lengths away from what was computed of them.
void leave_stale(TMOD3D& model, Dice& dice) {
    const double odd[] = {0, -1, 1e-30, 1e30, 1e200, 0.0 / 0.0, 1.0 / 0.0, 2, 0.25};
    for (int k = dice(0, 3); k > 0 && !model.verts.IsEmpty(); --k) {
        VERT3D& vertex = model.verts[dice(0, model.verts.GetUpperBound())];
        vertex.model_xyz[dice(0, 2)] = dice.one_in(4) ? odd[dice(0, 8)] : dice(-3, 3);
    }
    for (int k = dice(0, 2); k > 0 && !model.polys.IsEmpty(); --k) {
        POLY3D& face = model.polys[dice(0, model.polys.GetUpperBound())];
        face.plane[dice(0, 3)] = odd[dice(0, 8)];
        face.main_axis = dice(-1, 3);
    }
    for (int k = dice(0, 2); k > 0 && !model.lines.IsEmpty(); --k) {
        LINE3D& line = model.lines[dice(0, model.lines.GetUpperBound())];
        line.length = odd[dice(0, 8)];
        line.direction[dice(0, 2)] = odd[dice(0, 8)];
    }
}

TEST(PlainModel, OrientationRelationsAndSectionsAgree) {
    int loops = 0;
    int negative = 0;
    for (unsigned seed = 0; seed < 500; ++seed) {
        SCOPED_TRACE(seed);
        Dice dice(seed);
        TMOD3D model = random_model(dice, false);
        const bool turned = dice.one_in(2);
        for (POLY3D& face : model.polys) {
            face.find_side(model.lines);
            if (turned) {
                face.line_to_vert(model.lines);
            }
        }
        TMOD3D plain = model;
        model.comput_mode_aux_parm();
        comput_mode_aux_parm_plainly(plain);
        ASSERT_PRED_FORMAT2(same_state, model, plain);
        negative += std::count_if(model.bodies.begin(), model.bodies.end(),
                                  [](const BODY3D& body) { return body.volume < 0; });
        model.found_top_rel();
        found_top_rel_plainly(plain);
        ASSERT_PRED_FORMAT2(same_state, model, plain);
        if (dice.one_in(3)) {
            leave_stale(model, dice);
            plain = model;
        }
        for (int cut = 0; cut < 3; ++cut) {
            TMOD2D out;
            TMOD2D plain_out;
            double plane[4] = {cut == 0 ? 0.0 : 1.0, cut == 1 ? 0.0 : 1.0, cut == 2 ? 0.5 : 0,
                               dice(-2, 2) * (dice.one_in(2) ? 1 : 0.37)};
            if (cut == 0) {
                model.get_x_section(-plane[3], out);
            } else if (cut == 1) {
                model.get_y_section(-plane[3], out);
            } else {
                model.get_section(plane, out);
            }
            get_section_plainly(plain, plane, plain_out);
            ASSERT_PRED_FORMAT2(same_state, out, plain_out);
            ASSERT_PRED_FORMAT2(same_state, model, plain);
            loops += out.polys.GetSize();
        }
        for (LINE3D& line : model.lines) { // walks by marks that no section sets
            line.state_flags = dice(0, 1) * 16;
        }
        for (int b = 0; b < model.bodies.GetSize() && !model.lines.IsEmpty(); ++b) {
            plain = model;
            IntArray loop;
            IntArray plain_loop;
            const int face = dice(-1, model.polys.GetUpperBound());
            const int edge = dice(0, model.lines.GetUpperBound());
            ASSERT_EQ(model.trace_section_poly(b, face, edge, loop),
                      trace_section_poly_plainly(plain, b, face, edge, plain_loop));
            ASSERT_PRED_FORMAT2(same_state, loop, plain_loop);
            ASSERT_PRED_FORMAT2(same_state, model, plain);
        }
    }
    EXPECT_GT(loops, 1500);
    EXPECT_GT(negative, 80); // faces turned for a later body that shares them
}

TEST(PlainModel, ReadingAgrees) {
    for (unsigned seed = 0; seed < 500; ++seed) {
        SCOPED_TRACE(seed);
        Dice dice(seed);
        TMOD3D plain = random_model(dice, true);
        if (plain.polys.IsEmpty()) {
            continue;
        }
        for (VERT3D& vertex : plain.verts) {
            for (double& x : vertex.model_xyz) { // to what six decimals and single precision keep
                x = std::round(x * 4096) / 64 + 0.0;
            }
        }
        const bool into_empty = dice.one_in(2);
        if (into_empty) {
            plain = bare(plain, dice.one_in(2));
        }
        const std::string file = file_of(plain);
        // Former edges remain; faces and bodies are appended.
        TMOD3D model;
        if (!into_empty) {
            model = plain;
        }
        const auto leave_few = [&](CArray<int>& list, CArray<int>& plain_list, int last) {
            list.RemoveAll();
            for (int k = dice.one_in(20) ? dice(1, 2) : 0; k > 0; --k) {
                list.InsertAt(0, dice(0, last));
                plain_list.InsertAt(0, list[0]);
            }
        };
        for (int f = 0; f < model.polys.GetSize(); ++f) {
            leave_few(model.polys[f].verts, plain.polys[f].verts, model.verts.GetUpperBound());
        }
        for (int b = 0; b < model.bodies.GetSize(); ++b) {
            leave_few(model.bodies[b].polys, plain.bodies[b].polys, model.polys.GetUpperBound());
        }
        read_file(model, file);
        for (POLY3D& face : plain.polys) {
            face.find_side(plain.lines);
        }
        for (POLY3D& face : plain.polys) {
            face.line_to_vert(plain.lines);
        }
        comput_mode_aux_parm_plainly(plain);
        plain.model_wrap_cuboid();
        plain.rotate_model();
        plain.mode_ok = 1;
        found_top_rel_plainly(plain);
        ASSERT_PRED_FORMAT2(same_state, model, plain);
    }
}

/// Added bodies are oriented on their own before all are: on surfaces that cannot be oriented, the
/// second time begins where the first has ended.
TEST(PlainModel, MergingAgrees) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        SCOPED_TRACE(seed);
        Dice dice(seed);
        TMOD3D model = random_model(dice, false);
        for (POLY3D& face : model.polys) {
            face.find_side(model.lines);
        }
        TMOD3D added = random_model(dice, false);
        TMOD3D plain = model;
        model.add_model(added);
        add_model_plainly(plain, added);
        ASSERT_PRED_FORMAT2(same_state, model, plain);
    }
}

TEST(PlainModel, CrossingsAgree) {
    int legal = 0;
    int illegal = 0;
    for (unsigned seed = 0; seed < 300; ++seed) {
        SCOPED_TRACE(seed);
        Dice dice(seed);
        TMOD3D model = random_model(dice, dice.one_in(2));
        for (POLY3D& face : model.polys) {
            face.find_side(model.lines);
        }
        model.comput_mode_aux_parm();
        model.found_top_rel();
        if (dice.one_in(2)) {
            leave_stale(model, dice);
        }
        for (int e = 0; e < model.lines.GetSize(); ++e) {
            // Alone, with a few others, and often enough for a search tree; then with the edges
            // before it.
            for (const int times : {1, 3, 40}) {
                model.relat_list_3.SetSize(times);
                std::fill_n(model.relat_list_3.begin(), times, e);
                if (times == 3) {
                    model.relat_list_3[0] = dice(0, model.lines.GetUpperBound());
                    model.relat_list_3[1] = dice(0, model.lines.GetUpperBound());
                } else if (times > 3 && dice.one_in(4)) {
                    std::iota(model.relat_list_3.begin(),
                              model.relat_list_3.begin() + std::min(e, times), 0);
                }
                TMOD3D plain = model;
                const bool is_legal = legal_body_rel_side_plainly(plain);
                ASSERT_EQ(model.legal_body_rel_side(), is_legal) << e;
                for (int f = 0; f < model.polys.GetSize(); ++f) {
                    ASSERT_EQ(model.polys[f].state_flags, plain.polys[f].state_flags);
                }
                ++(is_legal ? legal : illegal);
            }
        }
    }
    EXPECT_GT(legal, 3000);
    EXPECT_GT(illegal, 3000);
}

TEST(PlainModel, RaisingAgrees) {
    const auto before = korvel::set_message_box_handler([](const char*, unsigned) { return IDOK; });
    PLYDT d;
    for (const double z : {0.0, 1.5}) {
        for (const auto& [x, y] : {std::pair(0.0, 0.0), {3.0, 0.5}, {1.0, 2.0}}) {
            d.prism_pts.Add({x, y, z, 0});
        }
    }
    d.trg_list.SetSize(1);
    d.trg_list[0].vb = 1;
    d.trg_list[0].vc = 2;
    RING ring;
    set_ints(ring.pts, {0, 1, 2});
    d.ring_list.Add(ring);
    for (unsigned seed = 0; seed < 200; ++seed) {
        SCOPED_TRACE(seed);
        Dice dice(seed);
        TMOD3D model = random_model(dice, false);
        for (POLY3D& face : model.polys) {
            face.find_side(model.lines);
        }
        model.orig[1] = model.orig_shift[2] = 5;
        model.create3dmode(d);
        TMOD3D plain = model;
        found_top_rel_plainly(plain);
        plain.model_wrap_cuboid();
        plain.rotate_model();
        double no_shift[3] = {};
        plain.trans_model_orig(no_shift);
        ASSERT_PRED_FORMAT2(same_state, model, plain);
    }
    korvel::set_message_box_handler(before);
}

} // namespace
