// Editing of solids: moves, insertions, verdicts, undo and redo.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "kit/kit.h"
#include "tests/kit/cuboid_and_ball.h"
#include "tests/support/dice.h"
#include "tests/support/model_state.h"

namespace korvel::test {
namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

/// Carries out edits, and keeps a copy of the model before each.
class RecordedEdits {
public:
    RecordedEdits() : editor(cuboid_and_ball()) {}

    void step(const std::string& what, const std::function<void()>& run) {
        names.push_back(what);
        before.emplace_back(editor.solids().model());
        run();
        EXPECT_EQ(editor.undo_count(), static_cast<int>(before.size())) << what;
    }

    kit::SolidsEditor editor;
    std::vector<std::string> names;
    std::vector<TMOD3D> before;
};

TEST(Editor, UndoAndRedoRestoreEveryBit) {
    RecordedEdits edits;
    kit::SolidsEditor& editor = edits.editor;
    const auto seen = [&] { return editor.solids().to_view({0, 0, 4}); };
    const auto click = [&] {
        const auto found = editor.pick(seen()[0] + 0.3, seen()[1] + 0.2);
        ASSERT_TRUE(found);
        editor.gather_vertex(found->vertex, 2);
    };
    click();
    edits.step("move", [&] { editor.move({0.2, -0.1, 0.4}); });
    EXPECT_TRUE(editor.judge().is_legal());
    edits.step("move by weight", [&] { editor.move_by_weight({-0.3, 0.2}); });
    edits.step("move in depth", [&] { editor.move_in_depth(0.3); });
    editor.weigh();
    edits.step("move in depth, with weights", [&] { editor.move_in_depth_with_weights(-0.2); });
    click();
    edits.step("insert on a face", [&] { EXPECT_TRUE(editor.insert_on_face()); });
    edits.step("move the new vertex", [&] { editor.move({0, 0, 0.5}); });
    click();
    const auto edge = editor.solids().edge(editor.pick(seen()[0], seen()[1])->edge);
    const kit::Point3 from = editor.solids().to_view(editor.solids().vertex(edge[0]));
    const kit::Point3 to = editor.solids().to_view(editor.solids().vertex(edge[1]));
    editor.pick(0.49 * (from[0] + to[0]) + 0.02 * seen()[0],
                0.49 * (from[1] + to[1]) + 0.02 * seen()[1]);
    edits.step("insert on an edge", [&] { EXPECT_TRUE(editor.insert_on_edge()); });
    editor.solids().cut(kit::Plane::at_x(0.1)); // leaves its marks
    editor.gather_body(1);
    edits.step("move a body", [&] { editor.move({9, 1, 0}); });
    edits.step("move a body onto a point", [&] { editor.move_picked_onto({-3, 5}); });
    edits.step("scale", [&] {
        const kit::Point3 middle = seen();
        editor.scale({middle[0] + 1, middle[1] + 1}, {middle[0] - 4, middle[1] + 2});
    });
    EXPECT_GT(editor.solids()[1].volume(), 0) << "mirrored, and its faces turned";
    editor.gather_all();
    edits.step("move all", [&] { editor.move({1, 1, 1}); });
    edits.step("flatten", [&] { editor.move_onto({0.5, 0.5}); });
    const TMOD3D after = editor.solids().model();
    for (std::size_t i = edits.before.size(); i-- > 0;) {
        ASSERT_TRUE(editor.undo());
        EXPECT_PRED_FORMAT2(same_state, editor.solids().model(), edits.before[i]) << edits.names[i];
    }
    EXPECT_FALSE(editor.undo());
    for (std::size_t i = 1; i <= edits.before.size(); ++i) {
        ASSERT_TRUE(editor.redo());
        EXPECT_PRED_FORMAT2(same_state, editor.solids().model(),
                            i < edits.before.size() ? edits.before[i] : after)
            << edits.names[i - 1];
    }
    EXPECT_FALSE(editor.redo());
}

/// Edits at random, and keeps copies of the model as it should be at each undo and redo.
class RandomEdits {
public:
    explicit RandomEdits(unsigned seed) : dice_(seed), editor(cuboid_and_ball()) {}

