// The edges that outline bodies, and views that show nothing.

#include <gtest/gtest.h>

#include "kit/kit.h"

namespace korvel::test {
namespace {

/// The squares of a row, raised to as many levels and welded.
kit::Solids row_of_squares(const std::vector<double>& heights) {
    kit::Network network;
    kit::RaiseOptions options;
    for (int i = 0; i < static_cast<int>(heights.size()); ++i) {
        network.add_curve(
            std::vector<kit::GridPoint>{{i, 0}, {i + 1, 0}, {i + 1, 1}, {i, 1}, {i, 0}});
        options.levels_of_region.push_back(kit::Levels{0, heights[static_cast<std::size_t>(i)]});
    }
    return kit::raise(kit::find_regions(std::move(network)).take_map(), options).solids;
}

std::size_t outlines(const kit::Solids& solids, double angle = kit::smooth_angle) {
    return kit::outline_edges(solids.model(), angle).size();
}

TEST(Outlines, AreWhereBodiesBendOrEnd) {
    for (const int rounds : {0, 2}) {
        const kit::Solids cuboid = kit::make_cuboid({5, 0, -7}, {3, 2, 0.01}, rounds);
        EXPECT_EQ(outlines(cuboid), 12U << rounds);
    }
    EXPECT_EQ(outlines(kit::make_ball({0, 0, 0}, 1, 0)), 30U);
    EXPECT_EQ(outlines(kit::make_ball({0, 0, 0}, 1, 0), 45), 0U); // its faces turn by 41.8 degrees
    EXPECT_EQ(outlines(kit::make_ball({0, 0, 0}, 1, 2)), 0U);
    EXPECT_EQ(outlines(kit::Solids()), 0U);

    // Neighbours of one height have a border on their tops.
    EXPECT_EQ(outlines(row_of_squares({2, 2})), 20U);
    EXPECT_EQ(outlines(row_of_squares({2, 3})), 23U); // two are divided
    EXPECT_EQ(outlines(row_of_squares({2, 2, 2})), 28U);
}

TEST(Outlines, IncludeOpenEdgesAndKnives) {
    // Two triangles at an edge, flat, folded on each other, and each in a body of its own.
    const auto pair = [](double x, double y, double z, int bodies) {
        TMOD3D model;
        model.verts.SetSize(4);
        const double at[4][3] = {{0, 0, 0}, {1, 0, 0}, {0.3, 1, 0}, {x, y, z}};
        for (int v = 0; v < 4; ++v) {
            std::copy_n(at[v], 3, model.verts[v].model_xyz);
        }
        model.polys.SetSize(2);
        for (const auto& [face, corner] : {std::pair(0, 2), {1, 3}}) {
            for (const int v : {0, 1, corner}) {
                model.polys[face].verts.Add(v);
            }
            model.polys[face].find_side(model.lines);
        }
        model.bodies.SetSize(bodies);
        model.bodies[0].polys.Add(0);
        model.bodies[bodies - 1].polys.Add(1);
        model.found_top_rel();
        return kit::outline_edges(model).size();
    };
    EXPECT_EQ(pair(0.6, -2, 0, 1), 4U);
    EXPECT_EQ(pair(0.6, -2, 1, 1), 4U);   // by 27 degrees
    EXPECT_EQ(pair(0.6, -2, 1.2, 1), 5U); // by 31
    EXPECT_EQ(pair(0.6, 2, 0.01, 1), 5U);
    EXPECT_EQ(pair(0.6, -2, 0, 2), 5U);
}

TEST(ViewFrame, ShowsNothingBesideTheFaces) {
    kit::Solids ball = kit::make_ball({50, 0, 0}, 10, 3);
    ball.set_view({.turn = 0, .tilt = 0});
    const auto is_beside = [&](double left, double top, double right, double bottom) {
        const kit::ViewOptions options = {.size = {100, 100},
                                          .part = kit::Rectangle{left, top, right, bottom}};
        return kit::shows_nothing(kit::view_frame(ball, options), ball.model());
    };
    EXPECT_FALSE(is_beside(-0.01, -0.01, 0.01, 0.01)) << "within a face";
    EXPECT_FALSE(is_beside(-99, -99, 99, 99));
    EXPECT_FALSE(is_beside(9, -50, 59, 0));
    EXPECT_TRUE(is_beside(11, -1, 13, 1));
    EXPECT_TRUE(is_beside(8.5, 8.5, 9.9, 9.9)) << "in a corner of the bounds";
    EXPECT_TRUE(kit::shows_nothing(kit::ViewFrame(), TMOD3D()));
}

} // namespace
} // namespace korvel::test
