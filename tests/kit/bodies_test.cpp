#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>
#include <vector>

#include "kit/base/areas.h"
#include "kit/files/curve_file.h"
#include "kit/maps/cap.h"
#include "kit/maps/region_sets.h"
#include "kit/solids/join.h"
#include "kit/solids/raise.h"
#include "kit/solids/solids.h"
#include "kit/solids/surface.h"
#include "tests/support/model_state.h"
#include "tests/support/scratch.h"

namespace korvel::test {
namespace {

constexpr double height = 3000;

/// Discards the library's notices for the length of a scope.
class Notices {
public:
    Notices() : former_(set_message_box_handler([](const char*, unsigned) { return IDOK; })) {}
    ~Notices() { set_message_box_handler(former_); }
    Notices(const Notices&) = delete;
    Notices& operator=(const Notices&) = delete;

private:
    message_box_handler former_;
};

/// The states of the sample map.
class States : public Scratch {
protected:
    States() {
        kit::CurveNetwork curves =
            kit::read_curves(kit::TextFile(KORVEL_DATA_DIR "/us-states.curves"));
        CREGION builder;
        builder.SetTolerance(1);
        builder.SetPtsInfo(curves.pts, curves.counts);
        builder.GetAllRegion(set_);
        kit::orient_rings(set_);
    }

    const RING& outline(int region) const {
        return set_.ring_list[set_.region_list[region].rings[0]];
    }

    /// How long the line y = v runs within a region, from its sides alone. No corner lies on it.
    double length_within(int region, double v) const {
        std::vector<double> crossings;
        const CArray<int>& ring = outline(region).pts;
        for (int k = 0; k < ring.GetSize(); ++k) {
            const VERT2D& a = set_.pt_list[ring[k]];
            const VERT2D& b = set_.pt_list[ring[(k + 1) % ring.GetSize()]];
            if ((a.y > v) != (b.y > v)) {
                crossings.push_back(a.x + (v - a.y) / (b.y - a.y) * (b.x - a.x));
            }
        }
        std::sort(crossings.begin(), crossings.end());
        double length = 0;
        for (std::size_t i = 1; i < crossings.size(); i += 2) {
            length += crossings[i] - crossings[i - 1];
        }
        return length;
    }

    kit::Solids raised() const {
        CCPloy2DRg regions;
        kit::copy_regions(set_, regions);
        kit::Raised raised = kit::raise(kit::Map(regions), {.high = height});
        EXPECT_TRUE(raised.left_out.empty());
        return std::move(raised.solids);
    }

