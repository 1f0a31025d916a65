#pragma once

#include <vector>

#include <QAbstractTableModel>

#include "apps/workbench/document/solid_model.h"

namespace korvel::workbench {

/// The bodies as rows of a table: number with a check mark for those that are shown, name, colour,
/// volume, and whether it is closed. The last two come from the worker a moment after a change.
class BodiesModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { number, name, colour, volume, state, columns };

    explicit BodiesModel(SolidModel& solids, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    struct Measure {
        double volume = 0;
        QString state;
    };
    void reset();
    void repaint();
    QVariant text(int body, int column) const;

    SolidModel& solids_;
    int rows_ = 0;
    std::vector<Measure> measures_;
};

/// Between the colours of the screen and of bodies.
kit::BodyColour body_colour(const class QColor& colour);

} // namespace korvel::workbench
