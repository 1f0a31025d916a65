// Worked examples of the triangulation.

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/polyregion/triangulation.h"

using namespace korvel::test;

namespace {

TEST_F(Triangulation, ClosesEdgesAndThenTheFront) {
    const struct {
        const char* name;
        Shape shape;
        std::vector<Corners> expected;
        std::string traced; ///< what the trace holds somewhere
    } cases[] = {
        {"a star: its middle is left to the front",
         {{{-2, 0}, {0, -8}, {2, 0}, {8, 6}, {0, 4}, {-8, 6}}, {{0, 1, 2, 3, 4, 5}}, {{0}}},
         {{0, 1, 2}, {2, 3, 4}, {4, 5, 0}, {0, 2, 4}},
         "insidespt======== 0 2\nselpt 1\nselpt 3\nselpt 4\nselpt 5\n"},
        {"the smaller circle wins, not the first point",
         {{{0, 0}, {4, 0}, {9, 5}, {0, 3}}, {{0, 1, 2, 3}}, {{0}}},
         {{0, 1, 3}, {1, 2, 3}},
         "min r 0 1 3\n"},
        {"a notch: sides must not cross the boundary",
         {{{0, -9}, {8, -9}, {8, 6}, {4, 3}, {0, 6}}, {{0, 1, 2, 3, 4}}, {{0}}},
         {{0, 1, 3}, {1, 2, 3}, {3, 4, 0}},
         "not reguaur 0 1 4\ntexside1 1 4\nside = 0\nside = 1\n2 3 1 4\nc= -0.988235\n"
         "-0.800000 -0.600000 5.000000\n-0.470588 0.882353 17.000000\n"},
        {"a hole is walked backwards, and its points are not covered",
         {{{0, 0}, {10, 0}, {3, 10}, {3, 2}, {5, 3}, {4, 4}}, {{0, 1, 2}, {3, 4, 5}}, {{0, 1}}},
         {{0, 1, 4}, {1, 2, 5}, {2, 0, 3}, {4, 3, 0}, {5, 4, 1}, {3, 5, 2}},
         "4 3\nselpt 0\nselpt 1\nselpt 2\nselpt 5\n"},
    };
    for (const auto& c : cases) {
        PLYDT set;
        c.shape.add_to(set);
        set.region_tranglate();
        EXPECT_EQ(triangles(set), c.expected) << c.name;
        EXPECT_NE(lines_of("trg.dat").find(c.traced), std::string::npos) << c.name;
    }
}

TEST_F(Triangulation, AddsToTheTrianglesListedBefore) {
    PLYDT set;
    rectangle_and_triangle.add_to(set);
    set.region_tranglate();
    // A second run on one region. The first diagonal is listed, so the other one is accepted.
    set.poly_tranglate(set.region_list[1]);
    EXPECT_EQ(triangles(set),
              (std::vector<Corners>{{4, 5, 6}, {0, 1, 2}, {2, 3, 0}, {0, 1, 3}, {1, 2, 3}}));
    // A lone triangle is added again with every call, and its trace is empty.
    set.poly_tranglate(set.region_list[0]);
    EXPECT_EQ(triangles(set).back(), Corners(4, 5, 6));
    EXPECT_EQ(set.trg_list.GetSize(), 6);
    EXPECT_EQ(lines_of("trg.dat"), "");
    PLYDT::PyToRg no_rings;
    set.poly_tranglate(no_rings);
    set.region_tranglate();
    EXPECT_EQ(set.trg_list.GetSize(), 3);
}

/// Triangulates one region without and with trace files, as a host has edited it.
template <class Edit>
void expect_in_both_forms(const Shape& shape, Edit edit, const std::vector<Corners>& first,
                          const std::string& name) {
    for (const bool traces : {true, false}) {
        PLYDT::set_trace_files(traces);
        PLYDT set;
        shape.add_to(set);
        set.creat_top_rel();
        edit(set);
        set.poly_tranglate(set.region_list[0]);
        std::vector<Corners> found = triangles(set);
        found.resize(std::min(found.size(), first.size()));
        EXPECT_EQ(found, first) << name << (traces ? ", with traces" : ", without traces");
    }
}

TEST_F(Triangulation, TreatsTouchingAsNoCrossing) {
    // The corner 3 has the smallest circle (radius 2.5) for the edge 0-1; the side 1-3 runs from
    // (0, 0) to (0, 4). The side 4-5 touches it, or not.
    const struct {
        const char* name;
        Xy from, to;
        int third;
    } cases[] = {
        {"side 4-5 starts on side 1-3", {0, 2}, {2, 2}, 3},
        {"side 4-5 ends on side 1-3", {2, 2}, {0, 2}, 3},
        {"side 1-3 starts on side 4-5", {-2, 0}, {2, 0}, 3},
        {"side 1-3 ends on side 4-5", {-4, 4}, {2, 4}, 3},
        {"the sides cross: point 5 is next, with radius 2.72", {-4, 2}, {2, 2}, 5},
    };
    for (const auto& c : cases) {
        expect_in_both_forms(
            {{{-3, 4}, {0, 0}, {3, 2}, {0, 4}, c.from, c.to}, {{0, 1, 2, 3}, {4, 5}}, {{0, 1}}},
            [](PLYDT&) {}, {{0, 1, c.third}}, c.name);
    }
}

TEST_F(Triangulation, UsesSidesThatAHostHasEdited) {
    // The sides 1-4 and 4-0 would cross the side 2-3 at 5/3 and at 13/3 from its start.
    const Shape below_a_side{{{0, 0}, {4, 0}, {5, 1}, {-2, 1}, {2, 3}, {9, 9}, {-9, 9}},
                             {{0, 1, 2, 3}, {4, 5, 6}},
                             {{0, 1}}};
    for (const auto& [length, third] : {std::pair{7.0, 2}, {4.0, 2}, {2.0, 2}, {1.0, 4}}) {
        expect_in_both_forms(
            below_a_side, [edited = length](PLYDT& set) { set.side_list[2].len = edited; },
            {{0, 1, third}}, "length " + std::to_string(length));
    }

    // Only the side 1-2 is left. The base 0-1 of the first triangle may be crossed, so the edge 1-2
    // gets a second one.
    const Shape crossing{{{41, 382}, {-268, 679}, {-525, 453}, {248, 369}}, {{0, 1, 2, 3}}, {{0}}};
    const auto keep_one_side = [](PLYDT& set) { set_ints(set.ring_list[0].sides, {1}); };
    expect_in_both_forms(crossing, keep_one_side, {{0, 1, 2}, {1, 2, 3}, {3, 2, 0}}, "one side");
}

TEST_F(Triangulation, ListsThreeIndicesAsATriangleWithoutTheirPoints) {
    for (const bool traces : {true, false}) {
        PLYDT::set_trace_files(traces);
        PLYDT set;
        Shape{{}, {{7, -2, 7}}, {{0}}}.add_to(set);
        set.region_tranglate();
        EXPECT_EQ(triangles(set), (std::vector<Corners>{{7, -2, 7}})) << traces;
        set.poly_tranglate(set.region_list[0]);
        EXPECT_EQ(set.trg_list.GetSize(), 2) << traces;
    }
}

// Explicit instantiation may name private members.
using ThreePoints = bool (PLYDT::*)(double*, double*, double*);
template <ThreePoints member>
struct Opened {
    friend ThreePoints opened_coline() { return member; }
};
ThreePoints opened_coline();
template struct Opened<&PLYDT::coline>;

TEST(Coline, HoldsForMirroredSlopesToo) {
    const struct {
        double c[2];
        bool is_in_line;
    } cases[] = {{{6, 3}, true}, {{-2, -1}, true},  {{6, -3}, true}, {{-2, 1}, true},
                 {{0, 0}, true}, {{6, 3.5}, false}, {{3, 6}, false}};
    PLYDT set;
    double a[] = {0, 0};
    double b[] = {2, 1};
    for (const auto& c : cases) {
        double third[] = {c.c[0], c.c[1]};
        EXPECT_EQ((set.*opened_coline())(a, b, third), c.is_in_line) << c.c[0] << ' ' << c.c[1];
    }
}

TEST_F(Triangulation, IgnoresIndicesOutOfRange) {
    for (const bool traces : {true, false}) {
        PLYDT::set_trace_files(traces);
        PLYDT set;
        rectangle_and_triangle.add_to(set);
        for (const int ring : {7, -1, 0}) {
            set.region_list[0].rings.Add(ring);
        }
        set.region_tranglate();
        EXPECT_EQ(triangles(set), (std::vector<Corners>{{0, 1, 2}, {2, 3, 0}}));
        set.ring_list[0].sides[2] = 99;
        set.poly_tranglate(set.region_list[1]);
        set.ring_list[0].pts[1] = -3;
        set.region_tranglate();
        EXPECT_EQ(set.trg_list.GetSize(), 0);
    }
}

} // namespace
