// The actions of the view of solids that change nothing but what is shown.

#include <array>

#include <QAction>
#include <QActionGroup>

#include "apps/workbench/solid/solid_view.h"

namespace korvel::workbench {
namespace {

struct StandardView {
    const char* text;
    const char* tip;
    kit::ViewAngles angles;
    const char* keys;
};

constexpr std::array standard_views = {
    StandardView{QT_TRANSLATE_NOOP("SolidView", "From &Above"),
                 QT_TRANSLATE_NOOP("SolidView", "Look down along z: x to the right, y upward"),
                 {0, 0},
                 "Ctrl+1"},
    StandardView{QT_TRANSLATE_NOOP("SolidView", "From the &Front"),
                 QT_TRANSLATE_NOOP("SolidView", "Look along y: x to the right, z upward"),
                 {0, -90},
                 "Ctrl+2"},
    StandardView{QT_TRANSLATE_NOOP("SolidView", "From the &Side"),
                 QT_TRANSLATE_NOOP("SolidView", "Look along x: y to the right, z upward"),
                 {90, -90},
                 "Ctrl+3"},
    StandardView{QT_TRANSLATE_NOOP("SolidView", "&Isometric"),
                 QT_TRANSLATE_NOOP("SolidView", "All three axes equally long"),
                 {45, -54.735610317245346},
                 "Ctrl+4"},
};

struct EdgeChoice {
    const char* text;
    const char* tip;
    SolidDisplay::Edges edges;
};

constexpr std::array edge_choices = {
    EdgeChoice{QT_TRANSLATE_NOOP("SolidView", "&No Edges"),
               QT_TRANSLATE_NOOP("SolidView", "Draw faces only"), SolidDisplay::Edges::none},
    EdgeChoice{QT_TRANSLATE_NOOP("SolidView", "&Outlines"),
               QT_TRANSLATE_NOOP("SolidView", "Draw the edges at which faces turn"),
               SolidDisplay::Edges::outlines},
    EdgeChoice{QT_TRANSLATE_NOOP("SolidView", "All &Edges"),
               QT_TRANSLATE_NOOP("SolidView", "Draw every edge in white"),
               SolidDisplay::Edges::all},
};

struct Switch {
    const char* text;
    const char* tip;
    bool SolidDisplay::*member;
};

constexpr std::array switches = {
    Switch{QT_TRANSLATE_NOOP("SolidView", "&Box"),
           QT_TRANSLATE_NOOP("SolidView", "Draw the box around all bodies"), &SolidDisplay::box},
    Switch{QT_TRANSLATE_NOOP("SolidView", "See &Through"),
           QT_TRANSLATE_NOOP("SolidView", "Draw all bodies half transparent"),
           &SolidDisplay::transparent},
    Switch{QT_TRANSLATE_NOOP("SolidView", "&Clip at Plane"),
           QT_TRANSLATE_NOOP("SolidView",
                             "Leave out what the section's plane cuts off towards the viewer"),
           &SolidDisplay::clipped},
};

} // namespace

void SolidView::add_actions(const Menus& menus) {
    add_tool_actions(menus);
    add_change_actions(menus);
    add_view_actions(menus);
    add_display_actions(menus);
}

void SolidView::add_view_actions(const Menus& menus) {
    QMenu* const menu = menus.view->addMenu(tr("Look at &Solids"));
    const auto add = [&](const QString& text, const QString& tip, const char* keys, auto act) {
        QAction* const action = menu->addAction(text, QKeySequence(QString::fromLatin1(keys)));
        action->setStatusTip(tip);
        action->setToolTip(tip);
        connect(action, &QAction::triggered, this, act);
        return action;
    };
    for (const StandardView& view : standard_views) {
        add(tr(view.text), tr(view.tip), view.keys,
            [this, angles = view.angles] { look_from(angles); });
    }
    menu->addSeparator();
    QAction* const fit_all = add(tr("&Fit All"), tr("Show all bodies as large as possible"),
                                 "Ctrl+5", [this] { fit(); });
    add(tr("Fit Se&lection"), tr("Show the selected bodies as large as possible"), "Ctrl+6",
        [this] { fit_selection(); });
    add(tr("&Previous View"), tr("Show what was shown before"), "Ctrl+7", [this] { go_back(); });
    fit_all->setObjectName(QStringLiteral("fit_solids"));
}

void SolidView::add_display_actions(const Menus& menus) {
    QMenu* const menu = menus.view->addMenu(tr("&Display of Solids"));
    auto* const edges = new QActionGroup(this);
    for (const EdgeChoice& choice : edge_choices) {
        QAction* const action = menu->addAction(tr(choice.text));
        action->setStatusTip(tr(choice.tip));
        action->setCheckable(true);
        action->setChecked(display_.edges == choice.edges);
        edges->addAction(action);
        connect(action, &QAction::triggered, this, [this, chosen = choice.edges] {
            SolidDisplay display = display_;
            display.edges = chosen;
            set_display(display);
        });
    }
    menu->addSeparator();
    for (const Switch& option : switches) {
        QAction* const action = menu->addAction(tr(option.text));
        action->setStatusTip(tr(option.tip));
        action->setCheckable(true);
        action->setChecked(display_.*option.member);
        connect(action, &QAction::toggled, this, [this, member = option.member](bool is_on) {
            SolidDisplay display = display_;
            display.*member = is_on;
            set_display(display);
        });
    }
}

} // namespace korvel::workbench