    void step() {
        switch (dice_(0, 9)) {
        case 0:
        case 1:
            return go(past_, future_, &kit::SolidsEditor::undo);
        case 2:
        case 3:
            return go(future_, past_, &kit::SolidsEditor::redo);
        case 4:
            return gather();
        case 5:
            editor.judge();
            editor.solids().cut(kit::Plane::at_x(0.1 * dice_(-5, 5))); // leaves its marks
            return;
        case 6:
            if (dice_.one_in(4)) {
                editor.drop_oldest_undo();
                std::vector<TMOD3D>& states = past_.empty() ? future_ : past_;
                states.erase(states.begin(), states.begin() + (states.empty() ? 0 : 1));
            }
            return;
        default:
            return change();
        }
    }

    void gather() {
        const kit::Point3 seen = editor.solids().to_view({0, 0, 4});
        const auto found = editor.pick(seen[0] + 0.1 * dice_(-9, 9), seen[1] + 0.1 * dice_(-9, 9));
        if (found && dice_.one_in(2)) {
            editor.gather_vertex(found->vertex, dice_(0, 3));
        } else if (dice_.one_in(2)) {
            editor.gather_body(dice_(0, 1));
        } else {
            editor.gather_all();
        }
    }

    void change() {
        if (editor.vertices().empty()) {
            gather();
        }
        TMOD3D before = editor.solids().model();
        const double by = 0.1 * dice_(-5, 5);
        switch (dice_(0, 5)) {
        case 0:
        case 1:
            if (!(dice_.one_in(2) ? editor.insert_on_face() : editor.insert_on_edge())) {
                return;
            }
            ++insertions;
            break;
        case 2:
            editor.move_in_depth(by);
            break;
        case 3:
            editor.move_picked_onto({by, 0.2});
            break;
        default:
            editor.move({by, 0.1 * dice_(-5, 5), by});
            if (dice_.one_in(2)) {
                editor.judge();
                editor.move_instead([&](auto& e) { e.move_in_depth(by); });
            }
            break;
        }
        past_.push_back(std::move(before));
        future_.clear();
    }

    void go(std::vector<TMOD3D>& from, std::vector<TMOD3D>& to, bool (kit::SolidsEditor::*way)()) {
        TMOD3D now = editor.solids().model();
        ASSERT_EQ((editor.*way)(), !from.empty());
        if (!from.empty()) {
            ASSERT_PRED_FORMAT2(same_state, editor.solids().model(), from.back());
            from.pop_back();
            to.push_back(std::move(now));
            ++ways;
        }
    }

