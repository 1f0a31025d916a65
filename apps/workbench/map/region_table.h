#pragma once

#include <QDockWidget>

class QSortFilterProxyModel;
class QTableView;

namespace korvel::workbench {

class MapView;
class RegionModel;

/// The regions in a table that can be sorted and edited. What is selected there is selected in the
/// map, and the other way round.
class RegionTable : public QDockWidget {
    Q_OBJECT

public:
    explicit RegionTable(MapView& view);

private:
    void select_in_map();
    void select_here();

    MapView& view_;
    RegionModel* regions_ = nullptr;
    QSortFilterProxyModel* sorted_ = nullptr;
    QTableView* table_ = nullptr;
    bool is_following_ = false; // the map's selection, or the map follows this one
};

} // namespace korvel::workbench
