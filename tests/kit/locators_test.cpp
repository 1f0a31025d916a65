// Indices for many points give the answers of the queries that they stand for.

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "kit/base/parallel.h"
#include "kit/maps/find_regions.h"
#include "kit/maps/region_locator.h"
#include "kit/solids/body_locator.h"
#include "kit/solids/raise.h"
#include "tests/kit/rings.h"
#include "tests/support/dice.h"

namespace korvel::test {
namespace {

// Rings of random corners cross and touch themselves, and have sides along each other.
kit::Map random_map(Dice& dice, int size) {
    CCPloy2DRg set;
    const int regions = dice(1, 12);
    for (int region = 0; region < regions; ++region) {
        Rings rings(static_cast<std::size_t>(dice(1, 3)));
        for (auto& ring : rings) {
            const double left = dice(0, size);
            const double scale = dice.one_in(3) ? 0.1 : 1;
            ring.resize(static_cast<std::size_t>(dice(1, 9)));
            for (kit::PlanePoint& corner : ring) {
                corner = {left + scale * dice(0, size), scale * dice(0, size)};
            }
        }
        CCPloy2DRg one;
        fill(one, rings, false);
        const int first = set.pt_list.GetSize();
        set.pt_list.Append(one.pt_list);
        set.region_list.SetSize(region + 1);
        for (RING& ring : one.ring_list) {
            for (int& point : ring.pts) {
                point += first;
            }
            set.region_list[region].rings.Add(set.ring_list.GetSize());
            set.ring_list.Add(ring);
        }
    }
    return kit::Map(set);
}

TEST(RegionLocator, AnswersAsTheMapDoes) {
    Dice dice;
    EXPECT_EQ(kit::RegionLocator(kit::Map()).region_at({0, 0}), std::nullopt);
    int found = 0;
    for (int round = 0; round < 300; ++round) {
        const int size = dice.pick(std::vector{4, 12, 1000});
        const kit::Map map = random_map(dice, size);
        const kit::RegionLocator locator(map);
        for (int k = 0; k < 200; ++k) {
            const kit::Point2 point =
                dice.one_in(2) ? kit::Point2{1.0 * dice(-1, 2 * size), 1.0 * dice(-1, size)}
                               : kit::Point2{dice.up_to(2 * size), dice.up_to(size)};
            const auto region = map.region_at(point);
            ASSERT_EQ(locator.region_at(point), region)
                << "map " << round << ", point " << point[0] << ',' << point[1];
            found += region.has_value() ? 1 : 0;
        }
    }
    EXPECT_GT(found, 10000);
}

// Faces of random corners: narrow, without area, in planes of each other, listed twice.
kit::Solids random_solids(Dice& dice, int size) {
    TMOD3D model;
    model.verts.SetSize(dice(3, 30));
    for (VERT3D& vertex : model.verts) {
        for (double& at : vertex.model_xyz) {
            at = dice.one_in(4) ? dice.up_to(size) : dice(0, size);
        }
    }
    model.polys.SetSize(dice(1, 60));
    for (POLY3D& face : model.polys) {
        for (int k = 0; k < 3; ++k) {
            face.verts.Add(dice(0, model.verts.GetSize() - 1));
        }
        face.set_poly_eql(model.verts);
    }
    model.bodies.SetSize(dice(1, 5));
    for (BODY3D& body : model.bodies) {
        for (int k = dice(0, 40); k > 0; --k) {
            body.polys.Add(dice(0, model.polys.GetSize() - 1));
        }
    }
    model.model_wrap_cuboid();
    return kit::Solids(model);
}

void compare(const kit::Solids& solids, Dice& dice, int points, int& found) {
    const kit::BodyLocator locator(solids);
    const kit::Box box = solids.bounds();
    for (int k = 0; k < points; ++k) {
        kit::Point3 point;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            point[axis] = dice.between(box.low[axis], box.high[axis]);
            point[axis] = dice.one_in(3) ? std::round(point[axis]) : point[axis];
        }
        if (dice.one_in(4)) {
            point = solids.vertex(dice(0, solids.vertex_count() - 1));
        }
        const auto body = solids.body_at(point);
        ASSERT_EQ(locator.body_at(point), body) << point[0] << ',' << point[1] << ',' << point[2];
        found += body.has_value() ? 1 : 0;
    }
}

TEST(BodyLocator, AnswersAsTheSolidsDo) {
    Dice dice;
    EXPECT_EQ(kit::BodyLocator(kit::Solids()).body_at({0, 0, 0}), std::nullopt);
    int found = 0;
    for (int round = 0; round < 300; ++round) {
        compare(random_solids(dice, dice.pick(std::vector{3, 9, 100000})), dice, 60, found);
        ASSERT_FALSE(HasFatalFailure()) << "model " << round;
    }
    EXPECT_GT(found, 1500);

    kit::Solids starters = kit::make_cuboid({0, 0, 0}, {6, 4, 2}, 1);
    starters.add(kit::make_ball({3e5, 0, 4}, 2, 3));
    compare(starters, dice, 2000, found);
    const auto map =
        kit::find_regions(kit::Network::read(KORVEL_DATA_DIR "/world-110m.curves")).take_map();
    compare(kit::raise(map, {.high = 1000, .unit = {100, -100}}).solids, dice, 100, found);
}

TEST(BodyLocator, AnswersSeveralThreads) {
    const kit::Solids ball = kit::make_ball({0, 0, 0}, 2, 3);
    const kit::BodyLocator locator(ball);
    std::vector<int> inside(4, 0);
    kit::for_each_in_parallel(4, 4, [&](int k) {
        for (int step = 0; step < 100; ++step) {
            inside[static_cast<std::size_t>(k)] +=
                locator.body_at({step * 0.019, 0, 0.01 * k}) == 0 ? 1 : 0;
        }
    });
    EXPECT_EQ(inside, std::vector(4, 100));
}

} // namespace
} // namespace korvel::test
