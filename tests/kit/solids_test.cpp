// The public classes for solids: making, files, changes and sections.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "kit/kit.h"
#include "tests/kit/cuboid_and_ball.h"
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

} // namespace
} // namespace korvel::test
