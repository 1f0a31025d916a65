#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "korvel/polyregion/plydt.h"
#include "tests/support/dice.h"
#include "tests/support/lists.h"
#include "tests/support/scratch.h"
#include "tests/support/shape.h"

using korvel::test::contents;
using korvel::test::Dice;
using korvel::test::Ints;
using korvel::test::set_ints;
using korvel::test::Shape;
using korvel::test::Xy;

namespace {

using Corners = std::tuple<int, int, int>;

std::vector<Corners> triangles(const PLYDT& set) {
    std::vector<Corners> list;
    for (const PLYDT::TRG& t : set.trg_list) {
        list.emplace_back(t.va, t.vb, t.vc);
    }
    return list;
}

/// Trace files have fixed names in the current directory.
class Triangulation : public korvel::test::ScratchAsCurrent {
protected:
    Triangulation() { PLYDT::set_trace_files(true); }
    ~Triangulation() override { PLYDT::set_trace_files(true); }
};

/// A triangle and a rectangle with sides 4 and 3, whose candidates all have radius 2.5.
const Shape rectangle_and_triangle{{{0, 0}, {4, 0}, {4, 3}, {0, 3}, {6, 0}, {8, 0}, {7, 0.5}},
                                   {{0, 1, 2, 3}, {4, 5, 6}},
                                   {{1}, {0}}};

TEST_F(Triangulation, WritesItsSummary) {
    PLYDT set;
    rectangle_and_triangle.add_to(set);
    set.region_tranglate();
    EXPECT_EQ(contents("wwwtrg.dat"),
              "points=7\n0.000000 0.000000\n4.000000 0.000000\n4.000000 3.000000\n"
              "0.000000 3.000000\n6.000000 0.000000\n8.000000 0.000000\n7.000000 0.500000\n"
              "side=0 p=0 1\nside=1 p=1 2\nside=2 p=2 3\nside=3 p=3 0\n"
              "side=4 p=4 5\nside=5 p=5 6\nside=6 p=6 4\n"
              "ring = 0 pts = 4\n0 1 2 3 \nring = 1 pts = 3\n4 5 6 \n"
              "reg = 0 rings = 1 \n1 \nreg = 1 rings = 1 \n0 \n"
              "trgs = 3\n4 5 6\n0 1 2\n2 3 0\n");
    EXPECT_EQ(set.trg_list[0].radius, 0);
    EXPECT_EQ(set.trg_list[1].radius, 2.5);
}

TEST_F(Triangulation, TracesEveryTest) {
    // Sides that share a point are not compared; the two diagonals are, and meet in their middles.
    const std::string boundary = "side = 0\nside = 1\nside = 2\nside = 3\n";
    const std::string diagonal = "4.000000 3.000000\n0.000000 0.000000\n5.000000 2.500000\n";
    const std::string falling = "2 0 3 1\nc= 0.960000\n-0.800000 -0.600000 5.000000\n"
                                "0.800000 -0.600000 5.000000\n0.960000\n" +
                                diagonal +
                                "0.000000 3.000000\n4.000000 0.000000\n5.000000 2.500000\n";
    const std::string rising = "2 0 1 3\nc= -0.960000\n-0.800000 -0.600000 5.000000\n"
                               "-0.800000 0.600000 5.000000\n-0.960000\n" +
                               diagonal +
                               "4.000000 0.000000\n0.000000 3.000000\n5.000000 2.500000\n";
    const std::string trace =
        "side=0 p=0 1\nside=1 p=1 2\nside=2 p=2 3\nside=3 p=3 0\n"
        // Of two equal radii the first wins.
        "0 1\nselpt 2\nselpt 3\n"
        "begen 0 1 3\nbegen 0 1 2\n"
        "not reguaur 0 1 3\ntexside1 1 3\n" +
        boundary +
        "tinside 3 0\n"
        "not reguaur 0 1 2\ntexside1 1 2\ntinside 2 0\n" +
        boundary +
        "pru  0 1 3\npru  0 1 2\n"
        "cross side 0 1 2\ncross side 0 1 3\nmin r 0 1 2\ninside = 2 0 mus = 1\n"
        // Nothing survives: nothing more is written.
        "1 2\nselpt 0\nselpt 3\n"
        "begen 1 2 3\n"
        "not reguaur 1 2 3\ntexside1 2 3\nside = 0\ntinside 3 1\n" +
        boundary + falling +
        "test 2 inside\n"
        "2 3\nselpt 0\nselpt 1\n"
        "begen 2 3 1\nbegen 2 3 0\n"
        "not reguaur 2 3 1\ntexside1 3 1\n" +
        boundary + falling +
        "test 1 inside\n"
        "not reguaur 2 3 0\ntexside1 3 0\nside = 0\ntinside 0 2\n" +
        boundary +
        "pru  2 3 0\ncross side 2 3 0\nmin r 2 3 0\ninside = 2 0 mus = 0\n"
        "3 0\nselpt 1\nselpt 2\n"
        "begen 3 0 1\n"
        "not reguaur 3 0 1\ntexside1 0 1\nside = 0\ntinside 1 3\n" +
        boundary + rising + "test 2 inside\n";
    PLYDT set;
    rectangle_and_triangle.add_to(set);
    set.region_tranglate();
    EXPECT_EQ(contents("trg.dat"), trace);

    // A second go on one region: the first diagonal is listed, so the other one comes in.
    set.poly_tranglate(set.region_list[1]);
    EXPECT_EQ(triangles(set),
              (std::vector<Corners>{{4, 5, 6}, {0, 1, 2}, {2, 3, 0}, {0, 1, 3}, {1, 2, 3}}));
    // A lone triangle is added again with every call, and its trace is empty.
    set.poly_tranglate(set.region_list[0]);
    EXPECT_EQ(triangles(set).back(), Corners(4, 5, 6));
    EXPECT_EQ(set.trg_list.GetSize(), 6);
    EXPECT_EQ(contents("trg.dat"), "");
    PLYDT::PyToRg no_rings;
    set.poly_tranglate(no_rings);
    set.region_tranglate();
    EXPECT_EQ(set.trg_list.GetSize(), 3);
}

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
        EXPECT_NE(contents("trg.dat").find(c.traced), std::string::npos) << c.name;
    }
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

