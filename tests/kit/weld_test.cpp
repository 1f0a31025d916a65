// Volumes by the bodies' own orientation, and welding.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "kit/kit.h"
#include "kit/maps/faces.h"
#include "kit/maps/noding.h"
#include "kit/solids/join.h"
#include "kit/solids/own_orientation.h"
#include "tests/support/dice.h"
#include "tests/support/random_curves.h"

namespace korvel::test {
namespace {

using testing::HasSubstr;

/// A box around 0,0,0 with a smaller one inside, as one body, and each face turned at random.
TMOD3D hollow_box(Dice& dice) {
    TMOD3D model;
    for (const double size : {6.0, 4.0, 2.0}) {
        kit::Solids box = kit::make_cuboid({1e6, -2e6, 3e6}, {size, size, size});
        kit::append_bodies(box.model(), model);
    }
    CArray<int>& listed = model.bodies[0].polys;
    for (int body = 1; body < 3; ++body) {
        for (const int face : model.bodies[body].polys) {
            listed.InsertAt(dice(0, listed.GetSize()), face);
        }
    }
    model.bodies.SetSize(1);
    for (POLY3D& face : model.polys) {
        if (dice(0, 1) == 0) {
            face.invert_poly_range();
        }
    }
    return model;
}

TEST(OwnOrientation, TurnsCavitiesInwards) {
    Dice dice(5);
    for (int round = 0; round < 20; ++round) {
        const TMOD3D model = hollow_box(dice);
        EXPECT_EQ(kit::own_orientation(model, 0).volume, 216 - 64 + 8);
    }
}

/// The regions of a few random curves on a small grid, which touch themselves and one another.
kit::Map random_map(Dice& dice) {
    kit::Network network;
    for (const std::vector<tagPOINT>& curve : random_curves(dice)) {
        network.add_curve(curve);
    }
    return kit::Map(kit::faces_of(kit::node(network)).regions);
}

/// Levels that overlap or not, those of some regions equal.
std::vector<std::optional<kit::Levels>> random_levels(Dice& dice, int regions) {
    std::vector<std::optional<kit::Levels>> levels;
    for (int region = 0; region < regions; ++region) {
        const int low = dice(0, 2);
        levels.push_back(kit::Levels{1.0 * low, low + 1.0 * dice(1, 3)});
    }
    return levels;
}

/// The faces that exactly one body lists, as one body.
TMOD3D outer_surface(const TMOD3D& model) {
    TMOD3D outer(model);
    outer.bodies.SetSize(1);
    outer.bodies[0].polys.RemoveAll();
    for (int face = 0; face < model.polys.GetSize(); ++face) {
        if (model.polys[face].bodies.GetSize() == 1) {
            outer.bodies[0].polys.Add(face);
        }
    }
    return outer;
}

/// Whether the records turn the faces of a body that no other one has outwards.
bool faces_outwards(const TMOD3D& model, int body) {
    const std::vector<int> turns = kit::own_orientation(model, body).turns;
    const CArray<int>& listed = model.bodies[body].polys;
    for (int i = 0; i < listed.GetSize(); ++i) {
        if (model.polys[listed[i]].bodies.GetSize() == 1 && turns[i] != 1) {
            return false;
        }
    }
    return true;
}

/// A region touches itself where its rings pass a point twice.
bool touches_itself(const kit::Region& region) {
    std::set<kit::Point2> points;
    for (int ring = 0; ring < region.ring_count(); ++ring) {
        for (const kit::Point2& corner : region.ring(ring)) {
            if (!points.insert(corner).second) {
                return true;
            }
        }
    }
    return false;
}

std::set<int> as_set(std::span<const int> list) {
    return {list.begin(), list.end()};
}

/// What a model file would contain, without the order of the faces and of their corners.
std::vector<std::vector<std::vector<kit::Point3>>> contents(const kit::Solids& solids) {
    std::vector<std::vector<std::vector<kit::Point3>>> all;
    for (const kit::Body body : solids) {
        auto& faces = all.emplace_back();
        for (const kit::Face face : body.faces()) {
            faces.push_back({face.corner(0), face.corner(1), face.corner(2)});
            std::sort(faces.back().begin(), faces.back().end());
        }
        std::sort(faces.begin(), faces.end());
    }
    return all;
}

constexpr int rounds = 200;

TEST(Weld, RaisedMapsAreClosedAndConnected) {
    Dice dice(11);
    for (int round = 0; round < rounds; ++round) {
        const kit::Map map = random_map(dice);
        const kit::Raised raised = kit::raise(map, {.low = 1, .high = 4});
        const kit::Solids& solids = raised.solids;
        ASSERT_EQ(solids.size(), map.size()) << round;
        const auto neighbours = map.neighbours();
        for (const kit::Body body : solids) {
            const int region = body.index();
            const kit::Surface surface = body.surface();
            ASSERT_TRUE(surface.is_closed() && surface.pieces == 1) << round << " " << region;
            ASSERT_EQ(surface.crowded_edges > 0, touches_itself(map[region])) << round;
            ASSERT_DOUBLE_EQ(body.volume(), 3 * map[region].area()) << round << " " << region;
            ASSERT_EQ(as_set(body.neighbours()), as_set(neighbours[region])) << round;
            ASSERT_TRUE(faces_outwards(solids.model(), region)) << round << " " << region;
        }
        ASSERT_NEAR(solids.volume(), 3 * map.area(), 1e-12 * solids.volume()) << round;
        if (!solids.empty()) {
            ASSERT_TRUE(kit::surface_of(outer_surface(solids.model()), 0).is_closed()) << round;
        }
    }
}

TEST(Weld, WallsOfDifferentHeightsShareTheirCommonPart) {
    Dice dice(12);
    for (int round = 0; round < rounds; ++round) {
        const kit::Map map = random_map(dice);
        kit::RaiseOptions options;
        options.levels_of_region = random_levels(dice, map.size());
        options.axis =
            std::array{kit::LevelAxis::z, kit::LevelAxis::y, kit::LevelAxis::x}[round % 3];
        const kit::Solids solids = kit::raise(map, options).solids;
        const auto neighbours = map.neighbours();
        const auto levels = [&](int region) { return *options.levels_of_region[region]; };
        for (const kit::Body body : solids) {
            const int region = body.index();
            const kit::Surface surface = body.surface();
            ASSERT_TRUE(surface.is_closed() && surface.pieces == 1) << round << " " << region;
            const double height = levels(region).high - levels(region).low;
            ASSERT_DOUBLE_EQ(body.volume(), height * map[region].area()) << round << " " << region;
            std::set<int> touching;
            for (const int other : neighbours[region]) {
                if (std::max(levels(region).low, levels(other).low) <
                    std::min(levels(region).high, levels(other).high)) {
                    touching.insert(other);
                }
            }
            ASSERT_EQ(as_set(body.neighbours()), touching) << round << " " << region;
            ASSERT_TRUE(faces_outwards(solids.model(), region)) << round << " " << region;
        }
        if (!solids.empty()) {
            ASSERT_TRUE(kit::surface_of(outer_surface(solids.model()), 0).is_closed()) << round;
        }
        kit::Solids twice = solids;
        const kit::WeldReport report = kit::weld(twice);
        ASSERT_EQ(report.vertices_joined + report.walls_split + report.walls_turned, 0) << round;
        ASSERT_EQ(contents(twice), contents(solids)) << round;
        options.separate = true;
        kit::Solids separate = kit::raise(map, options).solids;
        kit::weld(separate);
        ASSERT_EQ(contents(separate), contents(solids)) << round;
    }
}

TEST(Weld, SectionsHaveNoGapAndNoDoubleLine) {
    Dice dice(13);
    for (int round = 0; round < rounds; ++round) {
        const kit::Map map = random_map(dice);
        kit::RaiseOptions options{.low = 1, .high = 4};
        const kit::Solids solids = kit::raise(map, options).solids;
        options.separate = true;
        const kit::Solids separate = kit::raise(map, options).solids;
        const kit::Section level = solids.cut(kit::Plane::at_z(2.5));
        ASSERT_TRUE(level.loose_points().empty()) << round;
        ASSERT_EQ(static_cast<int>(level.bodies().size()), map.size());
        for (const kit::SectionBody& cut : level.bodies()) {
            ASSERT_NEAR(cut.area, map[cut.body].area(), 1e-12 * cut.area) << round;
        }
        std::map<std::set<kit::Point3>, std::set<int>> bodies_at; // of each line
        for (const kit::SectionPolygon polygon : level) {
            const auto corners = polygon.points();
            for (int k = 0; k < corners.size(); ++k) {
                auto& bodies = bodies_at[{corners[k], corners[(k + 1) % corners.size()]}];
                ASSERT_TRUE(bodies.insert(polygon.body()).second) << round << ": a double line";
                ASSERT_LE(bodies.size(), 2U) << round;
            }
        }
        for (const auto& [line, bodies] : bodies_at) {
            ASSERT_EQ(line.size(), 2U) << round;
        }
        const kit::Plane slant{1.0 * dice(-3, 3), 1.0 * dice(-3, 3), 1, -dice(0, 9) - 0.5};
        const kit::Section cut = solids.cut(slant);
        const kit::Section expected = separate.cut(slant);
        ASSERT_TRUE(cut.loose_points().empty()) << round;
        ASSERT_EQ(cut.size(), expected.size()) << round;
        ASSERT_NEAR(cut.area(), expected.area(), 1e-9) << round;
    }
}

TEST(Weld, AMoveKeepsNeighboursTogether) {
    Dice dice(14);
    for (int round = 0; round < rounds / 3; ++round) {
        const kit::Map map = random_map(dice);
        kit::Solids solids = kit::raise(map, {.low = 1, .high = 4}).solids;
        if (solids.empty()) {
            continue;
        }
        const double volume = solids.volume();
        const int vertex = dice(0, solids.vertex_count() - 1);
        const kit::Point3 before = solids.vertex(vertex);
        kit::SolidsEditor editor(std::move(solids));
        editor.set_view({0, 0});
        editor.gather_vertex(vertex, 0);
        editor.move({0.05, 0.02, 0.5});
        const kit::Solids moved = editor.take();
        EXPECT_NE(moved.vertex(vertex), before);
        for (const kit::Surface& surface : moved.surfaces()) {
            ASSERT_TRUE(surface.is_closed()) << round;
        }
        const TMOD3D outer = outer_surface(moved.model());
        ASSERT_TRUE(kit::surface_of(outer, 0).is_closed()) << round;
        ASSERT_NEAR(moved.volume(), kit::own_orientation(outer, 0).volume, 1e-9 * volume) << round;
    }
}

/// Regions of random rings, which cross, overlap, repeat one another and touch.
kit::Map wild_map(Dice& dice) {
    CCPloy2DRg set;
    set.pt_list.SetSize(dice(4, 16));
    for (VERT2D& point : set.pt_list) {
        point.x = dice(0, 5);
        point.y = dice(0, 5);
    }
    set.ring_list.SetSize(dice(1, 5));
    for (RING& ring : set.ring_list) {
        for (int corners = dice(3, 7); corners > 0; --corners) {
            ring.pts.Add(dice(0, set.pt_list.GetUpperBound()));
        }
    }
    set.region_list.SetSize(dice(1, 3));
    for (CCPloy2DRg::PyToRg& region : set.region_list) {
        for (int rings = dice(1, 3); rings > 0; --rings) {
            region.rings.Add(dice(0, set.ring_list.GetUpperBound()));
        }
    }
    return kit::Map(set);
}

TEST(Weld, WhateverIsRaisedIsClosedAndHasItsVolume) {
    Dice dice(18);
    int bodies = 0;
    for (int round = 0; round < 10 * rounds; ++round) {
        const kit::Map map = wild_map(dice);
        const kit::Raised raised = kit::raise(map, {.low = 0, .high = 2, .threads = 1});
        ASSERT_EQ(raised.solids.size() + static_cast<int>(raised.left_out.size()), map.size());
        for (const kit::Body body : raised.solids) {
            const int region = raised.region_of_body[static_cast<std::size_t>(body.index())];
            ASSERT_TRUE(body.surface().is_closed()) << round;
            ASSERT_DOUBLE_EQ(body.volume(), 2 * map[region].area()) << round;
            ++bodies;
        }
    }
    EXPECT_GT(bodies, rounds);
}

/// A box with each side cut along one of its diagonals at random, and its faces turned at random.
void add_box(Dice& dice, const kit::Point3& low, const kit::Point3& size, TMOD3D& model) {
    TMOD3D box;
    box.verts.SetSize(8);
    for (int v = 0; v < 8; ++v) {
        for (int k = 0; k < 3; ++k) {
            box.verts[v].model_xyz[k] = low[k] + (v >> k & 1) * size[k];
        }
    }
    box.bodies.SetSize(1);
    for (int axis = 0; axis < 3; ++axis) {
        const int u = 1 << (axis + 1) % 3;
        const int v = 1 << (axis + 2) % 3;
        for (const int first : {0, 1 << axis}) {
            std::array<int, 4> square = {first, first + u, first + u + v, first + v};
            std::rotate(square.begin(), square.begin() + dice(0, 1), square.end());
            for (const std::array<int, 3>& corners :
                 {std::array{square[0], square[1], square[2]}, {square[0], square[3], square[2]}}) {
                box.bodies[0].polys.Add(box.polys.GetSize());
                POLY3D face;
                for (const int corner : corners) {
                    face.verts.Add(corner);
                }
                box.polys.Add(face);
            }
        }
    }
    kit::append_bodies(box, model);
}

kit::Solids solids_of(TMOD3D& model) {
    model.clear_no_use_ele();
    return kit::Solids(model);
}

TEST(Weld, JoinsStackedBoxesOnAllSides) {
    Dice dice(15);
    for (int round = 0; round < 50; ++round) {
        const double shift = round % 2 == 0 ? 0 : 1e-4; // of every second box
        TMOD3D model;
        for (int box = 0; box < 8; ++box) {
            const double by = box % 2 * shift;
            add_box(dice, {(box & 1) + by, (box >> 1 & 1) - by, (box >> 2) + by}, {1, 1, 1}, model);
        }
        kit::Solids solids = solids_of(model);
        solids.set_name(7, "last");
        solids.set_colour(7, {10, 0.25, 0.75});
        const kit::WeldReport report = kit::weld(solids, {.tolerance = 3 * shift});
        EXPECT_EQ(report.vertices_joined, 64 - 27) << round;
        EXPECT_EQ(report.faces_shared, 24) << round;
        EXPECT_EQ(solids[7].name(), "last");
        EXPECT_EQ(solids[7].colour(), (kit::BodyColour{10, 0.25, 0.75}));
        for (const kit::Body body : solids) {
            EXPECT_EQ(body.neighbours().size(), 3U) << round;
            EXPECT_TRUE(body.surface().is_clean()) << round;
            EXPECT_NEAR(body.volume(), 1, 4 * shift) << round;
        }
        const auto once = contents(solids);
        kit::weld(solids, {.tolerance = 3 * shift});
        EXPECT_EQ(contents(solids), once) << round;
    }
}

TEST(Weld, RefusesWhatWouldBeDegenerate) {
    Dice dice(16);
    const auto error_of = [](TMOD3D& model, double tolerance) {
        kit::Solids solids = solids_of(model);
        const auto before = contents(solids);
        try {
            kit::weld(solids, {.tolerance = tolerance});
        } catch (const kit::Error& error) {
            EXPECT_EQ(contents(solids), before);
            return std::string(error.what());
        }
        return std::string("no error");
    };
    TMOD3D boxes;
    add_box(dice, {0, 0, 0}, {1, 1, 1}, boxes);
    add_box(dice, {5, 0, 0}, {1, 1, 0.01}, boxes);
    EXPECT_EQ(error_of(boxes, 0.001), "no error");
    EXPECT_THAT(error_of(boxes, 0.1), HasSubstr("body 1: two corners of its face"));
    EXPECT_THAT(error_of(boxes, -1), HasSubstr("tolerance"));
    TMOD3D twice;
    add_box(dice, {0, 0, 0}, {1, 1, 1}, twice);
    twice.bodies[0].polys.Add(0);
    EXPECT_THAT(error_of(twice, 0), HasSubstr("body 0 would have two faces at the same"));
    TMOD3D endless = twice;
    endless.verts[3].model_xyz[1] = std::numeric_limits<double>::infinity();
    EXPECT_THAT(error_of(endless, 0), HasSubstr("has no finite position"));
    // Each of many walls would take in all of many vertices.
    TMOD3D fan;
    constexpr int levels = 5000;
    fan.verts.SetSize(2 * levels);
    fan.bodies.SetSize(1);
    for (int i = 0; i < levels; ++i) {
        fan.verts[i].model_xyz[2] = i;
        fan.verts[levels + i].model_xyz[0] = i + 1;
        POLY3D face;
        for (const int corner : {0, i, levels + i}) {
            face.verts.Add(corner);
        }
        fan.bodies[0].polys.Add(fan.polys.Add(face));
    }
    fan.polys[0].verts[1] = 1;
    EXPECT_THAT(error_of(fan, 0), HasSubstr("too many vertices are above one another"));
}

TEST(Weld, RaisesTheSameOnAnyNumberOfThreads) {
    Dice dice(17);
    const kit::Map map = random_map(dice);
    for (const bool separate : {false, true}) {
        std::vector<std::vector<std::string>> notices;
        std::vector<std::vector<std::vector<int>>> faces;
        for (const int threads : {1, 2, 7}) {
            notices.emplace_back();
            faces.emplace_back();
            kit::RaiseOptions options{.separate = separate, .threads = threads};
            options.on_notice = [&](const std::string& text) { notices.back().push_back(text); };
            const kit::Raised raised = kit::raise(map, options);
            EXPECT_EQ(static_cast<int>(notices.back().size()), map.size());
            for (const kit::Face face : raised.solids.faces()) {
                faces.back().emplace_back(face.vertices().begin(), face.vertices().end());
            }
        }
        for (std::size_t i = 1; i < faces.size(); ++i) {
            EXPECT_EQ(faces[i], faces[0]);
            EXPECT_EQ(notices[i], notices[0]);
        }
    }
}

TEST(FilePrecision, NamesTheCornersThatBecomeOne) {
    EXPECT_FALSE(kit::collapse_in_file(kit::make_cuboid({0, 0, 0}, {1, 1, 1e-5})));
    const auto thin = kit::collapse_in_file(kit::make_cuboid({0, 0, 0}, {1, 1, 1e-7}));
    ASSERT_TRUE(thin);
    EXPECT_EQ(thin->body, 0);
    EXPECT_THAT(kit::text(*thin), HasSubstr("5e-08 are one"));
    EXPECT_TRUE(kit::collapse_in_file(kit::make_cuboid({3e7, 0, 0}, {1, 8, 8})));
}

} // namespace
} // namespace korvel::test
