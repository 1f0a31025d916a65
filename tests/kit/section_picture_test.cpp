// Pictures of sections: the axes of a plane, true lengths, parts, and the places of the numbers.

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <sstream>
#include <string>

#include "kit/kit.h"
#include "kit/pictures/label_place.h"
#include "tests/support/recording_dc.h"

namespace korvel::test {
namespace {

using PaintedRing = std::vector<kit::Point2>;

TEST(PlaneAxes, KeepTheModelsAxesOrLieInThePlane) {
    struct Row {
        kit::Plane plane;
        const char* u;
        const char* v;
    };
    const Row table[] = {
        {kit::Plane::at_x(3), "y", "z"},
        {kit::Plane::at_y(-3), "x", "z"},
        {{0, 0, -2, 5}, "x", "y"},
        {{3, 4, 0, 1}, "along 0.8,-0.6,0", "z"},
        {{-8, 6, 0, 1}, "along 0.6,0.8,0", "z"},
        {{0, 1, 1, 0}, "x", "along 0,-0.707,0.707"},
        {{1, 0, 2, 0}, "along 0.894,0,-0.447", "y"},
        {{-1, 2, -7, 4}, "along 0.99,0,-0.141", "along 0.038,0.962,0.269"},
    };
    for (const auto& [plane, u, v] : table) {
        const kit::PlaneAxes axes(plane);
        EXPECT_EQ(kit::axis_name(axes.u), u);
        EXPECT_EQ(kit::axis_name(axes.v), v);
        const auto dot = [](const kit::Point3& a, const kit::Point3& b) {
            return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
        };
        const kit::Point3 normal = {plane.a, plane.b, plane.c};
        for (const double product : {dot(axes.u, axes.v), dot(axes.u, normal), dot(axes.v, normal),
                                     dot(axes.u, axes.u) - 1, dot(axes.v, axes.v) - 1}) {
            EXPECT_NEAR(product, 0, 1e-14) << u;
        }
    }
    EXPECT_EQ(kit::PlaneAxes(kit::Plane::at_x(3)).seen({3, 0.1, 1e9 + 0.1}),
              (kit::Point2{0.1, 1e9 + 0.1}));
}

/// The corners of the polygons that were painted, in pixels.
std::vector<PaintedRing> painted(const RecordingDC& dc, double units) {
    std::vector<PaintedRing> rings;
    for (const std::string& call : dc.calls) {
        if (call.rfind("polygons ", 0) == 0) {
            std::istringstream words(call.substr(9));
            char mark = 0;
            rings.emplace_back();
            for (kit::Point2 at; words >> at[0] >> mark >> at[1];) {
                rings.back().push_back({at[0] / units, at[1] / units});
                if (words.peek() == ';') {
                    words.get(mark);
                    rings.emplace_back();
                }
            }
            rings.pop_back();
        }
    }
    return rings;
}

TEST(SectionPicture, ABallIsACircleHoweverItIsCut) {
    const kit::Point3 centre = {500, -300, 70};
    const kit::Solids ball = kit::make_ball(centre, 10, 6);
    for (const kit::Point3& normal :
         {kit::Point3{3, 4, 0}, {1, 1, 1}, {-1, 5, 2}, {0.3, -0.2, 1}, {0, 0, 1}}) {
        const kit::Section cut = ball.cut(kit::Plane::through(centre, normal).moved(6));
        EXPECT_NEAR(cut.area(), 64 * std::numbers::pi, 0.2);
        const kit::Rectangle bounds = cut.bounds();
        EXPECT_NEAR(bounds.right - bounds.left, 16, 0.02);
        EXPECT_NEAR(bounds.bottom - bounds.top, 16, 0.02);
        const kit::Point2 middle = cut.axes().seen(centre);
        EXPECT_NEAR(middle[0], (bounds.left + bounds.right) / 2, 0.01);
        EXPECT_NEAR(middle[1], (bounds.top + bounds.bottom) / 2, 0.01);

        RecordingDC dc;
        constexpr int units = 16;
        kit::draw(cut, dc, {.size = {400, 300}, .units_per_pixel = units});
        const std::vector<PaintedRing> rings = painted(dc, units);
        ASSERT_EQ(rings.size(), 1U);
        kit::Rectangle box;
        for (const auto& [x, y] : rings[0]) {
            box.take_in(x, y);
        }
        const double radius = (box.bottom - box.top) / 2;
        EXPECT_GT(radius, 100);
        for (const auto& [x, y] : rings[0]) {
            EXPECT_NEAR(std::hypot(x - (box.left + box.right) / 2, y - (box.top + box.bottom) / 2),
                        radius, 0.25);
        }
    }
}

TEST(SectionPicture, APartEndsAtTheFrame) {
    const kit::Section cut = kit::make_cuboid({0, 0, 0}, {6, 4, 2}).cut(kit::Plane::at_y(0.5));
    kit::Rectangle part;
    part.take_in(2, 0);
    part.take_in(5, 2); // the cut ends at x = 3 and z = 1
    RecordingDC dc;
    kit::draw(cut, dc, {.size = {150, 100}, .part = part});
    kit::Rectangle box;
    for (const PaintedRing& ring : painted(dc, 1)) {
        for (const auto& [x, y] : ring) {
            box.take_in(x, y);
        }
    }
    EXPECT_GE(box.left, 2);
    EXPECT_NEAR(box.right, 55, 3);
    EXPECT_NEAR(box.top, 50, 3);
    EXPECT_LE(box.bottom, 98);
    EXPECT_GT(box.bottom, 90);
}

/// Remembers texts with their places.
struct RecordedLabels final : kit::LabelWriter {
    void write_text(const std::string& text, double x, double y, double /*size*/,
                    kit::Anchor /*anchor*/) override {
        places[text] = {x, y};
    }
    double text_width(const std::string& text, double size) override {
        return static_cast<double>(text.size()) * size / 2;
    }
    std::map<std::string, kit::Point2> places;
};

TEST(SectionPicture, AScaleFillsThePlotAndNamesAndABarAreWritten) {
    const kit::Section cut = kit::make_cuboid({0, 0, 0}, {6, 4, 2}).cut(kit::Plane::at_y(0.5));
    RecordingDC dc;
    RecordedLabels labels;
    const kit::SectionPictureOptions options = {
        .size = {600, 400},
        .scale = kit::SectionScale{.middle = {1, 0}, .u = 0.02, .v = 0.01},
        .names = {"Tower"},
        .scale_bar = true,
        .labels = &labels};
    kit::draw(cut, dc, options);
    const kit::SectionPlot plot = kit::plot_of(cut, options);
    EXPECT_NEAR(plot.scale().u, 0.02, 1e-15);
    EXPECT_NEAR(plot.scale().v, 0.01, 1e-15);
    EXPECT_GT((plot.pixels.right - plot.pixels.left) * (plot.pixels.bottom - plot.pixels.top),
              0.7 * 600 * 400);
    kit::Rectangle box;
    const std::vector<PaintedRing> rings = painted(dc, 1);
    ASSERT_FALSE(rings.empty());
    for (const auto& [x, y] : rings[0]) {
        box.take_in(x, y);
    }
    EXPECT_NEAR(box.left, plot.to_pixel({-3, 1})[0], 1);
    EXPECT_NEAR(box.right, plot.to_pixel({3, 1})[0], 1);
    EXPECT_NEAR(box.top, plot.to_pixel({0, 1})[1], 1);
    EXPECT_NEAR(box.right - box.left, 300, 2);
    EXPECT_NEAR(box.bottom - box.top, 200, 2);
    const kit::Point2 there = plot.from_pixel(plot.to_pixel({0.25, -0.5}));
    EXPECT_NEAR(there[0], 0.25, 1e-12);
    EXPECT_NEAR(there[1], -0.5, 1e-12);
    EXPECT_EQ(labels.places.count("Tower"), 1U);
    EXPECT_EQ(labels.places.count("z × 2"), 1U);
    EXPECT_EQ(labels.places.count("2"), 1U); // the bar
}

/// Cuboids beside each other along x, 2 high, as wide as their numbers ask for; the first ones are
/// named.
kit::Solids row_of_cuboids(int count) {
    kit::Solids row;
    for (int i = 0; i < count; ++i) {
        row.add(kit::make_cuboid({20.0 * i, 0, 0}, {1.0 + (i * 7) % 16, 4, 2}));
    }
    return row;
}

TEST(SectionPicture, ALegendIsBesideThePlot) {
    const kit::Section cut = row_of_cuboids(3).cut(kit::Plane::at_y(0.5));
    RecordingDC dc;
    RecordedLabels labels;
    kit::SectionPictureOptions options = {
        .size = {800, 400},
        .names = {"Low", "", "A name that is far too wide to be listed in such a picture, or any"},
        .labels = &labels};
    const double end = kit::plot_of(cut, options).pixels.right;
    options.legend = true;
    kit::draw(cut, dc, options);
    const kit::Rectangle plot = kit::plot_of(cut, options).pixels;
    constexpr double font = 9; // the least
    const double left = plot.right + 2 * font;
    const double right = labels.places["area"][0];
    EXPECT_LT(plot.right, end - 100);
    EXPECT_NEAR(right, 800 - 1.8 * font, 1); // the wide name takes all its room, 0.3 of 800
    EXPECT_NEAR(right - left, 0.3 * 800, font);
    struct Row {
        const char* text;
        kit::Point2 place;
    };
    const double top = plot.top + 0.75 * font;
    const Row table[] = {{"body", {left + 2.2 * font, top}},
                         {"2", {right, top + 1.5 * font}}, // the areas
                         {"16", {right, top + 3 * font}},
                         {"30", {right, top + 4.5 * font}}};
    for (const auto& [text, place] : table) {
        ASSERT_EQ(labels.places.count(text), 1U) << text;
        EXPECT_NEAR(labels.places[text][0], place[0], 1e-9) << text;
        EXPECT_NEAR(labels.places[text][1], place[1], 1e-9) << text;
    }
    const auto is_cut_off = [](const auto& label) {
        return label.first.starts_with("A name that is") && label.first.ends_with("\u2026");
    };
    EXPECT_EQ(std::ranges::count_if(labels.places, is_cut_off), 1);
    // Three boxes, of the same colours as the bodies.
    std::vector<std::string> boxes;
    for (std::size_t i = 1; i < dc.calls.size(); ++i) {
        if (dc.calls[i].rfind("polygon ", 0) == 0) {
            boxes.push_back(dc.calls[i - 1]);
            const kit::Colour colour = cut[static_cast<int>(boxes.size()) - 1].colour();
            EXPECT_EQ(boxes.back(), "brush " + std::to_string(+colour.red) + "-" +
                                        std::to_string(+colour.green) + "-" +
                                        std::to_string(+colour.blue));
            EXPECT_EQ(dc.calls[i].find("polygon " + std::to_string(int(left)) + ","), 0U)
                << dc.calls[i];
        }
    }
    EXPECT_EQ(boxes.size(), 3U);
}

TEST(SectionPicture, ALegendListsTheLargestBodiesThatFit) {
    const kit::Section cut = row_of_cuboids(40).cut(kit::Plane::at_y(0.5));
    RecordingDC dc;
    RecordedLabels labels;
    const kit::SectionPictureOptions options = {
        .size = {500, 300}, .legend = true, .labels = &labels};
    kit::draw(cut, dc, options);
    const auto boxes = std::ranges::count_if(
        dc.calls, [](const std::string& call) { return call.rfind("polygon ", 0) == 0; });
    EXPECT_EQ(boxes, 14); // of 16 lines of 13.5 pixels between 37.8 from above and from below
    EXPECT_EQ(labels.places.count("\u2026 and 26 more"), 1U);
    EXPECT_LE(labels.places["\u2026 and 26 more"][1], 300 - 37.8);
    EXPECT_EQ(labels.places.count("32"), 1U); // the largest area
    const double right = labels.places["area"][0];
    for (const auto& [text, place] : labels.places) {
        if (place[0] == right && text != "area") {
            EXPECT_GE(std::stoi(text), 20) << text; // of 2 to 32
        }
    }
    EXPECT_LT(kit::plot_of(cut, options).pixels.right, labels.places["\u2026 and 26 more"][0]);
}

/// Whether a rectangle around a place is inside of rings, by trying many of its points.
bool fits(const kit::LabelPlace& place, double width, double height,
          const std::vector<PaintedRing>& rings) {
    constexpr int steps = 20;
    for (int i = 0; i <= steps * steps; ++i) {
        const kit::Point2 at = {place.middle[0] + width * (i % steps / double(steps) - 0.5),
                                place.middle[1] + height * (i / steps / double(steps) - 0.5)};
        bool is_inside = false;
        for (const PaintedRing& ring : rings) {
            for (std::size_t k = 0; k < ring.size(); ++k) {
                const auto& [ax, ay] = ring[k];
                const auto& [bx, by] = ring[(k + 1) % ring.size()];
                if ((ay > at[1]) != (by > at[1]) &&
                    ax + (at[1] - ay) / (by - ay) * (bx - ax) < at[0]) {
                    is_inside = !is_inside;
                }
            }
        }
        if (!is_inside) {
            return false;
        }
    }
    return true;
}

TEST(LabelPlace, IsWithinTheBody) {
    const PaintedRing square = {{0, 0}, {100, 0}, {100, 100}, {0, 100}};
    struct Row {
        const char* what;
        std::vector<PaintedRing> rings;
        double most; ///< times a label of 20 x 10 fits
    };
    const Row table[] = {
        {"a square", {square}, 5},
        {"an L", {{{0, 0}, {100, 0}, {100, 12}, {24, 12}, {24, 100}, {0, 100}}}, 1.2},
        {"a U",
         {{{0, 0}, {100, 0}, {100, 90}, {70, 90}, {70, 15}, {15, 15}, {15, 90}, {0, 90}}},
         1.5},
        {"a frame", {square, {{8, 8}, {92, 8}, {92, 80}, {8, 80}}}, 2},
        {"a strip aslant", {{{0, 0}, {30, 0}, {330, 300}, {300, 300}}}, 1},
        {"two bodies' worth of polygons",
         {{{0, 0}, {9, 0}, {9, 90}, {0, 90}}, {{50, 50}, {80, 50}, {80, 65}, {50, 65}}},
         1.5},
        {"a narrow one", {{{0, 0}, {400, 0}, {400, 5}, {0, 5}}}, 0.5},
        {"a triangle", {{{0, 0}, {20, 0}, {0, 10}}}, 0.5},
    };
    for (const Row& row : table) {
        const auto place = kit::find_label_place(row.rings, 20, 10, 0.3);
        ASSERT_TRUE(place) << row.what;
        EXPECT_LE(place->room, row.most + 1e-9) << row.what;
        EXPECT_GE(place->room, std::min(1.3, row.most / 1.1)) << row.what;
        const double size = 0.999 * place->room;
        EXPECT_TRUE(fits(*place, 20 * size, 10 * size, row.rings)) << row.what;
        EXPECT_FALSE(kit::find_label_place(row.rings, 20, 10, row.most + 0.01)) << row.what;
    }
    EXPECT_FALSE(kit::find_label_place({}, 20, 10, 0.1));
    EXPECT_FALSE(kit::find_label_place({{{0, 0}, {9, 9}, {5, 5}, {0, 0}}}, 1, 1, 0.1));
}

TEST(LabelPlace, IsTakenOnce) {
    kit::TakenPlaces taken(10);
    EXPECT_TRUE(taken.take({0, -3, 20, 7}));
    EXPECT_FALSE(taken.take({19, 6, 39, 16}));
    EXPECT_TRUE(taken.take({19, 7, 39, 17}));
    EXPECT_TRUE(taken.take({20, -3, 40, 6}));
    EXPECT_FALSE(taken.take({39, -10, 50, -2}));
}

class PlacedLabels final : public kit::LabelWriter {
public:
    std::vector<std::pair<std::string, kit::Point2>> texts;

