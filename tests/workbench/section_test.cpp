#include <gtest/gtest.h>

#include <QComboBox>
#include <QDockWidget>
#include <QLineEdit>
#include <QSlider>
#include <QTableView>

#include "apps/workbench/document/plane_range.h"
#include "apps/workbench/section/section_areas.h"
#include "apps/workbench/solid/plane_drawing.h"
#include "tests/workbench/shown_window.h"

namespace korvel::test {
namespace {

/// Two boxes beside each other along x, the second one higher.
kit::Solids two_boxes() {
    kit::Solids boxes = kit::make_cuboid({0, 0, 0}, {10, 8, 6});
    boxes.add(kit::make_cuboid({20, 0, 1}, {10, 8, 8}));
    boxes.set_name(0, "Low");
    boxes.set_colour(0, {.hue = 120});
    return boxes;
}

void show_solids(ShownWindow& window, kit::Solids solids) {
    window.document().solids().replacing("Put", std::move(solids))();
    window.wait();
}

template <class Widget>
Widget& named(ShownWindow& window, const char* name) {
    for (auto* widget : window->findChildren<Widget*>()) {
        if (widget->accessibleName() == QLatin1String(name)) {
            return *widget;
        }
    }
    throw std::runtime_error(std::string(name) + " is not there");
}

QAction& action(ShownWindow& window, const char* text) {
    for (auto* action : window->findChildren<QAction*>()) {
        if (action->text() == QLatin1String(text)) {
            return *action;
        }
    }
    throw std::runtime_error(std::string(text) + " is not there");
}

QColor colour_at(ShownWindow& window, const kit::Point2& seen) {
    const kit::Point2 at = window.section().plot().to_pixel(seen);
    return ShownWindow::picture(window.section())
        .pixelColor(static_cast<int>(at[0]), static_cast<int>(at[1]));
}

TEST(Section, MenuCutsAndStepsAndTheSectionIsThatOfTheKit) {
    ShownWindow window;
    QAction& cut = action(window, "Cut at &y in the Middle");
    EXPECT_FALSE(cut.isEnabled());
    show_solids(window, two_boxes());
    ASSERT_TRUE(cut.isEnabled());
    cut.trigger();
    window.wait();
    workbench::SectionModel& model = window.document().section();
    ASSERT_NE(model.section(), nullptr);
    const kit::Section expected = two_boxes().cut(kit::Plane::at_y(0));
    EXPECT_EQ(model.section()->area(), expected.area());
    EXPECT_NEAR(model.section()->area(), 60 + 80, 1e-9);
    const kit::Colour low = expected[0].colour();
    EXPECT_EQ(colour_at(window, {-4, -2}), QColor(low.red, low.green, low.blue));
    EXPECT_EQ(colour_at(window, {9.2, 0.3}), QColor(Qt::white));
    const QString areas = window.section().areas().text();
    EXPECT_TRUE(areas.contains("0\tLow\t1\t60\n")) << areas.toStdString();
    EXPECT_TRUE(areas.contains("All\t\t2\t140\n")) << areas.toStdString();
    action(window, "&Next Step").trigger();
    window.wait();
    EXPECT_NEAR(workbench::place_of(*model.plane()), 8.0 / 50, 1e-12);
    action(window, "&Remove Plane").trigger();
    window.wait();
    EXPECT_EQ(model.section(), nullptr);
    window.document().history().undo();
    window.document().history().undo();
    window.wait();
    EXPECT_EQ(model.plane(), kit::Plane::at_y(0));
    EXPECT_NE(model.section(), nullptr);
}

TEST(Section, TheDockTypesSlidesAndTurnsThePlane) {
    ShownWindow window;
    show_solids(window, two_boxes());
    const auto type = [&](const char* field, const char* text) {
        auto& edit = named<QLineEdit>(window, field);
        edit.setFocus();
        edit.selectAll();
        QTest::keyClicks(&edit, text);
        QTest::keyClick(&edit, Qt::Key_Return);
        window.wait();
    };
    workbench::SectionModel& model = window.document().section();
    auto& kind = named<QComboBox>(window, "Kind of plane");
    kind.setFocus();
    QTest::keyClick(&kind, Qt::Key_Down);
    window.wait();
    EXPECT_EQ(model.plane(), kit::Plane::at_x(10));
    type("Value", "-2.5");
    EXPECT_EQ(model.plane(), kit::Plane::at_x(-2.5));
    auto& slider = named<QSlider>(window, "Place of the plane");
    QTest::keyClick(&slider, Qt::Key_End);
    window.wait();
    EXPECT_EQ(model.plane(), kit::Plane::at_x(25));
    type("Value", "1e999");
    EXPECT_EQ(model.plane(), kit::Plane::at_x(25));
    kind.setFocus();
    QTest::keyClick(&kind, Qt::Key_End);
    type("Normal y", "1");
    ASSERT_TRUE(model.plane().has_value());
    EXPECT_NEAR(model.plane()->b / model.plane()->a, 1, 1e-12);
    EXPECT_NEAR(model.plane()->distance({25, 0, 1}), 0, 1e-9);
    QTest::keyClick(&named<QSlider>(window, "Tilt from level in degrees"), Qt::Key_Home);
    window.wait();
    EXPECT_NEAR(model.plane()->c, 1, 1e-12);
    EXPECT_NEAR(model.section()->area(), two_boxes().cut(*model.plane()).area(), 1e-9);
}

TEST(Section, WheelZoomsDragMovesClickSelectsAndDoubleClickShowsAll) {
    ShownWindow window;
    show_solids(window, two_boxes());
    window.document().section().set_plane(kit::Plane::at_y(0));
    window.wait();
    workbench::SectionView& view = window.section();
    const kit::SectionPlot whole = view.plot();
    const auto pixel = [&](const kit::Point2& seen) {
        const kit::Point2 at = view.plot().to_pixel(seen);
        return QPointF(at[0], at[1]);
    };
    ShownWindow::click(view, pixel({20, 1}));
    EXPECT_EQ(window.document().solids().selected(), (std::set{1}));
    EXPECT_TRUE(named<QTableView>(window, "Section areas").selectionModel()->isRowSelected(1));
    const QPointF at = pixel({20, 1});
    QWheelEvent wheel(at, view.mapToGlobal(at), {}, {0, 240}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&view, &wheel);
    EXPECT_NEAR(view.plot().scale().u, whole.scale().u / 1.44, 1e-9);
    EXPECT_NEAR(pixel({20, 1}).x(), at.x(), 1);
    ShownWindow::drag(view, at, at + QPointF(-60, 10));
    EXPECT_NEAR(pixel({20, 1}).x(), at.x() - 60, 2);
    EXPECT_NEAR(pixel({20, 1}).y(), at.y() + 10, 2);
    QTest::mouseDClick(&view, Qt::LeftButton, {}, at.toPoint());
    EXPECT_EQ(view.plot().scale().u, whole.scale().u);
}

QPointF pixel_of(ShownWindow& window, const kit::Point3& point) {
    const kit::Point3 seen = window.document().solids().solids().to_view(point);
    return window.solids().camera().to_pixel(seen[0], seen[1]) /
           window.solids().devicePixelRatioF();
}

/// Two boxes seen from angles, cut by a plane that can be dragged.
struct DraggedPlane {
    DraggedPlane(const kit::Plane& plane, const kit::ViewAngles& angles) {
        show_solids(window, two_boxes());
        window.document().solids().set_view(angles);
        model.set_plane(plane);
        window.solids().fit();
        window.wait();
        action(window, "&Drag Plane").trigger();
        steps = window.document().history().undo_count();
    }

