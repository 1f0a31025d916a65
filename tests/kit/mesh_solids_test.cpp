// Soups of faces become bodies, and bodies meshes.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "kit/kit.h"
#include "tests/kit/cube_mesh.h"
#include "tests/support/dice.h"
#include "tests/support/random_curves.h"

namespace korvel::test {
namespace {

using testing::ElementsAre;

std::vector<double> volumes_of(const kit::Solids& solids) {
    std::vector<double> volumes;
    for (const kit::Body body : solids) {
        volumes.push_back(body.surface().is_closed() ? body.volume() : -1);
    }
    std::sort(volumes.begin(), volumes.end());
    return volumes;
}

TEST(MeshSolids, MakesBodiesOfShells) {
    struct Case {
        std::string name;
        std::vector<Cube> cubes;
        std::vector<double> volumes;
        int cavities;
        int turned;
    };
    const std::vector<Case> cases = {
        {"apart", {{{0, 0, 0}, 1}, {{2, 0, 0}, 2}}, {1, 8}, 0, 0},
        {"one is inside out", {{{0, 0, 0}, 1}, {{2, 0, 0}, 2, true}}, {1, 8}, 0, 6},
        {"with a common wall", {{{0, 0, 0}, 2}, {{2, 0, 0}, 2}}, {8, 8}, 0, 0},
        {"with a common wall, inside out",
         {{{0, 0, 0}, 2, true}, {{2, 0, 0}, 2, true}},
         {8, 8},
         0,
         12},
        {"eight of them",
         {{{0, 0, 0}, 1},
          {{1, 0, 0}, 1},
          {{0, 1, 0}, 1},
          {{1, 1, 0}, 1},
          {{0, 0, 1}, 1},
          {{1, 0, 1}, 1},
          {{0, 1, 1}, 1},
          {{1, 1, 1}, 1}},
         {1, 1, 1, 1, 1, 1, 1, 1},
         0,
         0},
        {"with a common edge", {{{0, 0, 0}, 1}, {{1, 1, 0}, 1}}, {1, 1}, 0, 0},
        {"with a common corner", {{{0, 0, 0}, 1}, {{1, 1, 1}, 1}}, {1, 1}, 0, 0},
        {"a cavity", {{{0, 0, 0}, 4}, {{1, 1, 1}, 1, true}}, {63}, 1, 0},
        {"a cavity, all inside out", {{{0, 0, 0}, 4, true}, {{1, 1, 1}, 1}}, {63}, 1, 12},
        {"a body in a body", {{{0, 0, 0}, 4}, {{1, 1, 1}, 1}}, {1, 64}, 0, 0},
        {"a cavity that touches", {{{0, 0, 0}, 4}, {{0, 1, 1}, 1, true}}, {63}, 1, 0},
        {"a cavity with a body with a cavity",
         {{{0, 0, 0}, 9}, {{1, 1, 1}, 7, true}, {{2, 2, 2}, 5}, {{3, 3, 3}, 1, true}},
         {124, 386},
         2,
         0},
        {"concentric", {{{0, 0, 0}, 6}, {{2, 2, 2}, 2, true}}, {208}, 1, 0},
        {"twice the same", {{{0, 0, 0}, 1}, {{0, 0, 0}, 1}}, {1}, 0, 0},
    };
    for (const Case& each : cases) {
        for (const double place : {0.0, 4e6}) {
            for (const bool of_squares : {false, true}) {
                SCOPED_TRACE(each.name + " at " + std::to_string(place));
                kit::Mesh mesh;
                for (Cube cube : each.cubes) {
                    cube.low[1] += place;
                    add_cube(cube, of_squares, mesh);
                }
                kit::MeshReport report;
                const kit::Solids solids = kit::solids_of(mesh, {}, &report);
                EXPECT_EQ(volumes_of(solids), each.volumes);
                EXPECT_EQ(report.cavities, each.cavities);
                EXPECT_EQ(report.faces_turned, each.turned * (of_squares ? 1 : 2));
                EXPECT_EQ(report.open_edges, 0);
                EXPECT_EQ(volumes_of(kit::solids_of(kit::mesh_of(solids))), each.volumes);
            }
        }
    }
}

/// Neighbouring bodies of several heights, which touch themselves and one another along walls,
/// edges and at points.
kit::Solids random_bodies(Dice& dice) {
    kit::Network network;
    for (const std::vector<tagPOINT>& curve : random_curves(dice)) {
        network.add_curve(curve);
    }
    const kit::Map map = kit::find_regions(network).map();
    kit::RaiseOptions options;
    options.separate = dice.one_in(3);
    for (int region = 0; region < map.size(); ++region) {
        const int low = dice(0, 2);
        options.levels_of_region.push_back(kit::Levels{1.0 * low, low + 1.0 * dice(1, 3)});
    }
    kit::Solids solids = kit::raise(map, options).solids;
    for (int body = 0; body < solids.size(); body += 2) {
        solids.set_name(body, "body " + std::to_string(body));
    }
    return solids;
}

TEST(MeshSolids, ReturnsBodiesWithNamesAndColours) {
    Dice dice(3);
    for (int round = 0; round < 40; ++round) {
        SCOPED_TRACE(round);
        const kit::Solids solids = random_bodies(dice);
        if (solids.empty()) {
            continue;
        }
        kit::Mesh mesh = kit::mesh_of(solids);
        const kit::Solids back = kit::solids_of(mesh);
        ASSERT_EQ(back.size(), solids.size());
        for (int body = 0; body < solids.size(); ++body) {
            EXPECT_EQ(back[body].name(), solids[body].name());
            EXPECT_EQ(back[body].colour().rgb(), solids[body].colour().rgb());
            EXPECT_NEAR(back[body].volume(), solids[body].volume(), 1e-9);
        }
        // Without its parts and inside out.
        mesh.parts.clear();
        mesh.parts_are_bodies = false;
        kit::MeshReport report;
        const kit::Solids found = kit::solids_of(mesh, {}, &report);
        std::reverse(mesh.corners.begin(), mesh.corners.end());
        const kit::Solids turned = kit::solids_of(mesh);
        const std::vector<double> volumes = volumes_of(solids);
        EXPECT_THAT(volumes_of(found), testing::Pointwise(testing::DoubleNear(1e-9), volumes));
        EXPECT_THAT(volumes_of(turned), testing::Pointwise(testing::DoubleNear(1e-9), volumes));
        EXPECT_EQ(report.faces_turned + report.faces_doubled + report.open_edges, 0);
    }
}

TEST(MeshSolids, TakesColoursFromPartsOrMostFaces) {
    kit::Mesh mesh;
    add_cube({{0, 0, 0}, 1}, true, mesh);
    Dice dice;
    for (int round = 0; round < 50; ++round) {
        const auto channel = [&] { return static_cast<unsigned char>(dice(0, 255)); };
        const kit::Colour colour = {channel(), channel(), channel()};
        const kit::Colour other = {1, 2, 3};
        mesh.parts.clear();
        mesh.face_colours = {other, colour, colour, other, colour, colour};
        EXPECT_EQ(kit::solids_of(mesh)[0].colour().rgb(), colour);
        mesh.parts = {{"", other, 6}};
        EXPECT_EQ(kit::solids_of(mesh)[0].colour().rgb(), other);
    }
}

/// A prism over a polygon, its caps as one face each.
kit::Mesh prism(const std::vector<kit::Point2>& outline) {
    kit::Mesh mesh;
    std::vector<kit::Point3> bottom;
    std::vector<kit::Point3> top;
    for (const auto& [x, y] : outline) {
        bottom.push_back({x, y, 0});
        top.push_back({x, y, 1});
    }
    std::reverse(bottom.begin(), bottom.end());
    add_face(bottom, mesh);
    add_face(top, mesh);
    for (std::size_t k = 0; k < outline.size(); ++k) {
        const auto& [ax, ay] = outline[k];
        const auto& [bx, by] = outline[(k + 1) % outline.size()];
        add_face({{ax, ay, 0}, {bx, by, 0}, {bx, by, 1}, {ax, ay, 1}}, mesh);
    }
    return mesh;
}

TEST(MeshSolids, DividesPolygonsOfAnyShape) {
    std::vector<kit::Point2> comb = {{0, 20}, {0, 0}};
    for (int tooth = 0; tooth < 2000; ++tooth) {
        comb.push_back({2.0 * tooth + 1, 0});
        comb.push_back({2.0 * tooth + 2, tooth % 2 == 0 ? 9.0 : -9.0});
    }
    comb.push_back({4001, 20});
    struct Case {
        std::string name;
        std::vector<kit::Point2> outline;
    };
    const std::vector<Case> cases = {
        {"L", {{0, 0}, {2, 0}, {2, 1}, {1, 1}, {1, 2}, {0, 2}}},
        {"reflex quadrangle", {{0, 0}, {4, 0}, {1, 1}, {0, 4}}},
        {"corners in line", {{0, 0}, {1, 0}, {2, 0}, {3, 0}, {3, 1}, {2, 1}, {1, 1}, {0, 1}}},
        {"comb", comb},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        double area = 0;
        for (std::size_t k = 0; k < each.outline.size(); ++k) {
            const auto& [ax, ay] = each.outline[k];
            const auto& [bx, by] = each.outline[(k + 1) % each.outline.size()];
            area += (ax * by - bx * ay) / 2;
        }
        kit::MeshReport report;
        const kit::Solids solids = kit::solids_of(prism(each.outline), {}, &report);
        EXPECT_THAT(volumes_of(solids), ElementsAre(testing::DoubleNear(area, 1e-6)));
        EXPECT_EQ(report.faces_turned + report.faces_degenerate, 0);
        double cap = 0; // more than the area where triangles overlap
        for (const kit::Face face : solids.faces()) {
            cap += face.normal()[2] > 0.5 ? face.area() : 0;
        }
        EXPECT_NEAR(cap, area, 1e-6);
    }
}

TEST(MeshSolids, StayClosedWithoutFlatFaces) {
    kit::Mesh cube;
    add_cube({{0, 0, 0}, 2}, false, cube);
    for (std::size_t face = 0; face < 12; ++face) {
        // Two flat faces, one at the other, fill a slit beside the first edge of a face.
        kit::Mesh mesh = cube;
        const kit::Point3 a = mesh.points[3 * face];
        const kit::Point3 b = mesh.points[3 * face + 1];
        const kit::Point3 c = mesh.points[3 * face + 2];
        const auto between = [](const kit::Point3& p, const kit::Point3& q) {
            return kit::Point3{(p[0] + q[0]) / 2, (p[1] + q[1]) / 2, (p[2] + q[2]) / 2};
        };
        const kit::Point3 middle = between(a, b);
        const kit::Point3 quarter = between(a, middle);
        mesh.points[3 * face + 1] = quarter;
        add_face({quarter, middle, c}, mesh);
        add_face({middle, b, c}, mesh);
        add_face({a, middle, quarter}, mesh);
        add_face({a, b, middle}, mesh);
        kit::MeshReport report;
        EXPECT_EQ(volumes_of(kit::solids_of(mesh, {}, &report)), std::vector<double>{8}) << face;
        EXPECT_EQ(report.faces_degenerate, 2);
        EXPECT_EQ(report.faces_turned, 0);
    }
}

TEST(MeshSolids, KeepsOpenShells) {
    kit::Mesh sheet; // with both of its sides
    add_face({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, sheet);
    add_face({{0, 0, 0}, {0, 1, 0}, {1, 1, 0}, {1, 0, 0}}, sheet);
    kit::Mesh box;
    add_cube({{0, 0, 0}, 1}, false, box);
    add_cube({{9, 0, 0}, 1}, false, box);
    box.corners.resize(69); // one triangle less
    box.face_ends.resize(23);
    std::swap(box.corners[60], box.corners[61]);
    kit::MeshReport report;
    EXPECT_EQ(volumes_of(kit::solids_of(box, {}, &report)), (std::vector<double>{-1, 1}));
    EXPECT_EQ(report.open_edges, 3);
    EXPECT_EQ(report.faces_turned, 1);
    const kit::Solids flat = kit::solids_of(sheet, {}, &report);
    EXPECT_EQ(flat.face_count(), 2);
    EXPECT_EQ(report.open_edges, 4);
}

TEST(MeshSolids, UnitesPartsAtOpenEdges) {
    kit::Mesh mesh;
    add_cube({{0, 0, 0}, 1}, true, mesh); // in two parts
    add_cube({{1, 0, 0}, 1}, true, mesh); // with a common wall
    add_cube({{5, 0, 0}, 1}, true, mesh); // two pieces in one part
    add_cube({{7, 0, 0}, 1}, true, mesh);
    mesh.parts = {{"half", {}, 3},
                  {"other half", {}, 6},
                  {"empty", {}, 6},
                  {"cube", {}, 12},
                  {"pair", {}, 24}};
    const kit::Solids solids = kit::solids_of(mesh);
    std::vector<std::string> names;
    for (const kit::Body body : solids) {
        names.push_back(body.name());
    }
    EXPECT_EQ(volumes_of(solids), (std::vector<double>{1, 1, 1, 1}));
    EXPECT_THAT(names, ElementsAre("half", "cube", "pair", "pair"));
    mesh.parts_are_bodies = true;
    EXPECT_EQ(volumes_of(kit::solids_of(mesh)), (std::vector<double>{-1, -1, 1, 2}));
}

TEST(MeshSolids, JoinsNearPoints) {
    kit::Mesh mesh;
    add_cube({{0, 0, 0}, 1}, false, mesh);
    Dice dice(4);
    for (kit::Point3& point : mesh.points) {
        for (double& coordinate : point) {
            coordinate += dice.between(-1e-6, 1e-6);
        }
    }
    EXPECT_GT(kit::solids_of(mesh).size(), 1);
    kit::MeshReport report;
    const kit::Solids solids = kit::solids_of(mesh, {.weld = 1e-5}, &report);
    EXPECT_THAT(volumes_of(solids), ElementsAre(testing::DoubleNear(1, 1e-5)));
    EXPECT_EQ(report.points_joined, 28);
    for (const double weld : {-1.0, std::nan("")}) {
        EXPECT_THROW(kit::solids_of(mesh, {.weld = weld}), kit::Error);
    }
}

TEST(MeshSolids, HavePlacementsThatFilesKeep) {
    struct Case {
        kit::Point3 low;
        double size;
        std::string step; // empty without a placement
        double change;    // most by a file
    };
    const std::vector<Case> cases = {
        {{0, 0, 0}, 1000, "", 0},
        {{0.125, 0, 0}, 4, "", 0},
        {{-0.123456, 0, 0}, 0.5, "", 2e-8},
        {{691234.567, 5334321.123, 519.5}, 12.25, "0.001", 1e-9},
        {{691234.567, 5334321.123, 519.5}, 1 / 3.0, "1e-07", 1e-8},
        {{0, 0, 1e12}, 1e3, "1", 0},
        {{0, 0, 0}, 1e-9 / 3, "1e-16", 1e-16},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.low[0]);
        kit::Mesh mesh;
        add_cube({each.low, each.size}, false, mesh);
        const kit::Solids solids = kit::solids_of(mesh);
        const kit::Grid& grid = solids.placement().grid;
        EXPECT_EQ(grid.is_identity() ? "" : grid.step_text(), each.step);
        EXPECT_LE(solids.change_by_file(), each.change);
        EXPECT_EQ(solids.bounds().low, each.low);
        EXPECT_NEAR(solids.volume() / std::pow(each.size, 3), 1, 1e-6);
    }
}

TEST(MeshSolids, RefusesWhatNoModelHolds) {
    kit::Mesh book;
    book.points = {{0, 0, 0}, {0, 0, 1}};
    for (int page = 0; page < 20000; ++page) {
        book.points.push_back({std::cos(0.1 * page), std::sin(0.1 * page), 0.001 * page});
        book.corners.insert(book.corners.end(), {0, 1, page + 2});
    }
    EXPECT_THROW(kit::solids_of(book), kit::Error);
    EXPECT_EQ(kit::check_mesh(book).problems.size(), 10000U);
    EXPECT_FALSE(kit::repair_mesh(book).is_sound());
    book.corners.back() = 20002;
    EXPECT_THROW(kit::solids_of(book), kit::Error);
    EXPECT_THROW(kit::solids_of({}), kit::Error);
}

} // namespace
} // namespace korvel::test
