#pragma once

#include <QAction>
#include <QActionGroup>
#include <QObject>

#include "apps/workbench/actions/menus.h"

namespace korvel::workbench {

class MapView;

/// The actions of the map: its tools, changes of what is chosen, and what is shown.
class MapActions : public QObject {
    Q_OBJECT

public:
    MapActions(MapView& view, const Menus& menus);

    QAction* select = nullptr;
    QAction* draw = nullptr;
    QAction* edit = nullptr;
    QAction* cut = nullptr;
    QAction* join = nullptr;
    QAction* measure = nullptr;

    QAction* place_background = nullptr;

    QAction* remove_points = nullptr;
    QAction* remove_curves = nullptr;
    QAction* cut_at_points = nullptr;
    QAction* join_ends = nullptr;
    QAction* reverse = nullptr;

    QAction* snaps = nullptr;
    QAction* shows_triangles = nullptr;
    QAction* shows_labels = nullptr;
    QAction* shows_problems = nullptr;

private:
    void add_tools(const Menus& menus);
    void add_changes(QMenu& menu);
    void add_settings(const Menus& menus);
    void add_background(QMenu& menu);
    void add_sights(QMenu& menu);
    void follow_chosen();

    template <class Tool>
    QAction* add_tool(const QString& text, const QString& tip, Qt::Key key, const Menus& menus);
    QAction* add(QMenu& menu, const QString& text, const QString& tip,
                 const QKeySequence& key = {});

    void remove_chosen_points();
    void remove_chosen_curves();
    void cut_at_chosen_points();
    void join_chosen_ends();
    void reverse_chosen_curves();

    MapView& view_;
    QActionGroup* tools_ = nullptr;
};

} // namespace korvel::workbench
