#include "apps/workbench/map/map_actions.h"

#include <memory>
#include <utility>

#include "apps/workbench/document/document.h"
#include "apps/workbench/map/background_dialog.h"
#include "apps/workbench/map/background_tool.h"
#include "apps/workbench/map/cut_tool.h"
#include "apps/workbench/map/draw_tool.h"
#include "apps/workbench/map/edit_tool.h"
#include "apps/workbench/map/import_dialog.h"
#include "apps/workbench/map/join_tool.h"
#include "apps/workbench/map/map_view.h"
#include "apps/workbench/map/measure_tool.h"
#include "apps/workbench/map/select_tool.h"
#include "apps/workbench/map/snapping_dialog.h"

namespace korvel::workbench {

MapActions::MapActions(MapView& view, const Menus& menus)
    : QObject(&view), view_(view), tools_(new QActionGroup(this)) {
    add_tools(menus);
    menus.map->addSeparator();
    add_changes(*menus.map);
    menus.map->addSeparator();
    add_settings(menus);
    menus.map->addSeparator();
    add_sights(*menus.map);
    connect(&view_, &MapView::points_chosen, this, &MapActions::follow_chosen);
    follow_chosen();
}

void MapActions::add_tools(const Menus& menus) {
    select = add_tool<SelectTool>(tr("&Select"), tr("Select regions"), Qt::Key_S, menus);
    draw = add_tool<DrawTool>(tr("&Draw"), tr("Draw curves"), Qt::Key_D, menus);
    edit = add_tool<EditTool>(tr("&Edit"), tr("Move, insert and choose points"), Qt::Key_E, menus);
    cut = add_tool<CutTool>(tr("&Cut"), tr("Cut curves where they are clicked"), Qt::Key_X, menus);
    join = add_tool<JoinTool>(tr("&Join"), tr("Join two ends of curves"), Qt::Key_J, menus);
    measure =
        add_tool<MeasureTool>(tr("&Measure"), tr("Measure lengths and areas"), Qt::Key_M, menus);
    select->setChecked(true);
}

void MapActions::add_changes(QMenu& menu) {
    remove_points = add(menu, tr("De&lete Points"), tr("Delete the chosen points"), Qt::Key_Delete);
    remove_curves = add(menu, tr("Delete C&urves"), tr("Delete the curves of the chosen points"),
                        QKeySequence(Qt::SHIFT | Qt::Key_Delete));
    cut_at_points = add(menu, tr("Cut at P&oints"), tr("Cut curves at the chosen points"));
    join_ends = add(menu, tr("Join T&wo Ends"), tr("Join the two chosen ends of curves"));
    reverse = add(menu, tr("Re&verse"), tr("Reverse the direction of the chosen curves"));
    connect(remove_points, &QAction::triggered, this, &MapActions::remove_chosen_points);
    connect(remove_curves, &QAction::triggered, this, &MapActions::remove_chosen_curves);
    connect(cut_at_points, &QAction::triggered, this, &MapActions::cut_at_chosen_points);
    connect(join_ends, &QAction::triggered, this, &MapActions::join_chosen_ends);
    connect(reverse, &QAction::triggered, this, &MapActions::reverse_chosen_curves);
}

void MapActions::add_settings(const Menus& menus) {
    snaps = add(*menus.map, tr("S&nap"), tr("Move new points to ends and lines close to them"));
    snaps->setCheckable(true);
    snaps->setChecked(view_.snapping().is_on);
    connect(snaps, &QAction::toggled, this, [this](bool is_on) {
        Snapping snapping = view_.snapping();
        snapping.is_on = is_on;
        view_.set_snapping(snapping);
    });
    menus.tools->addAction(snaps);
    QAction* distance =
        add(*menus.map, tr("Sna&pping Distance…"), tr("How close a point has to be to snap"));
    connect(distance, &QAction::triggered, this, [this] { open_snapping_dialog(view_); });
    add_background(*menus.map);
}

void MapActions::add_background(QMenu& menu) {
    QAction* import_action =
        add(menu, tr("Impo&rt Map…"), tr("Choose the grid and the layer of a map that is read"));
    connect(import_action, &QAction::triggered, this, [this] { import_map(view_); });
    QAction* open = add(menu, tr("Background P&icture…"), tr("Digitise over a scanned picture"));
    connect(open, &QAction::triggered, this, [this] { open_background(view_); });
    place_background = add(menu, tr("Place Back&ground"),
                           tr("Give two places of the background picture their coordinates"));
    place_background->setCheckable(true);
    place_background->setActionGroup(tools_);
    connect(place_background, &QAction::toggled, this, [this](bool is_chosen) {
        if (is_chosen) {
            view_.choose(std::make_unique<BackgroundTool>(view_));
        }
    });
    QAction* remove = add(menu, tr("Remove &Background"), tr("No picture under the map"));
    connect(remove, &QAction::triggered, this,
            [this] { view_.map().set_background(tr("Remove background"), {}); });
    const auto follow = [this, remove] {
        const bool has_background = !view_.map().background().file.isEmpty();
        place_background->setEnabled(has_background);
        remove->setEnabled(has_background);
    };
    connect(&view_.map(), &MapModel::background_changed, remove, follow);
    follow();
}

void MapActions::add_sights(QMenu& menu) {
    QAction* all = add(menu, tr("&Fit Map"), tr("Show the whole map"), Qt::Key_Home);
    connect(all, &QAction::triggered, &view_, &MapView::show_all);
    shows_labels = add(menu, tr("L&abels"), tr("Names or numbers of regions"));
    shows_problems = add(menu, tr("Problem Mar&ks"), tr("Circles around loose ends and gaps"));
    shows_triangles = add(menu, tr("&Triangles"), tr("The triangles that cover the regions"));
    for (QAction* action : {shows_labels, shows_problems, shows_triangles}) {
        action->setCheckable(true);
        action->setChecked(action != shows_triangles);
    }
    connect(shows_labels, &QAction::toggled, &view_, &MapView::set_labels_shown);
    connect(shows_problems, &QAction::toggled, &view_, &MapView::set_problems_shown);
    connect(shows_triangles, &QAction::toggled, &view_, &MapView::set_triangles_shown);
}

void MapActions::follow_chosen() {
    const bool are_chosen = !view_.chosen().empty();
    for (QAction* action : {remove_points, remove_curves, cut_at_points, join_ends, reverse}) {
        action->setEnabled(are_chosen);
    }
}

template <class Tool>
QAction* MapActions::add_tool(const QString& text, const QString& tip, Qt::Key key,
                              const Menus& menus) {
    QAction* action = add(*menus.map, text, tip, key);
    action->setCheckable(true);
    action->setActionGroup(tools_);
    menus.tools->addAction(action);
    connect(action, &QAction::toggled, this, [this](bool is_chosen) {
        if (is_chosen) {
            view_.choose(std::make_unique<Tool>(view_));
        }
    });
    return action;
}

// Keys are the map's while it has the focus.
QAction* MapActions::add(QMenu& menu, const QString& text, const QString& tip,
                         const QKeySequence& key) {
    QAction* action = menu.addAction(text);
    action->setStatusTip(tip);
    action->setToolTip(tip);
    action->setShortcut(key);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    view_.addAction(action);
    return action;
}

void MapActions::remove_chosen_points() {
    MapModel& map = view_.map();
    map.change_curves(tr("Delete points"), without(map.curves(), view_.chosen()));
}

void MapActions::remove_chosen_curves() {
    std::vector<CurveChange> changes;
    changes.reserve(view_.chosen().size());
    for (const auto& [curve, points] : view_.chosen()) {
        changes.push_back({curve, 1, {}});
    }
    view_.map().change_curves(tr("Delete curves"), std::move(changes));
}

// From the last point on, so that the numbers of those before stay; the part before the cut is the
// first.
void MapActions::cut_at_chosen_points() {
    MapModel& map = view_.map();
    std::vector<CurveChange> changes;
    changes.reserve(view_.chosen().size());
    for (const auto& [curve, points] : view_.chosen()) {
        changes.push_back({curve, 1, workbench::cut(map.curves()[curve], points)});
    }
    map.change_curves(tr("Cut curves"), std::move(changes));
}

void MapActions::join_chosen_ends() {
    std::vector<CurvePoint> ends;
    for (const auto& [curve, points] : view_.chosen()) {
        for (const int point : points) {
            ends.push_back({curve, point});
        }
    }
    MapModel& map = view_.map();
    constexpr std::size_t both = 2;
    if (ends.size() == both) {
        std::vector<CurveChange> changes = joined(map.curves(), ends.front(), ends.back());
        if (!changes.empty()) {
            map.change_curves(tr("Join ends"), std::move(changes));
            return;
        }
    }
    emit view_.hint_changed(tr("Choose two ends of curves to join them"));
}

void MapActions::reverse_chosen_curves() {
    MapModel& map = view_.map();
    const PointSet chosen = view_.chosen();
    std::vector<CurveChange> changes;
    changes.reserve(chosen.size());
    PointSet turned;
    for (const auto& [curve, points] : chosen) {
        changes.push_back({curve, 1, {reversed(map.curves()[curve])}});
        const int last = static_cast<int>(map.curves()[curve].size()) - 1;
        for (const int point : points) {
            turned[curve].insert(last - point);
        }
    }
    map.change_curves(tr("Reverse curves"), std::move(changes));
    view_.choose_points(std::move(turned));
}

} // namespace korvel::workbench
