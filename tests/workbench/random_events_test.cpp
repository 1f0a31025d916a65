#include <array>
#include <cstdlib>
#include <random>
#include <set>

#include <QAction>
#include <QApplication>
#include <QMenuBar>
#include <QTimer>
#include <QWheelEvent>
#include <gtest/gtest.h>

#include "tests/workbench/shown_window.h"

namespace korvel::test {
namespace {

void collect_actions(const QMenu& menu, std::vector<QAction*>& actions) {
    for (QAction* action : menu.actions()) {
        if (action->menu() != nullptr) {
            collect_actions(*action->menu(), actions);
        } else if (!action->isSeparator() && action->menuRole() != QAction::QuitRole) {
            actions.push_back(action);
        }
    }
}

// What somebody does who knows nothing: clicks, drags, keys, wheel and menus, anywhere.
class RandomUser {
public:
    RandomUser(ShownWindow& window, unsigned seed) : window_(window), random_(seed) {}

    void act() {
        const int kind = below(10);
        QWidget& view = any_view();
        if (kind < 3) {
            ShownWindow::click(view, any_place(view), any_modifier());
        } else if (kind < 6) {
            ShownWindow::drag(view, any_place(view), any_place(view), 1 + below(4),
                              below(4) == 0 ? Qt::RightButton : Qt::LeftButton);
        } else if (kind == 6) {
            turn_wheel(view);
        } else if (kind == 7) {
            press_key(view);
        } else if (kind == 8) {
            QTest::mouseDClick(&view, Qt::LeftButton, any_modifier(), any_place(view).toPoint());
        } else {
            trigger_action();
        }
    }

private:
    int below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }

    QWidget& any_view() {
        const std::array<QWidget*, 3> views = {&window_.map(), &window_.solids(),
                                               &window_.section()};
        QWidget* view = nullptr;
        while (view == nullptr || !view->isVisible()) {
            view = views[static_cast<std::size_t>(below(4) % 3)]; // most in the map
            if (!window_.map().isVisible() && !window_.solids().isVisible() &&
                !window_.section().isVisible()) {
                return *window_.operator->();
            }
        }
        return *view;
    }

    QPointF any_place(const QWidget& view) {
        return {static_cast<double>(below(std::max(1, view.width()))),
                static_cast<double>(below(std::max(1, view.height())))};
    }

    Qt::KeyboardModifiers any_modifier() {
        const int modifier = below(6);
        return modifier == 0   ? Qt::ControlModifier
               : modifier == 1 ? Qt::ShiftModifier
               : modifier == 2 ? Qt::AltModifier
                               : Qt::NoModifier;
    }

    void turn_wheel(QWidget& view) {
        const QPointF at = any_place(view);
        QWheelEvent event(at, view.mapToGlobal(at), {}, {0, below(2) == 0 ? 120 : -120},
                          Qt::NoButton, any_modifier(), Qt::NoScrollPhase, false);
        QApplication::sendEvent(&view, &event);
    }

    void press_key(QWidget& view) {
        constexpr std::array keys = {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Backspace,
                                     Qt::Key_Delete, Qt::Key_Left,   Qt::Key_Up,
                                     Qt::Key_Plus,   Qt::Key_Minus,  Qt::Key_Space};
        QTest::keyClick(&view, keys[static_cast<std::size_t>(below(keys.size()))], any_modifier());
    }

    void trigger_action() {
        std::vector<QAction*> actions;
        for (QAction* top : window_->menuBar()->actions()) {
            collect_actions(*top->menu(), actions);
        }
        actions[static_cast<std::size_t>(below(static_cast<int>(actions.size())))]->trigger();
    }

    ShownWindow& window_;
    std::mt19937 random_;
};

int events_wanted() {
    const char* wanted = std::getenv("KORVEL_RANDOM_EVENTS");
    return wanted != nullptr ? std::atoi(wanted) : 2000;
}

TEST(RandomEvents, LeaveASoundDocument) {
    ShownWindow window;
    window->set_problem_handler([](const QString& /*title*/, const QString& /*message*/) {});
    QTimer closer; // of dialogs, which wait for an answer
    QObject::connect(&closer, &QTimer::timeout, [] {
        if (QWidget* dialog = QApplication::activeModalWidget()) {
            dialog->close();
        } else if (QWidget* popup = QApplication::activePopupWidget()) {
            popup->close();
        }
    });
    closer.start(10);
    window.open("world-110m.curves");
    window.document().solids().start("Ball", [](kit::Solids solids, const kit::Context& context) {
        solids.add(kit::make_ball({0, 0, 0}, 10, 3, context), context);
        return solids;
    });
    window.wait();
    RandomUser user(window, 20261123);
    const int events = events_wanted();
    for (int i = 0; i < events; ++i) {
        user.act();
        if (i % 50 == 0) {
            window.wait();
        }
        ASSERT_FALSE(HasFailure()) << "after event " << i;
    }
    window.wait();

    // What was done can be taken back to the beginning and done again.
    workbench::Document& document = window.document();
    const auto faces = document.solids().solids().face_count();
    const auto points = document.map().curves().point_count();
    while (document.history().can_undo()) {
        document.history().undo();
    }
    while (document.history().can_redo()) {
        document.history().redo();
    }
    window.wait();
    EXPECT_EQ(document.solids().solids().face_count(), faces);
    EXPECT_EQ(document.map().curves().point_count(), points);
}

} // namespace
} // namespace korvel::test
