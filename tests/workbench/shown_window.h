#pragma once

#include <filesystem>
#include <string>

#include <QImage>
#include <QTest>

#include "apps/workbench/map/map_view.h"
#include "apps/workbench/section/section_view.h"
#include "apps/workbench/solid/solid_view.h"
#include "apps/workbench/window/main_window.h"

namespace korvel::test {

/// The window of the program on the display, as large as a small laptop shows it.
class ShownWindow {
public:
    ShownWindow() {
        window_.set_problem_handler([](const QString& title, const QString& message) {
            ADD_FAILURE() << title.toStdString() << ": " << message.toStdString();
        });
        window_.resize(1024, 700);
        window_.show();
        window_.activateWindow(); // without a window manager nobody else does
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
    }

    workbench::MainWindow* operator->() { return &window_; }
    workbench::Document& document() { return window_.document(); }
    workbench::MapView& map() { return window_.map_view(); }
    workbench::SolidView& solids() { return window_.solid_view(); }
    workbench::SectionView& section() { return window_.section_view(); }

    /// Opens a sample or another file, and waits until everything that follows is done.
    void open(const std::filesystem::path& file) {
        window_.open(std::filesystem::path(KORVEL_DATA_DIR) / file);
        wait();
    }

    /// Until the worker is idle and everything is painted.
    void wait() {
        window_.document().worker().wait();
        QTest::qWait(1);
    }

    /// What a widget shows.
    static QImage picture(QWidget& widget) { return widget.grab().toImage(); }

    static void click(QWidget& widget, const QPointF& at,
                      Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mouseClick(&widget, Qt::LeftButton, modifiers, at.toPoint());
    }

    static void drag(QWidget& widget, const QPointF& from, const QPointF& to, int steps = 5,
                     Qt::MouseButton button = Qt::LeftButton,
                     Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mousePress(&widget, button, modifiers, from.toPoint());
        for (int step = 1; step <= steps; ++step) {
            // QTest::mouseMove does not report the button that is down.
            const QPointF at = from + (to - from) * step / steps;
            QMouseEvent move(QEvent::MouseMove, at, widget.mapToGlobal(at), Qt::NoButton, button,
                             modifiers);
            QCoreApplication::sendEvent(&widget, &move);
        }
        QTest::mouseRelease(&widget, button, modifiers, to.toPoint());
    }

private:
    workbench::MainWindow window_;
};

} // namespace korvel::test
