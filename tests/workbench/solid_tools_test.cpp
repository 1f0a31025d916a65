#include <cmath>
#include <set>

#include <gtest/gtest.h>

#include <QAction>

#include "apps/workbench/solid/drag_tool.h"
#include "apps/workbench/solid/move_vertex_tool.h"
#include "tests/workbench/shown_window.h"

namespace korvel::test {
namespace {

using workbench::SolidModel;

class SolidTools : public testing::Test {
protected:
    void show(kit::Solids made) {
        const auto solids = std::make_shared<kit::Solids>(std::move(made));
        model().start("Make", [solids](const kit::Solids&, const kit::Context&) {
            return kit::Solids(*solids);
        });
        window_.wait();
    }

    SolidModel& model() { return window_.document().solids(); }
    const kit::Solids& solids() { return model().solids(); }

    void choose(const char* action) {
        window_->findChild<QAction*>(QString::fromLatin1(action))->trigger();
    }

    QPointF pixel_of(int vertex) {
        const double* const at = solids().model().verts[vertex].view_xyz;
        return window_.solids().camera().to_pixel(at[0], at[1]);
    }

    // The vertex that is nearest to the viewer.
    int nearest_vertex() {
        int nearest = 0;
        for (int v = 0; v < solids().vertex_count(); ++v) {
            if (depth(v) > depth(nearest)) {
                nearest = v;
            }
        }
        return nearest;
    }
    double depth(int vertex) { return solids().model().verts[vertex].view_xyz[2]; }

    void press(const QPointF& at) {
        QTest::mousePress(&view(), Qt::LeftButton, Qt::NoModifier, at.toPoint());
    }
    void move(const QPointF& at) {
        QMouseEvent event(QEvent::MouseMove, at, view().mapToGlobal(at), Qt::NoButton,
                          Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&view(), &event);
    }
    void release(const QPointF& at) {
        QTest::mouseRelease(&view(), Qt::LeftButton, Qt::NoModifier, at.toPoint());
    }
    QRgb colour_at(const QPointF& pixel) {
        return ShownWindow::picture(view()).pixel(pixel.toPoint());
    }
    workbench::SolidView& view() { return window_.solids(); }

    /// Whether the worker's copy has the same records, to the last bit.
    void expect_equal_copies() {
        const TMOD3D& shown = solids().model();
        bool is_equal = false;
        model().follow("compare", [&](kit::SolidsEditor& worked, const kit::Context&) {
            is_equal = same(shown, worked.solids().model());
            return workbench::Worker::Deliver();
        });
        window_.wait();
        EXPECT_TRUE(is_equal);
    }

    static bool same(const TMOD3D& a, const TMOD3D& b) {
        const auto list = [](const CArray<int>& x, const CArray<int>& y) {
            return std::equal(x.begin(), x.end(), y.begin(), y.end());
        };
        return std::equal(a.verts.begin(), a.verts.end(), b.verts.begin(), b.verts.end(),
                          [](const VERT3D& x, const VERT3D& y) {
                              return std::equal(x.model_xyz, x.model_xyz + 3, y.model_xyz);
                          }) &&
               std::equal(a.polys.begin(), a.polys.end(), b.polys.begin(), b.polys.end(),
                          [&](const POLY3D& x, const POLY3D& y) {
                              return list(x.verts, y.verts) && list(x.lines, y.lines) &&
                                     list(x.bodies, y.bodies) &&
                                     std::equal(x.plane, x.plane + 4, y.plane);
                          }) &&
               std::equal(a.lines.begin(), a.lines.end(), b.lines.begin(), b.lines.end(),
                          [](const LINE3D& x, const LINE3D& y) {
                              return x.start_vert == y.start_vert && x.end_vert == y.end_vert;
                          }) &&
               std::equal(a.bodies.begin(), a.bodies.end(), b.bodies.begin(), b.bodies.end(),
                          [&](const BODY3D& x, const BODY3D& y) {
                              return list(x.polys, y.polys) && x.volume == y.volume &&
                                     x.hue == y.hue;
                          }) &&
               a.verts.GetSize() > 0;
    }