    PLYDT set_;
};

TEST_F(States, BecomeClosedBodiesWithTrueSections) {
    const kit::Solids solids = raised();
    ASSERT_EQ(solids.size(), set_.region_list.GetSize());
    for (const kit::Body body : solids) {
        std::map<std::pair<int, int>, int> faces_at;
        for (const kit::Face face : body.faces()) {
            const auto corners = face.vertices();
            for (std::size_t k = 0; k < 3; ++k) {
                ++faces_at[std::minmax<int>({corners[k], corners[(k + 1) % 3]})];
            }
        }
        EXPECT_TRUE(std::all_of(faces_at.begin(), faces_at.end(),
                                [](const auto& edge) { return edge.second == 2; }))
            << "body " << body.index();
        EXPECT_EQ(body.surface().euler_characteristic(), 2) << "body " << body.index();
        const double volume = height * kit::region_area(set_, set_.region_list[body.index()], true);
        EXPECT_NEAR(body.volume(), volume, 1e-9 * volume) << "body " << body.index();
    }
    for (const double v : {60000.5, 65843.25, 47000.1, 95000.7}) {
        const kit::Section cut = solids.cut(kit::Plane::at_y(v));
        EXPECT_EQ(cut.plane(), kit::Plane::at_y(v));
        EXPECT_TRUE(cut.loose_points().empty());
        double expected = 0;
        for (int region = 0; region < set_.region_list.GetSize(); ++region) {
            const double area = height * length_within(region, v);
            expected += area;
            const auto found =
                std::find_if(cut.bodies().begin(), cut.bodies().end(),
                             [&](const kit::SectionBody& body) { return body.body == region; });
            EXPECT_NEAR(found == cut.bodies().end() ? 0 : found->area, area, 1e-9 * area + 1e-6)
                << "region " << region << " at " << v;
        }
        EXPECT_NEAR(cut.area(), expected, 1e-9 * expected);
        EXPECT_GT(cut.bodies().size(), 0U);
        for (const kit::SectionPolygon polygon : cut) {
            EXPECT_EQ(cut.model().groups[polygon.index()].hue, solids[polygon.body()].colour().hue)
                << "polygon " << polygon.index();
        }
    }
}

TEST_F(States, ASectionThroughCornersIsMovedBesideThem) {
    const kit::Solids solids = raised();
    std::map<double, int> corners_at;
    for (const VERT2D& point : set_.pt_list) {
        ++corners_at[point.y];
    }
    const double v =
        std::max_element(corners_at.begin(), corners_at.end(), [](const auto& a, const auto& b) {
            return a.second < b.second;
        })->first;
    ASSERT_GT(corners_at[v], 10);
    const kit::Section through = solids.cut(kit::Plane::at_y(v));
    EXPECT_NE(through.plane().d, -v);
    EXPECT_NEAR(through.plane().d, -v, 1e-4);
    EXPECT_TRUE(through.loose_points().empty());
    double expected = 0;
    for (int region = 0; region < set_.region_list.GetSize(); ++region) {
        expected += height * length_within(region, -through.plane().d);
    }
    EXPECT_NEAR(through.area(), expected, 1e-9 * expected);
}

TEST_F(States, JoinedModelsEqualOneThatGrew) {
    const Notices notices;
    TMOD3D grown;
    TMOD3D joined;
    for (const int region : {3, 140, 146, 147, 148, 258}) {
        PLYDT cap;
        ASSERT_NE(kit::make_cap(set_, set_.region_list[region], kit::Fill::automatic, cap),
                  kit::Filled::not_at_all);
        cap.CoordinatesTrans(3, 100, -200, 0, 0, 7, -3, -1, 1.5);
        grown.create3dmode(cap);
        TMOD3D part;
        part.create3dmode(cap);
        kit::append_bodies(part, joined);
    }
    kit::derive(joined);
    EXPECT_EQ(joined.bodies.GetSize(), 6);
    EXPECT_PRED_FORMAT2(same_state, joined, grown);
}

struct Outline {
    const char* what;
    std::vector<std::pair<double, double>> points;
    std::vector<std::vector<int>> rings;
    double area;
    int euler;
};

std::vector<Outline> outlines() {
    const std::vector<std::pair<double, double>> square = {{0, 0}, {9, 0}, {9, 9}, {0, 9}};
    const auto with = [&](std::vector<std::pair<double, double>> more) {
        more.insert(more.begin(), square.begin(), square.end());
        return more;
    };
    const std::vector<int> around = {0, 1, 2, 3};
    return {
        {"a hole", with({{2, 2}, {4, 2}, {4, 4}}), {around, {4, 5, 6}}, 79, 0},
        {"two holes",
         with({{1, 1}, {2, 1}, {2, 2}, {5, 5}, {6, 5}, {6, 6}}),
         {around, {4, 5, 6}, {7, 8, 9}},
         80,
         -2},
        {"a hole at a corner", with({{4, 1}, {4, 4}}), {around, {0, 4, 5}}, 75, 2},
        {"a hole at a side", with({{4, 0}, {6, 4}, {2, 4}}), {{0, 4, 1, 2, 3}, {4, 5, 6}}, 73, 2},
        {"two holes at one point",
         with({{4, 4}, {7, 4}, {7, 6}, {1, 4}, {1, 2}}),
         {around, {4, 5, 6}, {4, 7, 8}},
         75,
         0},
        {"two holes at one position",
         with({{4, 4}, {7, 4}, {7, 6}, {4, 4}, {1, 4}, {1, 2}}),
         {around, {4, 5, 6}, {7, 8, 9}},
         75,
         0},
        {"a ring that touches itself",
         with({{5, 5}, {8, 7}, {2, 7}}),
         {{0, 1, 2, 3, 4, 6, 5, 4}},
         0,
         0},
        {"a hole that cuts a corner off",
         with({{0, 4}, {4, 4}, {4, 0}}),
         {{0, 6, 1, 2, 3, 4}, {4, 5, 6}},
         0,
         0},
        {"sides that lead nowhere",
         with({{5, 5}, {9, 0}, {12, 0}}),
         {{0, 4, 0, 1, 5, 6, 5, 2, 3, 3}},
         81,
         2},
    };
}

TEST(Caps, CloseBodiesOverRingsThatTouch) {
    for (const Outline& outline : outlines()) {
        for (const kit::Fill fill : {kit::Fill::automatic, kit::Fill::delaunay}) {
            PLYDT set;
            for (const auto& [x, y] : outline.points) {
                set.pt_list.SetSize(set.pt_list.GetSize() + 1);
                set.pt_list[set.pt_list.GetUpperBound()].x = x;
                set.pt_list[set.pt_list.GetUpperBound()].y = y;
            }
            set.region_list.SetSize(1);
            set.ring_list.SetSize(static_cast<int>(outline.rings.size()));
            for (int ring = 0; ring < set.ring_list.GetSize(); ++ring) {
                set.region_list[0].rings.Add(ring);
                for (const int point : outline.rings[ring]) {
                    set.ring_list[ring].pts.Add(point);
                }
            }
            kit::orient_rings(set);
            PLYDT cap;
            const kit::Filled filled = kit::make_cap(set, set.region_list[0], fill, cap);
            if (outline.area == 0) {
                EXPECT_EQ(filled, kit::Filled::not_at_all) << outline.what;
                continue;
            }
            ASSERT_NE(filled, kit::Filled::not_at_all) << outline.what;
            cap.CoordinatesTrans(1, 0, 0, 0, 0, 1, 1, 0, 2);
            const Notices notices;
            TMOD3D model;
            model.create3dmode(cap);
            const kit::Surface surface = kit::surfaces(model)[0];
            EXPECT_EQ(kit::state_text(surface), "closed") << outline.what;
            EXPECT_EQ(surface.euler_characteristic(), outline.euler) << outline.what;
            EXPECT_NEAR(model.bodies[0].volume, 2 * outline.area, 1e-9) << outline.what;
        }
    }
}

} // namespace
} // namespace korvel::test
