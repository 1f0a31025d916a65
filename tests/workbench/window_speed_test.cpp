#include <algorithm>
#include <chrono>
#include <iostream>

#include <gtest/gtest.h>

#include <QAction>
#include <QTimer>

#include "tests/workbench/shown_window.h"

namespace korvel::test {
namespace {

using Clock = std::chrono::steady_clock;

double milliseconds(Clock::time_point begin) {
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

// The longest time in which a window answers nothing, while it waits for its worker.
class LongestPause {
public:
    LongestPause() {
        timer_.callOnTimeout([this] { look(); });
        timer_.start(0);
        last_ = Clock::now();
    }
    double longest() {
        look();
        return longest_;
    }

private:
    void look() {
        longest_ = std::max(longest_, milliseconds(last_));
        last_ = Clock::now();
    }

    QTimer timer_;
    Clock::time_point last_;
    double longest_ = 0;
};

void report(const char* what, double value, const char* unit) {
    std::cout << what << ": " << value << ' ' << unit << '\n';
}

// Figures for docs/performance.md. They depend on the machine, so that these run only when asked
// for:
// --gtest_also_run_disabled_tests --gtest_filter=WindowSpeed.*
class WindowSpeed : public testing::Test {
protected:
    void show_ball() {
        window_.document().solids().start("Make", [](const kit::Solids&, const kit::Context&) {
            return kit::make_ball({0, 0, 0}, 10, 7);
        });
        window_.wait();
        QTest::qWait(500);
    }

    void paint() {
        window_.solids().repaint();
        QCoreApplication::processEvents();
    }

    void wait_for_section() {
        while (!window_.document().section().is_current()) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        }
        window_.section().repaint();
    }

    ShownWindow window_;
};

TEST_F(WindowSpeed, DISABLED_TurningTheBall) {
    show_ball();
    constexpr int frames = 30;
    const auto begin = Clock::now();
    for (int frame = 0; frame < frames; ++frame) {
        window_.document().solids().set_view({3.0 * frame, -60});
        paint();
    }
    report("turning", frames * 1000 / milliseconds(begin), "frames/s");
}

TEST_F(WindowSpeed, DISABLED_CuttingTheBall) {
    show_ball();
    workbench::SectionModel& section = window_.document().section();
    section.set_plane(kit::Plane::at_z(0));
    window_.wait();
    constexpr int cuts = 30;
    const auto begin = Clock::now();
    for (int cut = 0; cut < cuts; ++cut) {
        section.try_plane(kit::Plane::at_z(-7 + 0.45 * cut));
        wait_for_section();
    }
    report("cutting", cuts * 1000 / milliseconds(begin), "cuts/s");
}

TEST_F(WindowSpeed, DISABLED_DraggingAVertexOfTheBall) {
    show_ball();
    window_->findChild<QAction*>("move_vertex")->trigger();
    workbench::SolidView& view = window_.solids();
    const QPointF from = view.camera().to_pixel(0.3, 0.2).toPoint();
    const auto begin_press = Clock::now();
    QTest::mousePress(&view, Qt::LeftButton, Qt::NoModifier, from.toPoint());
    report("press", milliseconds(begin_press), "ms");
    double longest = 0;
    for (int step = 1; step <= 10; ++step) {
        const auto begin = Clock::now();
        const QPointF at = from + QPointF(2 * step, step);
        QMouseEvent move(QEvent::MouseMove, at, view.mapToGlobal(at), Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QCoreApplication::sendEvent(&view, &move);
        paint();
        longest = std::max(longest, milliseconds(begin));
    }
    report("longest move with picture", longest, "ms");
    const auto begin_release = Clock::now();
    QTest::mouseRelease(&view, Qt::LeftButton, Qt::NoModifier, (from + QPointF(20, 10)).toPoint());
    report("release", milliseconds(begin_release), "ms");
    LongestPause pause;
    window_.wait();
    QTest::qWait(500);
    report("longest pause after it", pause.longest(), "ms");
    const auto begin_undo = Clock::now();
    window_.document().history().undo();
    report("undo", milliseconds(begin_undo), "ms");
    window_.wait();
    const auto begin_redo = Clock::now();
    window_.document().history().redo();
    report("redo", milliseconds(begin_redo), "ms");
    window_.wait();
    window_->findChild<QAction*>("insert_on_face")->trigger();
    const auto begin_insert = Clock::now();
    ShownWindow::click(view, from);
    report("insert", milliseconds(begin_insert), "ms");
    window_.wait();
    const auto begin_back = Clock::now();
    window_.document().history().undo();
    report("undo of insert", milliseconds(begin_back), "ms");
}

TEST_F(WindowSpeed, DISABLED_RegionsAfterAChange) {
    for (const char* const sample : {"us-counties.curves", "world-50m.curves"}) {
        window_.open(sample);
        QTest::qWait(500);
        workbench::MapModel& map = window_.document().map();
        for (int k = 0; k < 3; ++k) {
            const auto begin = Clock::now();
            map.change_curves("Draw", map.curves().size(), 0, {{{1000 + k, 1000}, {9000, 8000}}});
            const auto found = map.found();
            const double change = milliseconds(begin);
            LongestPause pause;
            while (map.found() == found) {
                QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
            }
            window_.map().repaint();
            std::cout << sample << ": change " << change << " ms, regions after "
                      << milliseconds(begin) << " ms, longest pause " << pause.longest() << " ms\n";
            window_.wait();
        }
    }
}

TEST_F(WindowSpeed, DISABLED_PausesWhileOpeningAndSaving) {
    for (const char* const sample : {"us-counties.curves", "world-50m.curves"}) {
        LongestPause opening;
        window_.open(sample);
        QTest::qWait(300);
        report((std::string("opening ") + sample).c_str(), opening.longest(), "ms pause");
    }
    show_ball();
    LongestPause saving;
    window_->file_actions().store().save(std::filesystem::temp_directory_path() / "speed.korvel");
    window_.wait();
    QTest::qWait(300);
    report("saving", saving.longest(), "ms pause");
}

} // namespace
} // namespace korvel::test
