// The quick form of the triangulation against the exhaustive one, which writes traces.

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <numeric>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/polyregion/triangulation.h"
#include "tests/support/dice.h"

using namespace korvel::test;

namespace {

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
        const std::vector<Xy>& outline = outlines[dice(0, 3)];
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
        const Xy scale = scales[dice(0, 7)];
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

/// Removes or replaces entries of the sides of rings, as a host may do.
void edit_sides(PLYDT& set, unsigned seed) {
    Dice dice(seed);
    for (RING& ring : set.ring_list) {
        for (int edits = ring.sides.IsEmpty() ? 0 : dice(0, 2); edits > 0; --edits) {
            const int entry = dice(0, ring.sides.GetUpperBound());
            if (dice.one_in(2)) {
                ring.sides[entry] = dice(0, set.side_list.GetUpperBound());
            } else if (ring.sides.GetSize() > 1) {
                ring.sides.RemoveAt(entry);
            }
        }
    }
}

/// Triangulates in the exhaustive form and in the quick one, which are to find the same triangles
/// and radii.
class BothForms {
public:
    BothForms() {
        // Directories named like the trace files: the exhaustive form runs and writes nothing.
        std::filesystem::create_directory("trg.dat");
        std::filesystem::create_directory("wwwtrg.dat");
    }
    void compare(const Shape& shape, const std::string& name) {
        compare(shape, name, [&](PLYDT& set) {
            set.region_tranglate();
            // One of a host's own: the same as every triangle with both of its points.
            const int pt = shape.rings[0][1];
            set.trg_list.Add({0, 0, 0, shape.rings[0][0], pt, pt});
            set.poly_tranglate(set.region_list[0]);
        });
    }
    void compare_with_edited_sides(const Shape& shape, unsigned seed) {
        compare(shape, "seed " + std::to_string(seed), [&](PLYDT& set) {
            set.creat_top_rel();
            edit_sides(set, seed);
            for (PLYDT::PyToRg& region : set.region_list) {
                set.poly_tranglate(region);
            }
        });
    }

    int found = 0;
    int undefined_radii = 0;

private:
    template <class Triangulate>
    void compare(const Shape& shape, const std::string& name, Triangulate triangulate) {
        PLYDT traced;
        PLYDT quick;
        for (PLYDT* set : {&traced, &quick}) {
            PLYDT::set_trace_files(set == &traced);
            shape.add_to(*set);
            triangulate(*set);
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

TEST_F(Triangulation, IsTheSameWithEditedSides) {
    BothForms forms;
    RandomShapes shapes;
    for (unsigned seed = 0; seed < 1000 && !HasFailure(); ++seed) {
        forms.compare_with_edited_sides(shapes.next(), seed);
    }
    EXPECT_GT(forms.found, 1'000);
}

/// A closed curve of `corners` points, at the distance `radius(k)` from the centre.
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

std::vector<Xy> teeth() {
    std::vector<Xy> ring;
    for (double k = 0; k < 50; ++k) {
        ring.insert(ring.end(), {{900, 10 * k}, {0, 10 * k + 5}});
    }
    ring.insert(ring.end(), {{1000, 495}, {1000, -10}});
    return std::vector<Xy>(ring.rbegin(), ring.rend());
}

std::vector<Xy> comb() {
    std::vector<Xy> ring{{30, 7}, {0, 7}};
    for (double x = 0; x < 30; x += 3) {
        ring.insert(ring.end(), {{x, 5}, {x, 0}, {x + 1, 0}, {x + 1, 4}, {x + 2, 4}, {x + 2, 5}});
    }
    ring.insert(ring.end(), {{30, 5}, {30, 6}});
    return ring;
}

std::vector<Xy> slice() {
    std::vector<Xy> ring{{0, 0}};
    for (int k = 0; k < 80; ++k) {
        ring.push_back({1e4 * std::cos(k / 60.0), 1e4 * std::sin(k / 60.0)});
    }
    return ring;
}

struct LongRing {
    const char* name;
    std::vector<Xy> (*outline)(); ///< or none for a round shape
    int corners = 0;
    double radius = 0;
    double inner = 0; ///< radius of every other corner
    int noise = 1;
    bool has_holes = false;
};

Shape shape_of(const LongRing& ring, Dice& dice) {
    const auto noise = [&] { return static_cast<double>(dice(0, ring.noise - 1)); };
    Shape shape;
    add_round(shape, {0, 0}, ring.corners,
              [&](int k) { return (k % 2 == 0 ? ring.radius : ring.inner) + noise(); });
    if (ring.outline != nullptr) {
        shape.points = ring.outline();
        shape.rings[0].resize(shape.points.size());
        std::iota(shape.rings[0].begin(), shape.rings[0].end(), 0);
    }
    if (ring.has_holes) {
        for (const double x : {-0.25, 0.25}) {
            add_round(shape, {x * ring.radius, 0}, 20,
                      [&](int) { return ring.radius / 6 + noise(); });
        }
    }
    Ints& region = shape.regions.emplace_back(shape.rings.size());
    std::iota(region.begin(), region.end(), 0);
    return shape;
}

TEST_F(Triangulation, IsTheSameOnLongRings) {
    const LongRing rings[] = {
        {"smooth, all radii nearly equal", nullptr, 100, 1e6, 1e6},
        {"few distinct coordinates, full of ties", nullptr, 96, 20, 20, 3},
        {"noisy", nullptr, 130, 1e5, 1e5, 10'000},
        {"noisy, with holes", nullptr, 90, 1e5, 1e5, 6'000, true},
        {"spiky", nullptr, 120, 1e6, 5e5},
        {"spiky and small, with holes", nullptr, 100, 90, 60, 9, true},
        {"teeth with their tips in two columns", teeth},
        {"a comb with a point at every unit", comb},
        {"a slice of a disc", slice},
    };
    Dice dice;
    BothForms forms;
    for (const LongRing& ring : rings) {
        for (const double shift : {0.0, 1e7, 1e15}) {
            Shape shape = shape_of(ring, dice);
            if (shift > 0) { // and no longer on integers
                for (Xy& at : shape.points) {
                    at = {0.7 * at.x - 0.1 * at.y + shift / 10, 0.1 * at.x + 0.7 * at.y - shift};
                }
            }
            forms.compare(shape, ring.name);
        }
    }
    EXPECT_GT(forms.found, 1'500);
}

} // namespace
