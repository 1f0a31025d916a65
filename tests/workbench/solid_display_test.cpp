// How the view of the solids shows bodies that are see-through or clipped, pixel by pixel.

#include <array>

#include <gtest/gtest.h>

#include "tests/workbench/shown_window.h"

namespace korvel::test {
namespace {

using Shade = std::array<double, 3>; // red, green, blue up to 255

Shade mixed(const Shade& above, double share, const Shade& below) {
    Shade shade = {};
    for (std::size_t k = 0; k < shade.size(); ++k) {
        shade[k] = share * above[k] + (1 - share) * below[k];
    }
    return shade;
}

/// A wide box at z = -2 … 2 and another above it at z = 4 … 8, seen from above.
class BoxesFromAbove : public testing::Test {
protected:
    BoxesFromAbove() {
        kit::Solids boxes = kit::make_cuboid({0, 0, 0}, {10, 10, 4});
        boxes.add(kit::make_cuboid({4, 0, 6}, {10, 6, 4}));
        boxes.set_colour(0, {.hue = 120});
        boxes.set_colour(1, {.hue = 300});
        window_.document().solids().replacing("Put", std::move(boxes))();
        window_.wait();
        window_.solids().look_from({0, 0});
        window_.wait();
    }

    Shade at(double x, double y) {
        const kit::Point3 seen = window_.document().solids().solids().to_view({x, y, 0});
        return pixel(window_.solids().camera().to_pixel(seen[0], seen[1]).toPoint());
    }
    Shade background() { return pixel({2, 2}); }

    void show(const workbench::SolidDisplay& display) { window_.solids().set_display(display); }
    void cut(double z) {
        window_.document().section().set_plane(kit::Plane::at_z(z));
        window_.wait();
    }

    static void expect_shade(const Shade& shade, const Shade& expected, const char* what) {
        for (std::size_t k = 0; k < shade.size(); ++k) {
            EXPECT_NEAR(shade[k], expected[k], 2) << what << ", part " << k;
        }
    }

private:
    Shade pixel(const QPoint& at) {
        const QColor colour = ShownWindow::picture(window_.solids()).pixelColor(at);
        return {double(colour.red()), double(colour.green()), double(colour.blue())};
    }

    ShownWindow window_;
};

constexpr double seen_through = 1 - 0.6 * 0.6; // of the upper and the lower side of a box
const Shade plane_shade = {0.2 * 255, 0.5 * 255, 255};
constexpr double plane_share = 0.3;

TEST_F(BoxesFromAbove, ABodyThatHidesAnotherShowsBothWhenSeeThrough) {
    const Shade lower = at(-3, 0);
    const Shade upper = at(7, 0);
    ASSERT_GT(std::abs(lower[1] - upper[1]), 50);
    expect_shade(at(2, 0), upper, "the upper one hides the lower one");
    show({.transparent = true});
    const Shade lower_alone = mixed(lower, seen_through, background());
    expect_shade(at(-3, 0), lower_alone, "the lower one alone");
    expect_shade(at(7, 0), mixed(upper, seen_through, background()), "the upper one alone");
    expect_shade(at(2, 0), mixed(upper, seen_through, lower_alone), "both");
    show({.transparent = false});
    expect_shade(at(2, 0), upper, "opaque again");
}

TEST_F(BoxesFromAbove, WhatIsInFrontOfThePlaneIsLeftOutWhenClipped) {
    const Shade lower = at(-3, 0);
    const Shade upper = at(7, 0);
    cut(3); // between both
    const auto behind_plane = [](const Shade& shade) {
        return mixed(plane_shade, plane_share, shade);
    };
    expect_shade(at(-3, 0), behind_plane(lower), "the lower one behind the plane");
    expect_shade(at(7, 0), upper, "the upper one in front of it");
    show({.clipped = true});
    expect_shade(at(-3, 0), behind_plane(lower), "the lower one is kept");
    expect_shade(at(2, 0), behind_plane(lower), "nothing hides it");
    expect_shade(at(7, 0), behind_plane(background()), "the background");
    cut(6); // through the upper one, which is open there
    expect_shade(at(2, 0), behind_plane(upper), "its lower side from inside");
    expect_shade(at(7, 0), behind_plane(upper), "its lower side from inside");
    cut(8.5); // above both
    expect_shade(at(2, 0), behind_plane(upper), "its upper side");
    show({.clipped = false});
    cut(3);
    expect_shade(at(2, 0), upper, "in front of the plane again");
}

} // namespace
} // namespace korvel::test
