#include "apps/workbench/map/region_table.h"

#include <utility>

#include <QHeaderView>
#include <QScopedValueRollback>
#include <QSortFilterProxyModel>
#include <QTableView>

#include "apps/workbench/document/document.h"
#include "apps/workbench/map/map_view.h"
#include "apps/workbench/map/region_model.h"

namespace korvel::workbench {

RegionTable::RegionTable(MapView& view)
    : QDockWidget(tr("Regions")), view_(view), regions_(new RegionModel(view.map(), this)),
      sorted_(new QSortFilterProxyModel(this)), table_(new QTableView) {
    setObjectName(QStringLiteral("regions"));
    sorted_->setSourceModel(regions_);
    sorted_->setSortRole(RegionModel::sorted_by);
    table_->setModel(sorted_);
    table_->setAccessibleName(tr("Regions"));
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSortingEnabled(true);
    table_->sortByColumn(RegionModel::number, Qt::AscendingOrder);
    table_->setWordWrap(false);
    table_->verticalHeader()->hide();
    constexpr int row_margin = 6;
    table_->verticalHeader()->setDefaultSectionSize(table_->fontMetrics().height() + row_margin);
    table_->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    for (const auto& [column, widest] :
         {std::pair(RegionModel::number, "Regions ▼  "), std::pair(RegionModel::name, "Name of it"),
          std::pair(RegionModel::area, "1234567890.5  "),
          std::pair(RegionModel::neighbours, "Neighbours ▼ 00"),
          std::pair(RegionModel::low, "Low ▼ 00"), std::pair(RegionModel::high, "High ▼ 00")}) {
        table_->setColumnWidth(column,
                               table_->fontMetrics().horizontalAdvance(QString::fromUtf8(widest)));
    }
    table_->horizontalHeader()->setStretchLastSection(true);
    setWidget(table_);
    connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &RegionTable::select_in_map);
    connect(&view.map(), &MapModel::selection_changed, this, &RegionTable::select_here);
}

void RegionTable::select_in_map() {
    if (is_following_) {
        return;
    }
    const QScopedValueRollback following(is_following_, true);
    std::set<int> regions;
    for (const QModelIndex& row : table_->selectionModel()->selectedRows()) {
        regions.insert(sorted_->mapToSource(row).row());
    }
    view_.map().select(std::move(regions));
}

void RegionTable::select_here() {
    if (is_following_) {
        return;
    }
    const QScopedValueRollback following(is_following_, true);
    QItemSelection rows;
    QModelIndex first;
    for (const int region : view_.map().selected()) {
        const QModelIndex row = sorted_->mapFromSource(regions_->index(region, 0));
        rows.append(QItemSelectionRange(row, row.siblingAtColumn(RegionModel::columns - 1)));
        first = first.isValid() ? first : row;
    }
    table_->selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect);
    if (first.isValid()) {
        table_->scrollTo(first);
    }
}

} // namespace korvel::workbench