TEST_F(Triangulation, HoldsTouchingForNoCrossing) {
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

TEST_F(Triangulation, UsesTheSidesAsAHostHasEditedThem) {
    // The sides 1-4 and 4-0 would cross the side 2-3 at 5/3 and at 13/3 from its start.
    const Shape below_a_side{{{0, 0}, {4, 0}, {5, 1}, {-2, 1}, {2, 3}, {9, 9}, {-9, 9}},
                             {{0, 1, 2, 3}, {4, 5, 6}},
                             {{0, 1}}};
    for (const auto& [length, third] : {std::pair{7.0, 2}, {4.0, 2}, {2.0, 2}, {1.0, 4}}) {
        expect_in_both_forms(
            below_a_side, [&](PLYDT& set) { set.side_list[2].len = length; }, {{0, 1, third}},
            "length " + std::to_string(length));
    }

    // Only the side 1-2 is left. The base 0-1 of the first triangle may be crossed, so the edge 1-2
    // gets a second one.
    const Shape crossing{{{41, 382}, {-268, 679}, {-525, 453}, {248, 369}}, {{0, 1, 2, 3}}, {{0}}};
    const auto keep_one_side = [](PLYDT& set) { set_ints(set.ring_list[0].sides, {1}); };
    expect_in_both_forms(crossing, keep_one_side, {{0, 1, 2}, {1, 2, 3}, {3, 2, 0}}, "one side");
}

TEST_F(Triangulation, TakesThreeIndicesForATriangleWithoutTheirPoints) {
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

/// Random small regions, most of them full of ties.
class RandomShapes {
public:
    Shape next() {
        Shape shape;
        const int kind = dice(0, 6);
        if (kind <= 1) { // a star, with two holes
            add_star(shape, {0, 0}, 30, 60, dice(4, kind == 0 ? 20 : 12));
            if (kind == 1) {
                add_star(shape, {-4, 0}, 2, 9, dice(3, 5));
                add_star(shape, {12, 3}, 1, 5, dice(3, 5));
            }
        } else if (kind <= 3) {
            add_outline(shape);
            if (kind == 3) {
                add_ring(shape, {{1, 1}, {2, 1}, {2, 2}, {1, 2}});
            }
        } else { // any points in any order: crossings, coincident and repeated points
            std::vector<Xy> ring;
            const int reach = dice(0, 1) == 0 ? 4 : 999;
            for (int k = dice(3, 12); k > 0; --k) {
                ring.push_back({double(dice(0, reach)), double(dice(0, reach))});
            }
            add_ring(shape, ring);
            if (kind == 6) {
                shape.rings[0].push_back(shape.rings[0][1]);
                add_ring(shape, {{1, 1}, {3, 1}, {2, 2}});
            }
        }
        Ints& region = shape.regions.emplace_back();
        for (Ints& ring : shape.rings) {
            region.push_back(static_cast<int>(region.size()));
            if (dice(0, 5) == 0) {
                ring = Ints(ring.rbegin(), ring.rend());
            }
            if (dice(0, 5) == 0) { // closed by its first point, which it lists already
                ring.push_back(ring.front());
            }
        }
        if (dice(0, 2) == 0) { // meets the triangles of the first region
            shape.regions.push_back({region.back()});
        }
        distort(shape.points);
        return shape;
    }

private:
    static void add_ring(Shape& shape, const std::vector<Xy>& ring) {
        Ints& list = shape.rings.emplace_back();
        for (const Xy& at : ring) {
            list.push_back(static_cast<int>(shape.points.size()));
            shape.points.push_back(at);
        }
    }
    void add_star(Shape& shape, Xy centre, int shortest, int longest, int corners) {
        std::vector<Xy> ring;
        for (int k = 0; k < corners; ++k) {
            const double angle = 6.283 * k / corners;
            const double r = dice(shortest, longest);
            ring.push_back({std::round(centre.x + r * std::cos(angle)),
                            std::round(centre.y + r * std::sin(angle))});
        }
        add_ring(shape, ring);
    }
    /// A box, a T, a U or a plus, with points at every unit of some of its sides.
    void add_outline(Shape& shape) {
        static const std::vector<std::vector<Xy>> outlines{
            {{0, 0}, {4, 0}, {4, 4}, {0, 4}},
            {{0, 0}, {5, 0}, {5, 3}, {6, 3}, {6, 4}, {-1, 4}, {-1, 3}, {0, 3}},
            {{0, 0}, {9, 0}, {9, 6}, {6, 6}, {6, 3}, {3, 3}, {3, 6}, {0, 6}},
            {{0, 0},
             {3, 0},
             {3, -3},
             {6, -3},
             {6, 0},
             {9, 0},
             {9, 3},
             {6, 3},
             {6, 6},
             {3, 6},
             {3, 3},
             {0, 3}}};
        const std::vector<Xy>& outline = outlines[static_cast<std::size_t>(dice(0, 3))];
        std::vector<Xy> ring;
        for (std::size_t k = 0; k < outline.size(); ++k) {
            const Xy from = outline[k];
            const Xy to = outline[(k + 1) % outline.size()];
            const double length = std::abs(to.x - from.x) + std::abs(to.y - from.y);
            const double steps = dice(0, 2) == 0 ? length : 1;
            for (double step = 0; step < steps; ++step) {
                ring.push_back({from.x + (to.x - from.x) * step / steps,
                                from.y + (to.y - from.y) * step / steps});
            }
        }
        add_ring(shape, ring);
    }
    /// Jitters, turns, scales and shifts.
    void distort(std::vector<Xy>& points) {
        static const std::vector<Xy> scales{{1, 1},     {1, 1},       {0.1, 0.1}, {1e-7, 1e-7},
                                            {1e9, 1e9}, {1e70, 1e70}, {1, 1e-6},  {1000, 0.3}};
        const Xy scale = scales[static_cast<std::size_t>(dice(0, 7))];
        const double shift = dice(0, 4) == 0 ? 1e6 : 0;
        const double turn = dice(0, 2) == 0 ? 0.3 : 0;
        const double jitter = dice(0, 4) == 0 ? 1e-9 : 0;
        for (Xy& at : points) {
            const double x = at.x + dice(-9, 9) * jitter;
            const double y = at.y + dice(-9, 9) * jitter;
            at = {(x * std::cos(turn) - y * std::sin(turn)) * scale.x + shift,
                  (x * std::sin(turn) + y * std::cos(turn)) * scale.y + shift};
        }
    }

    Dice dice;
};

/// Triangulates a shape in the exhaustive form and in the quick one, which are to give the same
/// triangles and radii.
class BothForms {
public:
    BothForms() {
        // Directories named like the trace files: the exhaustive form runs and writes nothing.
        std::filesystem::create_directory("trg.dat");
        std::filesystem::create_directory("wwwtrg.dat");
    }
    void compare(const Shape& shape, const std::string& name) {
        PLYDT traced;
        PLYDT quick;
        for (PLYDT* set : {&traced, &quick}) {
            PLYDT::set_trace_files(set == &traced);
            shape.add_to(*set);
            set->region_tranglate();
            // One of a host's own: the same as every triangle with both of its points.
            const int pt = shape.rings[0][1];
            set->trg_list.Add({0, 0, 0, shape.rings[0][0], pt, pt});
            set->poly_tranglate(set->region_list[0]);
        }
        ASSERT_EQ(triangles(quick), triangles(traced)) << name;
        for (int t = 0; t < traced.trg_list.GetSize(); ++t) {
            const double radius = traced.trg_list[t].radius;
            if (std::isnan(radius)) {
                ++undefined_radii;
                EXPECT_TRUE(std::isnan(quick.trg_list[t].radius)) << name;
            } else {
                EXPECT_EQ(quick.trg_list[t].radius, radius) << name;
            }
        }
        found += traced.trg_list.GetSize();
    }

    int found = 0;
    int undefined_radii = 0;
};

TEST_F(Triangulation, IsTheSameWithoutTraces) {
    BothForms forms;
    RandomShapes shapes;
    for (int i = 0; i < 3000 && !HasFailure(); ++i) {
        forms.compare(shapes.next(), std::to_string(i));
    }
    // The third point is so near the first that a radius comes out as −∞.
    forms.compare({{{0, 0}, {0.3, 0.5}, {-8e-17, 1e-17}, {0.7, 0.7}}, {{0, 1, 2, 3}}, {{0}}}, "−∞");
    EXPECT_GT(forms.found, 30'000);
    EXPECT_GT(forms.undefined_radii, 100);
}

/// A closed curve of `corners` points at the distances that `radius(k)` tells.
template <class Radius>
void add_round(Shape& shape, Xy centre, int corners, Radius radius) {
    Ints& ring = shape.rings.emplace_back();
    for (int k = 0; k < corners; ++k) {
        const double angle = 6.283185307179586 * k / corners;
        ring.push_back(static_cast<int>(shape.points.size()));
        shape.points.push_back({std::round(centre.x + radius(k) * std::cos(angle)),
                                std::round(centre.y + radius(k) * std::sin(angle))});
    }
}

TEST_F(Triangulation, IsTheSameOnLongRings) {
    Dice dice;
    const auto noise = [&](int size) { return static_cast<double>(dice(0, size - 1)); };
    const struct {
        const char* name;
        std::vector<Xy> (*outline)(); ///< or none for a round shape
        int corners;
        double radius;
        double inner; ///< radius of every other corner
        int noise;
        bool has_holes;
    } cases[] = {
        {"smooth, all radii nearly equal", nullptr, 100, 1e6, 1e6, 1, false},
        {"few distinct coordinates, full of ties", nullptr, 96, 20, 20, 3, false},
        {"noisy", nullptr, 130, 1e5, 1e5, 10'000, false},
        {"noisy, with holes", nullptr, 90, 1e5, 1e5, 6'000, true},
        {"spiky", nullptr, 120, 1e6, 5e5, 1, false},
        {"spiky and small, with holes", nullptr, 100, 90, 60, 9, true},
        {"teeth whose tips stand in two columns",
         [] {
             std::vector<Xy> ring;
             for (double k = 0; k < 50; ++k) {
                 ring.insert(ring.end(), {{900, 10 * k}, {0, 10 * k + 5}});
             }
             ring.insert(ring.end(), {{1000, 495}, {1000, -10}});
             return std::vector<Xy>(ring.rbegin(), ring.rend());
         },
         0, 0, 0, 0, false},
        {"a comb with a point at every unit",
         [] {
             std::vector<Xy> ring{{30, 7}, {0, 7}};
             for (double x = 0; x < 30; x += 3) {
                 ring.insert(ring.end(), {{x, 5}, {x, 0}, {x + 1, 0}, {x + 1, 4}, {x + 2, 4}});
                 ring.insert(ring.end(), {{x + 2, 5}});
             }
             ring.insert(ring.end(), {{30, 5}, {30, 6}});
             return ring;
         },
         0, 0, 0, 0, false},
        {"a slice of a disc",
         [] {
             std::vector<Xy> ring{{0, 0}};
             for (int k = 0; k < 80; ++k) {
                 ring.push_back({1e4 * std::cos(k / 60.0), 1e4 * std::sin(k / 60.0)});
             }
             return ring;
         },
         0, 0, 0, 0, false},
    };
    BothForms forms;
    for (const auto& c : cases) {
        for (const double shift : {0.0, 1e7, 1e15}) {
            Shape shape;
            add_round(shape, {0, 0}, c.corners, [&](int k) {
                return (k % 2 == 0 ? c.radius : c.inner) + noise(std::max(c.noise, 1));
            });
            if (c.outline != nullptr) {
                shape.points = c.outline();
                for (std::size_t k = 0; k < shape.points.size(); ++k) {
                    shape.rings[0].push_back(static_cast<int>(k));
                }
            }
            if (c.has_holes) {
                for (const double x : {-0.25, 0.25}) {
                    add_round(shape, {x * c.radius, 0}, 20,
                              [&](int) { return c.radius / 6 + noise(c.noise); });
                }
            }
            Ints& region = shape.regions.emplace_back();
            for (std::size_t ring = 0; ring < shape.rings.size(); ++ring) {
                region.push_back(static_cast<int>(ring));
            }
            if (shift > 0) { // and no longer on integers
                for (Xy& at : shape.points) {
                    at = {0.7 * at.x - 0.1 * at.y + shift / 10, 0.1 * at.x + 0.7 * at.y - shift};
                }
            }
            forms.compare(shape, c.name);
        }
    }
    EXPECT_GT(forms.found, 1'500);
}

TEST_F(Triangulation, MakesNoFileWithTracesOff) {
    std::ofstream("trg.dat") << "kept";
    PLYDT::set_trace_files(false);
    PLYDT set;
    rectangle_and_triangle.add_to(set);
    set.region_tranglate();
    EXPECT_EQ(set.trg_list.GetSize(), 3);
    EXPECT_EQ(contents("trg.dat"), "kept");
    EXPECT_FALSE(std::filesystem::exists("wwwtrg.dat"));
}

TEST_F(Triangulation, TellsOfALostTrace) {
    PLYDT set;
    rectangle_and_triangle.add_to(set);
    const auto lost = [&](bool traces) {
        PLYDT::set_trace_files(traces);
        set.region_tranglate();
        return PLYDT::has_lost_trace();
    };
    EXPECT_FALSE(lost(true));
    for (const char* name : {"trg.dat", "wwwtrg.dat"}) {
        for (const char* full : {"/dev/full", "/no/where"}) {
            std::filesystem::remove(name);
            std::filesystem::create_symlink(full, name);
            EXPECT_TRUE(lost(true)) << name << ' ' << full;
            EXPECT_FALSE(lost(false)) << name << ' ' << full;
        }
        std::filesystem::remove(name);
    }
    EXPECT_FALSE(lost(true));
}

TEST_F(Triangulation, LeavesOutWhatPointsNowhere) {
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
