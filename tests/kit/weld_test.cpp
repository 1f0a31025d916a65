// Volumes by the bodies' own orientation, and welding.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
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
    const int size = dice(4, 9);
    kit::Network network;
    const int curves = dice(3, 9);
    for (int curve = 0; curve < curves; ++curve) {
        std::vector<kit::GridPoint> points;
        const int corners = dice(2, 6);
        for (int i = 0; i < corners; ++i) {
            points.push_back({dice(0, size), dice(0, size)});
        }
        points.push_back(points.front());
        network.add_curve(points);
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

constexpr int rounds = 300;

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

} // namespace
} // namespace korvel::test