    void expect_counts() {
        ASSERT_EQ(editor.undo_count(), static_cast<int>(past_.size()));
        ASSERT_EQ(editor.redo_count(), static_cast<int>(future_.size()));
        ASSERT_EQ(editor.undo_bytes() == 0, past_.empty() && future_.empty());
    }

private:
    Dice dice_;
    std::vector<TMOD3D> past_;
    std::vector<TMOD3D> future_;

public:
    kit::SolidsEditor editor;
    int insertions = 0;
    int ways = 0;
};

TEST(Editor, GoesBackAndForthToEveryBit) {
    int insertions = 0;
    int ways = 0;
    for (unsigned seed = 0; seed < 15; ++seed) {
        SCOPED_TRACE(seed);
        RandomEdits edits(seed);
        for (int i = 0; i < 80; ++i) {
            ASSERT_NO_FATAL_FAILURE(edits.step()) << i;
            ASSERT_NO_FATAL_FAILURE(edits.expect_counts()) << i;
        }
        insertions += edits.insertions;
        ways += edits.ways;
    }
    EXPECT_GT(insertions, 30);
    EXPECT_GT(ways, 250);
}

TEST(Editor, RedoesAMoveThatWasOnlyJudged) {
    kit::SolidsEditor editor(cuboid_and_ball());
    editor.gather_vertex(20, 2);
    const auto move = [&] { editor.move({0.3, -0.2, 0.7}); };
    move();
    const kit::Verdict verdict = editor.judge();
    ASSERT_TRUE(editor.undo());
    editor.set_view({50, -20});
    ASSERT_TRUE(editor.redo());
    EXPECT_EQ(editor.judge().edge, verdict.edge);
    const TMOD3D seen_otherwise = editor.solids().model();
    ASSERT_TRUE(editor.undo());
    editor.set_view({25, -65});
    ASSERT_TRUE(editor.redo());
    const TMOD3D redone = editor.solids().model();
    ASSERT_TRUE(editor.undo());
    move();
    EXPECT_PRED_FORMAT2(same_state, redone, editor.solids().model());
    editor.set_view({50, -20});
    EXPECT_PRED_FORMAT2(same_state, seen_otherwise, editor.solids().model());
    EXPECT_FALSE(editor.redo());
}

TEST(Editor, UndoesMovesThatWereOnlyJudged) {
    kit::SolidsEditor editor(cuboid_and_ball());
    const std::vector<std::function<void()>> gatherings = {
        [&] { editor.gather_vertex(150, 1); }, [&] { editor.gather_vertex(30, 4); },
        [&] { editor.gather_body(0); }, [&] { editor.gather_all(); }};
    const std::vector<std::function<void()>> moves = {[&] {
                                                          editor.move({0.3, 0.1, -0.4});
                                                      },
                                                      [&] {
                                                          editor.move_onto({2, 1});
                                                      },
                                                      [&] { editor.move_in_depth(20); }};
    for (const auto& gather : gatherings) {
        for (const auto& move : moves) {
            gather();
            const TMOD3D before = editor.solids().model();
            move();
            editor.judge();
            ASSERT_TRUE(editor.undo());
            EXPECT_PRED_FORMAT2(same_state, editor.solids().model(), before);
            ASSERT_TRUE(editor.redo());
            editor.judge();
            ASSERT_TRUE(editor.undo());
            EXPECT_PRED_FORMAT2(same_state, editor.solids().model(), before);
        }
    }
}

TEST(Editor, KeepsLittleOfMovesAndDropsTheOldest) {
    kit::SolidsEditor editor(kit::make_ball({0, 0, 0}, 1, 3));
    editor.gather_vertex(100, 3);
    editor.judge();
    editor.move({0.1, 0, 0});
    editor.judge();
    const std::size_t one = editor.undo_bytes();
    EXPECT_GT(one, 37 * 6 * sizeof(double));
    EXPECT_LT(one, 20'000U);
    for (int i = 0; i < 99; ++i) {
        editor.move({0.001, 0, 0});
    }
    EXPECT_LT(editor.undo_bytes(), 150 * one);
    for (int i = 0; i < 50; ++i) {
        ASSERT_TRUE(editor.undo());
        editor.judge();
    }
    EXPECT_LT(editor.undo_bytes(), 150 * one);
    while (editor.undo_bytes() > 20 * one) {
        editor.drop_oldest_undo();
    }
    EXPECT_EQ(editor.undo_count(), 0);
    EXPECT_GT(editor.redo_count(), 5);
    EXPECT_TRUE(editor.redo());
    std::size_t before = 0;
    for (const double u : {0.0, 0.3}) { // the first one gives all edges another order
        before = editor.undo_bytes();
        ASSERT_TRUE(editor.pick(u, 0));
        ASSERT_TRUE(editor.insert_on_face());
    }
    EXPECT_LT(editor.undo_bytes(), before + 20'000U);
}

/// Moves what is gathered by random lengths, and compares with the exact class.
void expect_exact_after_moves(kit::SolidsEditor& editor, Dice& dice, const std::string& what) {
    const kit::Solids& drawn = editor.solids();
    for (int i = 0; i < 6; ++i) {
        if (i % 3 == 2) {
            editor.gather_body(dice(0, drawn.size() - 1));
        } else {
            editor.gather_vertex(dice(0, drawn.vertex_count() - 1), i);
        }
        if (i == 5) {
            editor.scale({-100, -100}, {100, 200}); // turned inside out
        } else {
            editor.move({0.1 * dice(-9, 9), 0.1 * dice(-9, 9), 0.1 * dice(-9, 9)});
        }
        TMOD3D exact(drawn.model());
        exact.comput_mode_aux_parm();
        exact.rotate_model();
        ASSERT_PRED_FORMAT2(same_state, editor.solids().model(), exact) << what << ' ' << i;
        if (i == 3 && editor.pick(0, 0)) {
            editor.insert_on_face();
        }
    }
}

/// Triangles between random points: faces that turn against one another, are listed twice, hang
/// together at nothing, or more than two at an edge.
kit::Solids random_triangles(Dice& dice) {
    TMOD3D model;
    model.verts.SetSize(9);
    for (VERT3D& vertex : model.verts) {
        std::ranges::generate(vertex.model_xyz, [&] { return dice(-5, 5); });
    }
    model.polys.SetSize(dice(2, 12));
    for (POLY3D& face : model.polys) {
        const int first = dice(0, 6);
        for (const int v : {first, first + 1, dice(first + 2, 8)}) {
            face.add_a_vert(v);
        }
    }
    model.bodies.SetSize(2);
    for (int f = 0; f < model.polys.GetSize(); ++f) {
        model.bodies[f == 0 || (f > 1 && dice.one_in(3)) ? 1 : 0].polys.Add(f);
        if (f > 0 && dice.one_in(20)) {
            model.bodies[1].polys.Add(f);
        }
    }
    return kit::Solids::read(kit::TextFile("triangles", file_of(model)));
}

TEST(Editor, IsUpToDateAsTheExactClass) {
    Dice dice(5);
    for (int i = 0; i < 5; ++i) {
        kit::SolidsEditor editor(cuboid_and_ball());
        expect_exact_after_moves(editor, dice, "cuboid and ball");
    }
    kit::Solids touching = kit::make_cuboid({0, 0, 0}, {2, 2, 2});
    touching.add(kit::make_cuboid({2, 0, 0}, {2, 2, 2}));
    kit::weld(touching);
    kit::SolidsEditor welded(std::move(touching));
    expect_exact_after_moves(welded, dice, "welded");
    for (int i = 0; i < 200; ++i) {
        kit::SolidsEditor editor(random_triangles(dice));
        editor.prepare();
        expect_exact_after_moves(editor, dice, "triangles " + std::to_string(i));
    }
}

TEST(Editor, MovesInThePlaceOfTheLastMove) {
    using Move = std::function<void(kit::SolidsEditor&)>;
    const std::vector<Move> gatherings = {[](auto& editor) { editor.gather_vertex(30, 4); },
                                          [](auto& editor) { editor.gather_body(0); },
                                          [](auto& editor) { editor.gather_all(); }};
    const std::vector<Move> moves = {[](auto& editor) {
                                         editor.move({0.3, 0.1, -0.4});
                                     },
                                     [](auto& editor) {
                                         editor.move_onto({2, 1});
                                     },
                                     [](auto& editor) { editor.move_in_depth(20); }};
    for (const Move& gather : gatherings) {
        kit::SolidsEditor editor(cuboid_and_ball());
        editor.solids().cut(kit::Plane::at_x(0.1)); // leaves its marks
        gather(editor);
        const TMOD3D before = editor.solids().model();
        moves[0](editor);
        for (const Move& move : moves) {
            editor.judge();
            editor.move_instead(move);
            EXPECT_EQ(editor.undo_count(), 1);
        }
        for (const Move& move : moves) {
            kit::SolidsEditor alone(cuboid_and_ball());
            alone.solids().cut(kit::Plane::at_x(0.1));
            gather(alone);
            move(alone);
            editor.move_instead(move); // also behind what was brought up to date
            EXPECT_EQ(editor.judge().kind, alone.judge().kind);
            EXPECT_PRED_FORMAT2(same_state, editor.solids().model(), alone.solids().model());
        }
        editor.undo();
        EXPECT_PRED_FORMAT2(same_state, editor.solids().model(), before);
    }
}

TEST(Editor, HasOnlyTheMoveThatCameInThePlaceOfAnother) {
    kit::SolidsEditor editor(cuboid_and_ball());
    editor.gather_vertex(30, 2);
    editor.move({1, 0, 0});
    const TMOD3D once = editor.solids().model();
    editor.move({0, 1, 0});
    editor.judge();
    EXPECT_THROW(editor.move_instead([](auto& e) { e.scale({0, 0}, {1, 1}); }), kit::Error);
    EXPECT_PRED_FORMAT2(same_state, editor.solids().model(), once);
    EXPECT_EQ(editor.undo_count(), 1);
    editor.move({5, 5, 5});
    editor.undo();
    editor.redo(); // what could be done again is dropped
    editor.move_instead([](auto& e) {
        e.gather_body(1);
        e.move({0, 0, 9});
        e.move({9, 0, 0});
    });
    EXPECT_EQ(editor.undo_count(), 3);
    EXPECT_EQ(editor.redo_count(), 0);
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(editor.undo());
    }
    EXPECT_TRUE(std::ranges::equal(editor.solids().vertex(30), once.verts[30].model_xyz));
    editor.undo();
    editor.undo();
    editor.move_instead([](auto& e) { e.move({0, 0, 1}); }); // in the place of none
    EXPECT_EQ(editor.undo_count(), 1);
}

/// The first gathered edge that meets a face without one of its ends, and the first such face.
std::pair<int, int> first_crossing(const kit::SolidsEditor& editor, TMOD3D model) {
    for (const int e : editor.edges()) {
        LINE3D& edge = model.lines[e];
        for (int f = 0; f < model.polys.GetSize(); ++f) {
            POLY3D& face = model.polys[f];
            if (!face.is_composed_vert(edge.start_vert) && !face.is_composed_vert(edge.end_vert) &&
                edge.detect_line_cross_poly(face, model.verts)) {
                return {e, f};
            }
        }
    }
    return {-1, -1};
}

TEST(Editor, NamesTheFirstEdgeAndFaceThatMeet) {
    int illegal = 0;
    for (int vertex = 0; vertex < 60; ++vertex) {
        kit::SolidsEditor editor(cuboid_and_ball());
        editor.set_view({0, 0});
        editor.gather_vertex(8 + vertex, vertex % 4);
        editor.move({0.3 * (vertex % 5) - 0.6, 0.1, -0.4 * (vertex % 9)});
        const kit::Verdict verdict = editor.judge();
        const auto [edge, face] = first_crossing(editor, editor.solids().model());
        EXPECT_EQ(std::pair(verdict.edge, verdict.face), std::pair(edge, face)) << vertex;
        illegal += verdict.is_legal() ? 0 : 1;
    }
    EXPECT_GT(illegal, 10);
    EXPECT_LT(illegal, 50);
}

TEST(Editor, JudgesAMove) {
    kit::SolidsEditor editor(cuboid_and_ball());
    EXPECT_THAT(
        [&] {
            editor.move({1, 0, 0});
        },
        ThrowsMessage<kit::Error>(HasSubstr("nothing is gathered")));
    EXPECT_THAT([&] { editor.gather_body(2); }, ThrowsMessage<kit::Error>(HasSubstr("body 2")));
    EXPECT_THAT([&] { editor.gather_vertex(-1, 0); },
                ThrowsMessage<kit::Error>(HasSubstr("vertex -1")));
    editor.set_view({0, 0});
    editor.gather_body(1);
    editor.move({0, 0, -1.5});
    const kit::Verdict verdict = editor.judge();
    EXPECT_EQ(verdict.kind, kit::Verdict::Kind::edge_meets_face);
    EXPECT_EQ(verdict.body, 0);
    EXPECT_THAT(kit::text(verdict), HasSubstr("of body 0 or touch it"));
    EXPECT_TRUE(editor.undo());
    EXPECT_TRUE(editor.judge().is_legal());
    editor.move({1e39, 0, 0});
    EXPECT_EQ(editor.judge().kind, kit::Verdict::Kind::out_of_range);
    EXPECT_TRUE(editor.undo());
    editor.move({0, 0, 3});
    EXPECT_TRUE(editor.judge().is_legal());
    const kit::Solids moved = editor.take();
    EXPECT_NEAR(moved[1].bounds().high[2], 9, 1e-2);
    EXPECT_EQ(moved[0].name(), "box");
}

} // namespace
} // namespace korvel::test
