#pragma once

#include <memory>

#include <QAbstractTableModel>

#include "apps/workbench/document/find_map.h"

namespace korvel::workbench {

class MapModel;

/// The regions of a map as a table, row k for region k. Name and levels can be edited, as steps of
/// the history; empty levels are none.
class RegionModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { number, name, area, neighbours, low, high, columns };

    /// The role of values to sort by.
    static constexpr int sorted_by = Qt::UserRole;

    explicit RegionModel(MapModel& map, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

private:
    QVariant value(std::size_t region, int column) const;
    QString text(std::size_t region, int column) const;

    MapModel& map_;
    std::shared_ptr<const FoundMap> found_; // that the rows are of
};

} // namespace korvel::workbench