    workbench::PlaneHandle handle() {
        return workbench::plane_handle(*model.plane(), two_boxes().bounds());
    }
    QPointF end() { return pixel_of(window, handle().end).toPoint(); }

    /// By its end to a place, which is rounded to a pixel.
    void turn_to(const QPointF& pixel, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        ShownWindow::drag(window.solids(), end(), pixel.toPoint(), 7, Qt::LeftButton, modifiers);
        window.wait();
    }

    ShownWindow window;
    workbench::SectionModel& model = window.document().section();
    std::size_t steps = 0;
};

constexpr kit::ViewAngles from_the_front = {0, -90}; // x to the right, z upward

TEST(Section, ThePlaneIsDraggedAlongItsNormalInTheViewOfTheSolids) {
    DraggedPlane dragged(kit::Plane::at_z(0), from_the_front);
    ShownWindow& window = dragged.window;
    workbench::SectionModel& model = dragged.model;
    const QPointF tip = pixel_of(window, dragged.handle().tip);
    const QPointF by = pixel_of(window, {0, 0, 2}) - pixel_of(window, {0, 0, 0});
    ShownWindow::drag(window.solids(), tip, tip + by, 20);
    window.wait();
    EXPECT_NEAR(workbench::place_of(*model.plane()), 2, window.solids().frame().unit);
    EXPECT_EQ(window.document().history().undo_count(), dragged.steps + 1);
    EXPECT_TRUE(model.is_current());
    EXPECT_EQ(model.section()->area(), two_boxes().cut(*model.plane()).area());
    window.document().history().undo();
    EXPECT_EQ(model.plane(), kit::Plane::at_z(0));
}

TEST(Section, TheEndOfANormalInThePictureTurnsThePlaneWithinThePicture) {
    DraggedPlane dragged(kit::Plane::at_z(1), from_the_front);
    workbench::SectionModel& model = dragged.model;
    const kit::Point3 foot = dragged.handle().foot;
    const QPointF centre = pixel_of(dragged.window, foot);
    const QPointF from = dragged.end() - centre;
    const QPoint target = (centre + QPointF(-70, -50)).toPoint();
    dragged.turn_to(target);
    const QPointF to = QPointF(target) - centre;
    const double angle = std::atan2(-to.y(), to.x()) - std::atan2(-from.y(), from.x());
    ASSERT_GT(angle, 0.5);
    EXPECT_NEAR(model.plane()->a, -std::sin(angle), 1e-9);
    EXPECT_NEAR(model.plane()->b, 0, 1e-9);
    EXPECT_NEAR(model.plane()->c, std::cos(angle), 1e-9);
    EXPECT_NEAR(model.plane()->distance(foot), 0, 1e-12);
    EXPECT_TRUE(model.is_current());
    EXPECT_EQ(model.section()->area(), two_boxes().cut(*model.plane()).area());
    EXPECT_EQ(dragged.window.document().history().undo_count(), dragged.steps + 1);
    dragged.window.document().history().undo();
    EXPECT_EQ(model.plane(), kit::Plane::at_z(1));

    dragged.turn_to(centre); // which has no direction
    EXPECT_EQ(model.plane(), kit::Plane::at_z(1));
    dragged.turn_to(centre + QPointF(-72, -69), Qt::ShiftModifier);
    EXPECT_NEAR(model.plane()->c, std::sqrt(0.5), 1e-12);
    EXPECT_NEAR(model.plane()->a, -model.plane()->c, 1e-12);
    EXPECT_NEAR(model.plane()->distance(foot), 0, 1e-12);
    dragged.window.document().history().undo();
    dragged.turn_to(centre + QPointF(80, 5), Qt::ShiftModifier);
    EXPECT_EQ(model.plane(), kit::Plane::at_x(foot[0]));
}

TEST(Section, TheEndOfANormalThatPointsOutOfThePictureFollowsTheMouse) {
    DraggedPlane dragged(kit::Plane::at_x(3), {30, -60});
    const workbench::PlaneHandle before = dragged.handle();
    const QPointF at = dragged.end();
    const QPointF by = QPointF(-32, 21);
    QTest::mouseMove(&dragged.window.solids(), at.toPoint());
    EXPECT_EQ(dragged.window.solids().cursor().shape(), Qt::OpenHandCursor);
    const QColor knob = ShownWindow::picture(dragged.window.solids()).pixelColor(at.toPoint());
    EXPECT_GT(std::min(knob.red(), knob.blue()), knob.green() + 60) << knob.name().toStdString();
    dragged.turn_to(at + by);
    const kit::Plane& plane = *dragged.model.plane();
    EXPECT_NEAR(plane.normal_length(), 1, 1e-12);
    EXPECT_NEAR(plane.distance(before.foot), 0, 1e-12);
    EXPECT_FALSE(workbench::fixed_axis(plane));
    const workbench::PlaneHandle after =
        workbench::plane_handle(plane, two_boxes().bounds(), before.foot);
    const QPointF came = pixel_of(dragged.window, after.end) - pixel_of(dragged.window, before.end);
    EXPECT_NEAR(came.x(), by.x(), 1e-6);
    EXPECT_NEAR(came.y(), by.y(), 1e-6);
    EXPECT_GT(plane.a, 0); // on the side of the viewer, or the other, as it was
    EXPECT_EQ(dragged.model.section()->area(), two_boxes().cut(plane).area());
    // Escape takes back what is not let go, without a step.
    QTest::mousePress(&dragged.window.solids(), Qt::LeftButton, {}, dragged.end().toPoint());
    QTest::mouseMove(&dragged.window.solids(), QPoint(5, 5));
    QTest::keyClick(&dragged.window.solids(), Qt::Key_Escape);
    EXPECT_EQ(dragged.model.plane(), plane);
    EXPECT_EQ(dragged.window.document().history().undo_count(), dragged.steps + 1);
}

} // namespace
} // namespace korvel::test