    ShownWindow window_;
};

TEST_F(SolidTools, AVertexIsDraggedAsTheEditorMovesIt) {
    show(kit::make_ball({0, 0, 0}, 10, 3));
    choose("move_vertex");
    const int vertex = nearest_vertex();
    const QPointF from = pixel_of(vertex).toPoint();
    const QPointF to = from + QPointF(25, -15);
    const kit::Solids before = solids();
    const auto& camera = view().camera();
    const kit::Point2 by = {camera.u_of(to) - camera.u_of(from),
                            camera.v_of(to) - camera.v_of(from)};
    press(from);
    move(from + QPointF(12, 3));
    move(to);
    const auto& tool = dynamic_cast<const workbench::DragTool&>(view().tool());
    ASSERT_TRUE(tool.verdict() && tool.verdict()->is_legal());
    const QRgb weighted = colour_at(to); // what moves all the way is yellow
    EXPECT_GT(qRed(weighted), qBlue(weighted) + 80);
    release(to);
    kit::SolidsEditor alone{kit::Solids(before)};
    alone.gather_vertex(vertex, 2);
    alone.move_by_weight(by);
    EXPECT_TRUE(same(solids().model(), alone.solids().model()));
    EXPECT_FALSE(same(solids().model(), before.model()));
    expect_equal_copies();
    window_.document().history().undo();
    EXPECT_TRUE(same(solids().model(), before.model()));
    window_.document().history().redo();
    EXPECT_TRUE(same(solids().model(), alone.solids().model()));
    expect_equal_copies();
}

TEST_F(SolidTools, TheWheelSetsHowFarTheSurroundingsReach) {
    show(kit::make_ball({0, 0, 0}, 10, 3));
    choose("move_vertex");
    const int vertex = nearest_vertex();
    const QPointF from = pixel_of(vertex).toPoint();
    const QPointF to = from + QPointF(18, 9);
    kit::SolidsEditor alone{kit::Solids(solids())};
    const auto turn_wheel = [&](int notches, Qt::KeyboardModifiers modifiers) {
        QWheelEvent event(from, view().mapToGlobal(from), {}, {0, 120 * notches}, Qt::NoButton,
                          modifiers, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&view(), &event);
    };
    const auto expect_depth = [&](int depth) {
        alone.gather_vertex(vertex, depth);
        EXPECT_TRUE(std::ranges::equal(model().gathered().vertices(), alone.vertices()));
    };
    const double unit = view().frame().unit;
    turn_wheel(2, Qt::ControlModifier);
    EXPECT_EQ(view().frame().unit, unit); // it does not zoom
    press(from);
    expect_depth(4);
    move(to);
    turn_wheel(-1, Qt::NoModifier);
    expect_depth(3);
    const auto& camera = view().camera();
    alone.move_by_weight(
        {camera.u_of(to) - camera.u_of(from), camera.v_of(to) - camera.v_of(from)});
    release(to);
    EXPECT_TRUE(same(solids().model(), alone.solids().model()));
    expect_equal_copies();
    turn_wheel(1, Qt::NoModifier);
    EXPECT_LT(view().frame().unit, unit);
}

TEST_F(SolidTools, WhatWouldPassThroughAFaceIsShownRedAndSpringsBack) {
    std::vector<kit::Solids> parts;
    parts.push_back(kit::make_cuboid({0, 0, 0}, {4, 4, 4}));
    parts.push_back(kit::make_cuboid({8, 0, 0}, {4, 4, 4}));
    show(kit::merge(std::move(parts)));
    view().look_from({0, -90});
    const kit::Solids before = solids();
    choose("move_body");
    QString hint;
    QObject::connect(&view(), &workbench::SolidView::hint_changed,
                     [&](const QString& text) { hint = text; });
    const auto at = [&](double u, double v) {
        return QPointF(view().camera().to_pixel(u, v).toPoint());
    };
    const QPointF from = at(-3.1, 0.7);
    const QPointF to = at(1.7, 0.9);
    press(from);
    move(at(0, 0.8));
    move(to);
    const auto& tool = dynamic_cast<const workbench::DragTool&>(view().tool());
    ASSERT_TRUE(tool.verdict() && !tool.verdict()->is_legal());
    const QImage shown = ShownWindow::picture(view());
    int reds = 0;
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x) {
            const QRgb colour = shown.pixel(x, y);
            reds += qRed(colour) > 200 && qGreen(colour) < 90 && qBlue(colour) < 90 ? 1 : 0;
        }
    }
    EXPECT_GT(reds, 20);
    release(to);
    EXPECT_TRUE(hint.contains("would pass through face")) << hint.toStdString();
    EXPECT_TRUE(same(solids().model(), before.model()));
    EXPECT_EQ(window_.document().history().undo_text(), "Make");
    expect_equal_copies();
}