    void write_text(const std::string& text, double x, double y, double, kit::Anchor) override {
        texts.push_back({text, {x, y}});
    }
    double text_width(const std::string& text, double size) override {
        return static_cast<double>(text.size()) * size / 2;
    }
};

TEST(SectionPicture, NumbersAreInTheirBodies) {
    // A U, whose middle is outside, and a square in its arms.
    kit::Network network;
    network.add_curve(std::vector<kit::GridPoint>{
        {0, 0}, {90, 0}, {90, 90}, {75, 90}, {75, 15}, {15, 15}, {15, 90}, {0, 90}, {0, 0}});
    network.add_curve(
        std::vector<kit::GridPoint>{{30, 30}, {60, 30}, {60, 60}, {30, 60}, {30, 30}});
    const kit::Solids solids = kit::raise(kit::find_regions(std::move(network)).take_map()).solids;
    const kit::Section cut = solids.cut(kit::Plane::at_z(0.5));
    ASSERT_EQ(cut.bodies().size(), 2U);
    PlacedLabels labels;
    RecordingDC dc;
    kit::draw(cut, dc, {.size = {600, 600}, .title = "", .labels = &labels});
    const std::vector<PaintedRing> rings = painted(dc, 1);
    ASSERT_EQ(rings.size(), 2U);
    for (std::size_t i = 0; i < 2; ++i) {
        const std::string number = std::to_string(cut.bodies()[i].body);
        const auto inside =
            std::count_if(labels.texts.begin(), labels.texts.end(), [&](const auto& label) {
                return label.first == number && fits({label.second, 1}, 8, 8, {rings[i]});
            });
        EXPECT_EQ(inside, 1) << number;
    }
}

} // namespace
} // namespace korvel::test
