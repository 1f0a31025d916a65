#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "korvel/polyregion/ccploy2drg.h"
#include "korvel/polyregion/plydt.h"
#include "tests/support/dice.h"
#include "tests/support/recording_dc.h"
#include "tests/support/shape.h"
#include "tests/support/streams.h"

using namespace korvel::test;
using Calls = std::vector<std::string>;

namespace {

std::string file_of(CCPloy2DRg& set) {
    return written([&](FILE* stream) { set.writepolyrg(stream); });
}

void read(CCPloy2DRg& set, const std::string& text) {
    set.readpolyrg(stream_of(text).get());
}

TEST(RegionFile, IsWrittenAndReadBack) {
    const std::string text = "3\n0.500000 -2.000000\n16777217.000000 0.100000\n3.000000 4.000000\n"
                             "2\n3\n0 1 2 \n0\n\n"
                             "1\n2\n0 1 \n";
    CCPloy2DRg set;
    Shape{{{0.5, -2}, {16'777'217, 0.1}, {3, 4}}, {{0, 1, 2}, {}}, {{0, 1}}}.add_to(set);
    EXPECT_EQ(file_of(set), text);

    CCPloy2DRg back;
    read(back, text);
    EXPECT_EQ(back.pt_list[1].x, 16'777'216); // through single precision
    EXPECT_EQ(back.pt_list[1].y, static_cast<double>(0.1F));
    EXPECT_EQ(ints(back.ring_list[0].sides), (Ints{0, 1, 2}));
    back.pt_list[1].x = 16'777'217;
    EXPECT_EQ(file_of(back), text);

    CCPloy2DRg none;
    EXPECT_EQ(file_of(none), "0\n");
    read(back, "0\n1\n0\n");
    EXPECT_EQ(file_of(back), text); // nothing behind a 0 is read
}

TEST(RegionFile, MayBeShortOrGarbled) {
    const struct {
        const char* text;
        int points, rings, regions;
    } cases[] = {
        {"", 0, 0, 0},
        {"many", 0, 0, 0},
        {"-7 1 2", 0, 0, 0},
        {"2000000000 1 2 3 4", 65'536, 0, 0},
        {"70000 1 2 3 4", 65'536, 0, 0},
        {"65536 1 2", 65'536, 0, 0},
        {"2 1 2 3", 2, 0, 0},
        {"1 1 2 2000000000 1 0", 1, 65'536, 0},
        {"1 1 2 3 1 0", 1, 3, 0},
        {"1 1 2 1 2000000000 0 0", 1, 1, 0},
        {"1 1 2 1 -4 1 2000000000 0 0", 1, 1, 1},
        {"1 1 2 1 3 0 999 -5 1 2 -1 77", 1, 1, 1},
    };
    for (const auto& c : cases) {
        CCPloy2DRg set;
        read(set, c.text);
        EXPECT_EQ(set.pt_list.GetSize(), c.points) << c.text;
        EXPECT_EQ(set.ring_list.GetSize(), c.rings) << c.text;
        EXPECT_EQ(set.region_list.GetSize(), c.regions) << c.text;
        double origin[] = {0, 0};
        RecordingDC dc;
        EXPECT_EQ(set.search_pt_polyrg(origin), -1);
        set.Draw_Poly_Line(0, 0, 0, 0, 1, 1, 1, &dc);
        set.Draw_Regon(0, 0, 0, 0, 1, 1, 1, &dc);
    }
}

TEST(Sides, AreSharedAndKeepTheirFirstDirection) {
    CCPloy2DRg set;
    Shape{{{0, 1}, {2, 1}, {2, 5}, {-1, 5}, {7, 7}}, {{0, 1, 2}, {2, 0, 3}, {4}}, {}}.add_to(set);
    set.creat_top_rel();
    EXPECT_EQ(ints(set.ring_list[0].sides), (Ints{0, 1, 2}));
    EXPECT_EQ(ints(set.ring_list[1].sides), (Ints{2, 3, 4}));
    EXPECT_EQ(ints(set.ring_list[2].sides), Ints{5});
    EXPECT_EQ(ints(set.pt_list[0].side_refs), (Ints{0, 2, 3}));
    EXPECT_EQ(ints(set.pt_list[4].side_refs), Ints{5}); // from the point to itself
    EXPECT_EQ(set.side_list[2].p0, 2);
    // 0x − 2y + 2 = 0, scaled together with its constant
    EXPECT_EQ(set.side_list[0].b, -2 / std::sqrt(8));
    EXPECT_EQ(set.side_list[0].c, 2 / std::sqrt(8));
    EXPECT_EQ(set.side_list[5].a, 0.701);
    EXPECT_EQ(set.side_list[5].b, 0.701);
    EXPECT_EQ(set.side_list[5].c, 0);

    set.creat_top_rel();
    EXPECT_EQ(set.side_list.GetSize(), 7); // ring 0's first side once more
    EXPECT_EQ(set.side_list[6].p1, 1);
    EXPECT_EQ(ints(set.ring_list[0].sides), (Ints{0, 1, 2}));
    EXPECT_EQ(ints(set.pt_list[1].side_refs), (Ints{0, 1, 6}));

    CCPloy2DRg lone_point_first;
    Shape{{{1, 1}}, {{0}, {}}, {}}.add_to(lone_point_first);
    lone_point_first.creat_top_rel();
    EXPECT_EQ(lone_point_first.side_list.GetSize(), 1);
}

TEST(RegionFile, KeepsWhatIsNotRead) {
    CCPloy2DRg set;
    Shape{{{1, 2}, {3, 4}, {5, 6}}, {{2, 1, 0}}, {{0, 7}}}.add_to(set);
    read(set, "3 11 12 13"); // ends within the second point
    EXPECT_EQ(set.pt_list[0].y, 12);
    EXPECT_EQ(set.pt_list[1].x, 13);
    EXPECT_EQ(set.pt_list[1].y, 4);
    EXPECT_EQ(set.pt_list[2].x, 5);
    EXPECT_EQ(ints(set.ring_list[0].pts), (Ints{2, 1, 0}));
    EXPECT_EQ(ints(set.ring_list[0].sides), (Ints{0, 1, 2}));
    read(set, "3 1 1 2 2 3 3 2 4 1"); // ends within the first of two rings
    EXPECT_EQ(set.ring_list.GetSize(), 2);
    EXPECT_EQ(ints(set.ring_list[0].pts), (Ints{1, 1, 0, 0}));
    EXPECT_TRUE(set.ring_list[1].pts.IsEmpty());
    EXPECT_EQ(ints(set.region_list[0].rings), (Ints{0, 7}));
    read(set, "1 4 4 0 1 3 5"); // ends within a region
    EXPECT_EQ(set.pt_list.GetSize(), 1);
    EXPECT_EQ(set.ring_list.GetSize(), 2);
    EXPECT_EQ(ints(set.region_list[0].rings), (Ints{5, 7, 0}));
}

TEST(RegionFile, BuildsSidesWithoutRegions) {
    CCPloy2DRg set;
    read(set, "3\n0 0\n1 0\n0 1\n1\n3\n0 1 2\n0\n");
    EXPECT_EQ(set.region_list.GetSize(), 0);
    EXPECT_EQ(set.side_list.GetSize(), 3);
    EXPECT_EQ(ints(set.ring_list[0].sides), (Ints{0, 1, 2}));
    EXPECT_EQ(ints(set.pt_list[0].side_refs), (Ints{0, 2}));
}

TEST(Sides, AreConstantForASmallNormButNotForOneThatIsNoNumber) {
    CCPloy2DRg set;
    Shape{{{0, 0}, {1e-8, 0}, {2e-8, 0}, {std::nan(""), 0}}, {{0, 1, 0, 2, 3}}, {}}.add_to(set);
    set.creat_top_rel();
    EXPECT_EQ(set.side_list[0].a, 0.701); // the norm is 1e-8
    EXPECT_EQ(set.side_list[0].b, 0.701);
    EXPECT_EQ(set.side_list[0].c, 0);
    EXPECT_EQ(set.side_list[1].a, 0);
    EXPECT_EQ(set.side_list[1].b, -1);
    EXPECT_TRUE(std::isnan(set.side_list[2].a));
    EXPECT_TRUE(std::isnan(set.side_list[2].b));
    EXPECT_TRUE(std::isnan(set.side_list[2].c));
}

TEST(Drawing, DividesBeforeItMultiplies) {
    // 1 / 49 · 49 is below 1 and truncated to 0; 1 · 49 / 49 is 1.
    CCPloy2DRg set;
    Shape{{{1, 2}, {2, 1}}, {{0, 1}}, {{0}}}.add_to(set);
    set.creat_top_rel();
    RecordingDC dc;
    set.Draw_Poly_Line(0, 0, 0, 0, 49, 49, 49, &dc);
    EXPECT_EQ(dc.calls, (Calls{"pen 0 1 255-0-0", "move 0,1", "line 1,0", "pen back"}));
    dc.calls.clear();
    set.Draw_Poly(0, 0, 0, 0, 49, 49, 49, set.region_list[0], &dc);
    EXPECT_EQ(dc.calls[2], "polygons 0,1 1,0;");
    // The inverse multiplies first.
    set.translate_cood(0, 0, 0, 0, 49, 49, 49);
    EXPECT_EQ(set.pt_list[0].x, 1);
    EXPECT_EQ(set.pt_list[1].y, 1);
}

TEST(Drawing, TruncatesBeforeTheOffsetAndSaturates) {
    constexpr double beyond = 1e300;
    CCPloy2DRg set;
    Shape{{{0, 0}, {10, beyond}, {-beyond, std::nan("")}, {4, 5}},
          {{0, 1, 2}, {3}, {0, 9}},
          {{0, 1, 2}, {1}}}
        .add_to(set);
    set.region_list[0].red = 9;
    set.region_list[0].green = 8;
    set.region_list[0].blue = 7;
    RecordingDC dc;
    set.Draw_Poly_Line(100, 50, 1, 1, 2, 4, 3, &dc);
    EXPECT_EQ(dc.calls, Calls{});
    set.Draw_Regon(100, 50, 1, 1, 2, 4, 3, &dc);
    EXPECT_EQ(dc.calls,
              (Calls{"fill mode 1", "get background", "brush 9-8-7",
                     "polygons 99,50 113,2147483647 -2147483548,50; 104,53;", "brush back",
                     "set background 1-2-3", "get background", "brush 0-0-0", "polygons 104,53;",
                     "brush back", "set background 1-2-3"}));

    set.ring_list.RemoveAt(1, 2);
    set.creat_top_rel();
    dc.calls.clear();
    set.Draw_Poly_Line(100, 50, 1, 1, 2, 4, 3, &dc);
    EXPECT_EQ(dc.calls,
              (Calls{"pen 0 1 255-0-0", "move 99,50", "line 113,2147483647", "move 113,2147483647",
                     "line -2147483548,50", "move -2147483548,50", "line 99,50", "pen back"}));

    // The inverse mapping.
    set.pt_list[0].x = 113;
    set.pt_list[0].y = 53;
    set.translate_cood(100, 50, 1, 1, 2, 4, 3);
    EXPECT_EQ(set.pt_list[0].x, 13.0 * 2 / 3 + 1);
    EXPECT_EQ(set.pt_list[0].y, 5);
}

TEST(Location, UsesTheFirstRegionAndItsHoles) {
    CCPloy2DRg set;
    Shape{{{0, 0}, {9, 0}, {9, 9}, {0, 9}, {3, 3}, {6, 3}, {6, 6}, {3, 6}},
          {{0, 1, 2, 3}, {4, 5, 6, 7}, {3, 2, 1, 0}, {0, 2}},
          {{}, {3}, {0, 1}, {1}, {2}, {7}}}
        .add_to(set);
    const struct {
        const char* name;
        double at[2];
        int region;
    } cases[] = {
        {"between ring and hole", {1, 1}, 2},
        {"in the hole, which is a region itself", {4, 4}, 3},
        {"a corner", {9, 9}, -1},
        {"a corner of the hole", {3, 3}, 2},
        {"outside", {10, 4}, -1},
        {"a side, which adds half a turn to the left", {5, 0}, 2},
    };
    for (const auto& c : cases) {
        double at[] = {c.at[0], c.at[1]};
        EXPECT_EQ(set.search_pt_polyrg(at), c.region) << c.name;
    }
    // Seen from a ring that turns to the right, that half turn undoes the rest.
    double on_side[] = {5, 0};
    EXPECT_EQ(set.ptInPlyRegen(on_side, set.region_list[2]), 1);
    EXPECT_EQ(set.ptInPlyRegen(on_side, set.region_list[4]), 0);
}

int plain_answer(const CCPloy2DRg& set, Xy at) {
    double sum = 0;
    Xy before{set.pt_list[0].x - at.x, set.pt_list[0].y - at.y};
    for (int k = 1; k <= set.pt_list.GetSize(); ++k) {
        const VERT2D& pt = set.pt_list[k % set.pt_list.GetSize()];
        const Xy d{pt.x - at.x, pt.y - at.y};
        const double angle = std::acos((d.x * before.x + d.y * before.y) /
                                       (std::sqrt(d.x * d.x + d.y * d.y) *
                                        std::sqrt(before.x * before.x + before.y * before.y)));
        sum += d.y * before.x - d.x * before.y >= 0 ? angle : -angle;
        before = d;
    }
    return std::fabs(sum) > 1.0 ? 1 : 0;
}

TEST(Location, AnswersLikeThePlainSumOfAngles) {
    Dice dice(7);
    int inside = 0;
    constexpr int cases = 40'000;
    for (int i = 0; i < cases; ++i) {
        // Small grids put nearly every point in line with a side; some are stretched until angles
        // and products lose their digits.
        const int reach = 1 + i % 9;
        const double scale = dice.pick(std::vector{1.0, 1.0, 0.1, 1e-9, 1e150, 1e-150});
        const double shift = dice.pick(std::vector{0.0, 0.0, 1e6, 1e-7});
        const auto coordinate = [&] { return dice(-reach, reach) * scale + shift; };
        CCPloy2DRg set;
        RING ring;
        for (int k = dice(3, 11); k > 0; --k) {
            ring.pts.Add(set.pt_list.GetSize());
            const double x = coordinate();
            Shape{{{x, coordinate() * (i % 7 == 0 ? 1e-9 : 1)}}, {}, {}}.add_to(set);
        }
        double at[] = {coordinate(), coordinate()};
        const int answer = set.PtInRing(at, ring);
        ASSERT_EQ(answer, plain_answer(set, {at[0], at[1]})) << i;
        inside += answer;
    }
    EXPECT_GT(inside, cases / 20);
}

TEST(Prism, LiftsPointsAcrossAnAxis) {
    const struct {
        int axis;
        double low[3], high[3];
    } cases[] = {{1, {7, 10, -1}, {7, 10, 2}},
                 {2, {7, -1, 10}, {7, 2, 10}},
                 {3, {-1, 7, 10}, {2, 7, 10}},
                 {4, {0, 0, 0}, {0, 0, 0}}};
    PLYDT set;
    Shape{{{0, 0}}, {}, {}}.add_to(set);
    set.CoordinatesTrans(1, 0, 0, 0, 0, 1, 1, 0, 1);
    EXPECT_TRUE(set.prism_pts.IsEmpty());
    Shape{{{13, 50}}, {}, {}}.add_to(set);
    for (const auto& c : cases) {
        set.CoordinatesTrans(c.axis, 3, 10, 2, 0, 2, 4, -1, 2);
        ASSERT_EQ(set.prism_pts.GetSize(), 4);
        for (const auto& [pt, expected] : {std::pair{1, c.low}, std::pair{3, c.high}}) {
            EXPECT_EQ(set.prism_pts[pt].x, expected[0]) << c.axis;
            EXPECT_EQ(set.prism_pts[pt].y, expected[1]) << c.axis;
            EXPECT_EQ(set.prism_pts[pt].z, expected[2]) << c.axis;
        }
    }
    set.pt_list.RemoveAll();
    set.CoordinatesTrans(1, 0, 0, 0, 0, 1, 1, 0, 1);
    EXPECT_TRUE(set.prism_pts.IsEmpty());
}

TEST(Triangles, RunFromGreenToRed) {
    PLYDT set;
    RecordingDC dc;
    set.Draw_Trgls(&dc);
    EXPECT_EQ(dc.calls, Calls{});
    Shape{{{-1.9, 1.9}, {1e10, 0}, {0, -0.5}}, {}, {}}.add_to(set);
    PLYDT::TRG triangle;
    triangle.vb = 2;
    triangle.vc = 1;
    set.trg_list.Add(triangle);
    set.Draw_Trgls(&dc);
    EXPECT_EQ(dc.calls, (Calls{"fill mode 1", "brush 0-255-127", "polygon -1,1 0,0 2147483647,0",
                               "brush back"}));
    set.trg_list.SetSize(256);
    dc.calls.clear();
    set.Draw_Trgls(&dc);
    EXPECT_EQ(dc.calls[1 + 3 * 255], "brush 254-1-127");
    set.trg_list[255].va = 3; // no such point
    set.Draw_Trgls(&dc);
    EXPECT_EQ(dc.calls[dc.calls.size() - 3], "brush 253-2-127");
}

TEST(Copies, ContainTheDocumentedMembers) {
    CCPloy2DRg polygons;
    Shape{{{1, 2}, {3, 4}, {5, 7}}, {{0, 1, 2}}, {{0}}}.add_to(polygons);
    polygons.creat_top_rel();
    polygons.region_list[0].attr[5] = 6;
    polygons.side_list[1].list_a.Add(4);
    CCPloy2DRg copied(polygons);
    polygons.RemoveAll();
    EXPECT_EQ(ints(copied.ring_list[0].pts), (Ints{0, 1, 2}));
    EXPECT_EQ(ints(copied.side_list[1].list_a), Ints{4});
    EXPECT_EQ(copied.region_list[0].attr[5], 6);
    EXPECT_EQ(ints(copied.pt_list[2].side_refs), (Ints{1, 2}));

    PLYDT set;
    Shape{{{1, 2}, {3, 4}, {5, 7}}, {{0, 1, 2}}, {{0}}}.add_to(set);
    set.creat_top_rel();
    set.side_list[1].list_a.Add(4);
    set.region_list[0].spare = 8;
    set.region_list[0].tag1 = 9;
    set.CoordinatesTrans(1, 0, 0, 0, 0, 1, 1, 0, 1);
    set.trg_list.SetSize(2);
    PLYDT other;
    Shape{{{1, 1}, {2, 2}}, {}, {}}.add_to(other);
    other.CoordinatesTrans(1, 0, 0, 0, 0, 1, 1, 0, 1);
    other.Copy(set);
    EXPECT_EQ(other.prism_pts.GetSize(), 4); // its own
    EXPECT_TRUE(other.ring_list[0].pts.IsEmpty());
    EXPECT_EQ(ints(other.ring_list[0].sides), (Ints{0, 1, 2}));
    EXPECT_TRUE(other.side_list[1].list_a.IsEmpty());
    EXPECT_EQ(other.side_list[1].len, std::sqrt(13));
    EXPECT_EQ(other.region_list[0].spare, 0);
    EXPECT_EQ(other.region_list[0].tag1, 9);
    EXPECT_EQ(other.trg_list.GetSize(), 2);
    set.RemoveAll();
    EXPECT_EQ(set.prism_pts.GetSize(), 6);
}

} // namespace
