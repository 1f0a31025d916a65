#pragma once

#include <QDockWidget>

class QLineEdit;
class QListView;
class QStringListModel;

namespace korvel::workbench {

class MapView;

/// The places of the map that may need attention, and the tolerance on which they depend. A click
/// on one shows it in the map.
class ProblemList : public QDockWidget {
    Q_OBJECT

public:
    explicit ProblemList(MapView& view);

private:
    void list();
    void show_problem(int row);
    void set_tolerance();
    void show_tolerance();

    MapView& view_;
    QStringListModel* problems_ = nullptr;
    QListView* list_ = nullptr;
    QLineEdit* tolerance_ = nullptr;
};

} // namespace korvel::workbench