TEST_F(SolidTools, AMixedSequenceKeepsBothCopiesEqual) {
    std::vector<kit::Solids> parts;
    parts.push_back(kit::make_ball({0, 0, 0}, 5, 2));
    parts.push_back(kit::make_cuboid({14, 1, 2}, {6, 5, 4}));
    show(kit::merge(std::move(parts)));
    const kit::Solids first = solids();
    const auto drag = [&](const char* tool, int vertex, const QPointF& by) {
        choose(tool);
        const QPointF from = pixel_of(vertex);
        ShownWindow::drag(view(), from, from + by, 4);
    };
    const std::size_t steps = window_.document().history().undo_count();
    drag("move_vertex", nearest_vertex(), {9, 6});
    view().look_from({70, -40});
    choose("insert_on_face");
    const double* const corner = solids().model().verts[nearest_vertex()].view_xyz;
    ShownWindow::click(view(), view().camera().to_pixel(corner[0] * 0.9, corner[1] * 0.9));
    drag("scale_body", nearest_vertex(), {14, 10});
    view().look_from({0, -90});
    choose("insert_on_edge");
    ShownWindow::click(view(), view().camera().to_pixel(-4, 0.3));
    window_->findChild<QAction*>("move_body")->trigger();
    ShownWindow::drag(view(), view().camera().to_pixel(-5, 0), view().camera().to_pixel(-7, 2), 3);
    model().set_name(0, "ball");
    model().set_colour(1, {10, 0.8, 0.5, 1});
    EXPECT_EQ(window_.document().history().undo_count(), steps + 7);
    expect_equal_copies();
    const kit::Solids last = solids();
    const kit::ViewAngles angles = last.view();
    for (int step = 0; step < 7; ++step) {
        window_.document().history().undo();
    }
    EXPECT_TRUE(same(solids().model(), first.model()));
    expect_equal_copies();
    for (int step = 0; step < 7; ++step) {
        window_.document().history().redo();
    }
    EXPECT_TRUE(same(solids().model(), last.model()));
    EXPECT_EQ(solids().view(), angles);
    expect_equal_copies();
}

TEST_F(SolidTools, TheViewTurnsMovesZoomsAndGoesBack) {
    show(kit::make_cuboid({0, 0, 0}, {4, 2, 1}, 2));
    const kit::ViewAngles angles = solids().view();
    const kit::ViewFrame frame = view().frame();
    const QPointF corner = {5, 5};
    ShownWindow::drag(view(), corner, corner + QPointF(20, 10), 4);
    EXPECT_DOUBLE_EQ(solids().view().turn, angles.turn - 10);
    EXPECT_DOUBLE_EQ(solids().view().tilt, angles.tilt + 5);
    ShownWindow::drag(view(), corner, corner + QPointF(30, 0), 3, Qt::RightButton);
    EXPECT_NEAR(view().frame().left, frame.left - 30 * frame.unit, 1e-9);
    QTest::keyClick(&view(), Qt::Key_Plus);
    EXPECT_LT(view().frame().unit, frame.unit);
    view().go_back();
    view().go_back();
    view().go_back();
    EXPECT_EQ(solids().view(), angles);
    EXPECT_DOUBLE_EQ(view().frame().left, frame.left);
    EXPECT_DOUBLE_EQ(view().frame().unit, frame.unit);
    view().look_from({0, 0}); // from above: 4 wide and 2 high
    const kit::ViewFrame& above = view().frame();
    EXPECT_NE(colour_at(view().camera().to_pixel(1.9, 0.9)), colour_at({3, 3}));
    EXPECT_EQ(colour_at(view().camera().to_pixel(0, 1.2)), colour_at({3, 3}));
    EXPECT_NEAR(above.right() - above.left, -2 * above.left, 1e-9);
}

} // namespace
} // namespace korvel::test
