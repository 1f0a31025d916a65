// The public classes for solids: making, files, changes, sections, and editing with undo.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "kit/kit.h"
#include "tests/support/model_state.h"
#include "tests/support/models.h"
#include "tests/support/scratch.h"

namespace korvel::test {
namespace {

using testing::HasSubstr;

/// The message and the kind of the error that a call throws.
std::string error_of(const std::function<void()>& call, kit::Error::Kind kind) {
    try {
        call();
    } catch (const kit::Error& error) {
        return error.kind() == kind ? error.what() : "an error of another kind";
    }
    return "no error";
}

std::string input_error_of(const std::function<void()>& call) {
    return error_of(call, kit::Error::Kind::input);
}

/// A cuboid, and a ball above it that it does not touch, turned in the view.
kit::Solids cuboid_and_ball() {
    kit::Solids both = kit::make_cuboid({0, 0, 0}, {6, 4, 2}, 1);
    both.set_name(0, "box");
    both.add(kit::make_ball({0, 0, 4}, 2, 2));
    both.set_colour(1, {200, 0.25, 0.75});
    both.set_view({25, -65});
    return both;
}

/// A square with a square hole, a triangle beside it, and a region without area.
CCPloy2DRg three_regions() {
    CCPloy2DRg set;
    const std::vector<std::pair<double, double>> points = {
        {0, 0}, {9, 0}, {9, 9}, {0, 9}, {2, 2}, {2, 4}, {4, 4}, {4, 2}, {12, 0}, {12, 9}, {20, 0}};
    set.pt_list.SetSize(static_cast<int>(points.size()));
    for (int i = 0; i < set.pt_list.GetSize(); ++i) {
        set.pt_list[i].x = points[i].first;
        set.pt_list[i].y = points[i].second;
    }
    const std::vector<std::vector<int>> rings = {{0, 1, 2, 3}, {4, 5, 6, 7}, {1, 8, 10}, {1, 2, 9}};
    set.ring_list.SetSize(static_cast<int>(rings.size()));
    for (int ring = 0; ring < set.ring_list.GetSize(); ++ring) {
        for (const int point : rings[ring]) {
            set.ring_list[ring].pts.Add(point);
        }
    }
    set.region_list.SetSize(3);
    set.region_list[0].rings.Add(0);
    set.region_list[0].rings.Add(1);
    set.region_list[1].rings.Add(2);
    set.region_list[2].rings.Add(3);
    return set;
}

TEST(Raise, ReportsWhichRegionsBecameWhichBodies) {
    const kit::Raised raised = kit::raise(kit::Map(three_regions()), {.low = 1, .high = 3});
    EXPECT_EQ(raised.region_of_body, (std::vector<int>{0, 2}));
    ASSERT_EQ(raised.left_out.size(), 1U);
    EXPECT_EQ(raised.left_out[0].region, 1);
    EXPECT_THAT(kit::text(raised.left_out[0]), HasSubstr("have no area"));
    EXPECT_NEAR(raised.solids[0].volume(), 2 * 77, 1e-9);
    EXPECT_NEAR(raised.solids[1].volume(), 27, 1e-9);
    EXPECT_NE(raised.solids[0].colour().hue, raised.solids[1].colour().hue);
    const kit::Section cut = raised.solids.cut(kit::Plane::through({0, 0, 2}, {0, 0, 5}));
    ASSERT_EQ(cut.size(), 3);
    EXPECT_NE(cut[0].is_hole(), cut[1].is_hole());
    EXPECT_FALSE(cut[2].is_hole());
    EXPECT_EQ(cut[2].body(), 1);
    EXPECT_NEAR(cut.area(), 77 + 13.5, 1e-9);
    EXPECT_NEAR(cut.bounds().right, 12, 1e-9);
}

TEST(Raise, StopsOnRequest) {
    std::stop_source source;
    std::vector<double> fractions;
    kit::Context context;
    context.stop = source.get_token();
    context.on_progress = [&](const kit::Progress& progress) {
        fractions.push_back(progress.fraction);
        source.request_stop();
    };
    EXPECT_THAT(error_of([&] { kit::raise(kit::Map(three_regions()), {}, context); },
                         kit::Error::Kind::cancelled),
                HasSubstr("cancelled"));
    EXPECT_EQ(fractions.size(), 1U);
    EXPECT_THAT(
        input_error_of([] { kit::raise(kit::Map(three_regions()), {.low = 1, .high = 1}); }),
        HasSubstr("lower level"));
    EXPECT_TRUE(kit::raise(kit::Map()).solids.empty());
}

TEST(Solids, ACancelledAddChangesNothing) {
    const kit::Solids ball = kit::make_ball({0, 0, 20}, 5, 5);
    kit::Solids solids = cuboid_and_ball();
    const TMOD3D before(solids.model());
    int reports = 0;
    kit::Context context;
    context.on_progress = [&](const kit::Progress&) { ++reports; };
    kit::Solids(solids).add(ball, context);
    const int all = reports;
    ASSERT_GT(all, 10) << "the exact class reports its progress too";
    for (int last = 1; last < all; last += all / 10) {
        std::stop_source source;
        context.stop = source.get_token();
        reports = 0;
        context.on_progress = [&](const kit::Progress&) {
            if (++reports == last) {
                source.request_stop();
            }
        };
        error_of([&] { solids.add(ball, context); }, kit::Error::Kind::cancelled);
        EXPECT_EQ(reports, last);
        EXPECT_PRED_FORMAT2(same_state, solids.model(), before) << last;
    }
    solids.add(solids);
    EXPECT_EQ(solids.size(), 4);
    EXPECT_EQ(solids[2].name(), "box");
}

using SolidsFile = Scratch;

TEST_F(SolidsFile, KeepsCoordinatesAndColours) {
    const kit::Solids both = cuboid_and_ball();
    both.write(path("m.model"));
    const kit::Solids read = kit::Solids::read(path("m.model"));
    ASSERT_EQ(read.size(), 2);
    EXPECT_EQ(read[1].colour(), both[1].colour());
    EXPECT_NEAR(read.volume(), both.volume(), 1e-5);
    EXPECT_LT(both.change_by_file(), 1e-6);
    EXPECT_EQ(both[0].name(), "box");
    EXPECT_EQ(read[0].name(), "box");

    write("c.curves", "1 3 0 0 5 5 9 0\n");
    EXPECT_THAT(input_error_of([&] { kit::Solids::read(path("c.curves")); }),
                HasSubstr("a curve file, where a body model file is expected"));
    EXPECT_THAT(input_error_of([&] { kit::Solids().write(path("m.model")); }), HasSubstr("faces"));
    EXPECT_EQ(kit::Solids::read(path("m.model")).size(), 2) << "the former file stays";
}

TEST(Solids, AreChangedAsTheExactClassDoes) {
    const kit::Solids both = cuboid_and_ball();
    kit::Solids three = both;
    three.add(three);
    EXPECT_EQ(three.size(), 4);
    EXPECT_EQ(three[2].name(), "box");
    three.remove(std::vector<int>{1, 3, 1});
    ASSERT_EQ(three.size(), 2);
    EXPECT_EQ(three[1].name(), "box");
    EXPECT_EQ(three.vertex_count(), 2 * both[0].vertices().size());
    EXPECT_NEAR(three.volume(), 96, 1e-9);
    EXPECT_THAT(input_error_of([&] {
                    three.remove(std::vector<int>{0, 2});
                }),
                HasSubstr("no body 2 among 2"));
    EXPECT_EQ(three.size(), 2) << "after a wrong number";

    kit::Solids one_by_one;
    one_by_one.add(both);
    one_by_one.add(kit::make_ball({9, 9, 9}, 1));
    const kit::Solids merged = kit::merge({both, kit::make_ball({9, 9, 9}, 1)});
    EXPECT_PRED_FORMAT2(same_shape, merged.model(), one_by_one.model());
    EXPECT_EQ(merged[0].name(), "box");

    TMOD3D damaged = both.model();
    damaged.polys[3].verts[0] = 1000;
    EXPECT_THAT(input_error_of([&] { kit::Solids{damaged}; }), HasSubstr("1000"));
}

TEST(Solids, FindWhatIsSeenAndWhatIsInside) {
    const kit::Solids both = cuboid_and_ball();
    EXPECT_EQ(both.body_at({2.5, 1.5, 0.5}), 0);
    EXPECT_EQ(both.body_at({0, 0, 4}), 1);
    EXPECT_EQ(both.body_at({0, 0, 1.5}), std::nullopt);
    const kit::Point3 middle = both.to_view({0, 0, 4});
    const auto found = both.pick(middle[0], middle[1]);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->body, 1);
    EXPECT_GT(found->depth, middle[2]);
    const kit::Point3 back = both.from_view({found->u, found->v, found->depth});
    for (std::size_t k = 0; k < 3; ++k) {
        EXPECT_NEAR(back[k], found->point[k], 1e-12);
    }
    EXPECT_EQ(both.model().edit_state[edit_is_picked], 0) << "a query stores nothing";
    double area = 0;
    for (const kit::Face face : both[0].faces()) {
        area += face.area();
    }
    EXPECT_NEAR(area, 2 * (24 + 12 + 8), 1e-9);
}

TEST(Solids, AnswerSeveralThreads) {
    const kit::Solids both = cuboid_and_ball();
    const kit::Section expected = both.cut(kit::Plane::at_x(0.3));
    const kit::Point3 seen = both.to_view({0, 0, 4});
    const auto ask = [&] {
        for (int i = 0; i < 20; ++i) {
            const kit::Section cut = both.cut(kit::Plane::at_x(0.3));
            EXPECT_EQ(cut.area(), expected.area());
            EXPECT_EQ(cut.size(), expected.size());
            EXPECT_EQ(both[1].colour().hue, 200);
            EXPECT_EQ(both.pick(seen[0], seen[1])->body, 1);
            EXPECT_EQ(both.body_at({0, 0, 4}), 1);
            EXPECT_EQ(kit::Solids(both)[1].colour().hue, 200);
        }
    };
    std::thread other(ask);
    ask();
    other.join();
}

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

TEST(Editor, UndoRestoresEveryBit) {
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
    for (std::size_t i = edits.before.size(); i-- > 0;) {
        ASSERT_TRUE(editor.undo());
        EXPECT_PRED_FORMAT2(same_state, editor.solids().model(), edits.before[i]) << edits.names[i];
    }
    EXPECT_FALSE(editor.undo());
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
    EXPECT_THAT(input_error_of([&] { editor.move({1, 0, 0}); }), HasSubstr("nothing is gathered"));
    EXPECT_THAT(input_error_of([&] { editor.gather_body(2); }), HasSubstr("body 2"));
    EXPECT_THAT(input_error_of([&] { editor.gather_vertex(-1, 0); }), HasSubstr("vertex -1"));
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
