// What is seen in dark colours and with a large font: every dialog and list, without text that is
// cut off.

#include <algorithm>
#include <cstdlib>
#include <functional>

#include <QAbstractButton>
#include <QActionGroup>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDockWidget>
#include <QHeaderView>
#include <QLabel>
#include <QStatusBar>
#include <QTabBar>
#include <QTableView>
#include <QTimer>
#include <gtest/gtest.h>

#include "apps/workbench/map/background_dialog.h"
#include "apps/workbench/map/import_dialog.h"
#include "apps/workbench/window/preferences.h"
#include "tests/workbench/shown_window.h"

namespace korvel::test {
namespace {

constexpr QSize screen = {1024, 700};

/// Dark colours and a font of twice the size, as long as it exists.
class DarkAndLarge {
public:
    DarkAndLarge() : font_(QApplication::font()) {
        workbench::Preferences{.palette = workbench::Preferences::Palette::dark}.apply_palette();
        QFont large = font_;
        large.setPointSizeF(2 * font_.pointSizeF());
        QApplication::setFont(large);
    }
    ~DarkAndLarge() {
        QApplication::setFont(font_);
        workbench::Preferences{.palette = workbench::Preferences::Palette::system}.apply_palette();
    }

private:
    QFont font_;
};

QString text_of(const QWidget& widget) {
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
        return label->hasScaledContents() ? QString() : label->text();
    }
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
        return button->text();
    }
    if (const auto* box = qobject_cast<const QComboBox*>(&widget)) {
        return box->currentText();
    }
    return {};
}

bool has_room(const QWidget& widget) {
    const QSize least = widget.minimumSizeHint();
    return widget.width() >= least.width() && widget.height() >= least.height();
}

/// Layouts follow a change of texts with the next events.
void wait_for_layout(const QWidget& window) {
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return std::ranges::all_of(window.findChildren<QWidget*>(), [](const QWidget* child) {
            return text_of(*child).isEmpty() || !child->isVisible() || has_room(*child);
        });
    })) << window.windowTitle().toStdString();
}

/// Labels, buttons and boxes with less room than their texts need, or in a colour like the ground.
void expect_whole_texts(const QWidget& window) {
    constexpr int least_contrast = 50;
    for (const QWidget* child : window.findChildren<QWidget*>()) {
        const QString text = text_of(*child);
        if (text.isEmpty() || !child->isVisible()) {
            continue;
        }
        const QColor ink = child->palette().color(child->foregroundRole());
        const QColor ground = child->palette().color(child->backgroundRole());
        EXPECT_GE(std::abs(ink.lightness() - ground.lightness()), least_contrast)
            << text.toStdString();
        EXPECT_TRUE(has_room(*child))
            << text.toStdString() << " in " << window.windowTitle().toStdString();
    }
}

/// Looks at each dialog that opens, and closes it.
class DialogWatch {
public:
    DialogWatch() {
        QObject::connect(&timer_, &QTimer::timeout, [this] { look(); });
        timer_.start(20);
    }

    int seen() const { return seen_; }

private:
    void look() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            auto* dialog = qobject_cast<QDialog*>(widget);
            if (dialog == nullptr || !dialog->isVisible()) {
                continue;
            }
            ++seen_;
            QApplication::processEvents();
            const QSize least = dialog->minimumSizeHint();
            EXPECT_LE(least.width(), screen.width()) << dialog->windowTitle().toStdString();
            EXPECT_LE(least.height(), screen.height()) << dialog->windowTitle().toStdString();
            EXPECT_LE(dialog->width(), screen.width()) << dialog->windowTitle().toStdString();
            EXPECT_LE(dialog->height(), screen.height()) << dialog->windowTitle().toStdString();
            expect_whole_texts(*dialog);
            dialog->reject();
        }
    }

    QTimer timer_;
    int seen_ = 0;
};

void show_everything(ShownWindow& window) {
    window.open("us-states.geojson");
    window.document().solids().start(
        "Solids", [](const kit::Solids& /*before*/, const kit::Context& context) {
            kit::Solids solids = kit::make_ball({0, 0, 0}, 10, 3, context);
            solids.add(kit::make_cuboid({20, 0, 0}, {10, 8, 6}), context);
            solids.set_name(1, "A cuboid with a long name");
            return solids;
        });
    window.wait();
    window.document().section().set_plane(kit::Plane::through({0, 1, 0}, {0.1, 1, 0.3}));
    window.wait();
}

TEST(Looks, DialogsFitWithALargeFont) {
    const DarkAndLarge looks;
    ShownWindow window;
    show_everything(window);
    window.document().map().select({0, 1});
    DialogWatch watch;
    std::vector<std::function<void()>> openers = {
        [&] {
            workbench::open_import_dialog(window.map(), std::filesystem::path(KORVEL_DATA_DIR) /
                                                            "us-states.geojson");
        },
        [&] {
            workbench::ask_background_places(window.map(), {{{1, 2}, {3, 4}}});
        },
    };
    for (QAction* action : window->findChildren<QAction*>()) {
        const QStringList wanted = {"&Raise Regions…",     "New &Cuboid…", "New Ba&ll…",
                                    "&Move By or To…",     "&Weld…",       "&Preferences…",
                                    "Sna&pping Distance…", "&About korvel"};
        if (wanted.contains(action->text())) {
            openers.emplace_back([action] { action->trigger(); });
        }
    }
    EXPECT_EQ(openers.size(), 10U);
    for (const auto& open : openers) {
        const int before = watch.seen();
        open();
        EXPECT_TRUE(QTest::qWaitFor([&] { return watch.seen() > before; }));
        window.wait();
    }
}

TEST(Looks, ListsFitWithALargeFont) {
    const DarkAndLarge looks;
    ShownWindow window;
    show_everything(window);
    EXPECT_LE(window->minimumSizeHint().width(), screen.width());
    EXPECT_LE(window->minimumSizeHint().height(), screen.height());
    EXPECT_EQ(window->size(), screen);
    const auto all_tabs = window->findChildren<QTabBar*>();
    EXPECT_FALSE(all_tabs.empty());
    for (const QTabBar* tabs : all_tabs) {
        EXPECT_EQ(tabs->elideMode(), Qt::ElideNone);
    }
    for (QAction* action : window->findChildren<QAction*>()) {
        if (action->isCheckable() && action->isEnabled() && action->actionGroup() != nullptr) {
            action->trigger(); // most are tools, which give hints
            wait_for_layout(*window->statusBar());
            expect_whole_texts(*window->statusBar());
            EXPECT_EQ(window->size(), screen) << action->text().toStdString();
        }
    }
    window.solids().set_display({});
    for (const auto& docks :
         {window.map().docks(), window.solids().docks(), window.section().docks()}) {
        for (QDockWidget* dock : docks) {
            dock->raise();
            QTest::qWait(50);
            wait_for_layout(*dock);
            expect_whole_texts(*dock);
            for (const QTableView* table : dock->findChildren<QTableView*>()) {
                const QHeaderView& columns = *table->horizontalHeader();
                for (int column = 0; column < columns.count(); ++column) {
                    EXPECT_GE(columns.sectionSize(column), columns.sectionSizeHint(column))
                        << dock->windowTitle().toStdString() << ", column " << column;
                }
            }
        }
    }
}

} // namespace
} // namespace korvel::test
