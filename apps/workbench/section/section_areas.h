#pragma once

#include <memory>
#include <string>
#include <vector>

#include <QAbstractTableModel>

#include "kit/kit.h"

namespace korvel::workbench {

class Document;

/// The legend of the section: a row for each body that was cut, and one for all.
class SectionAreas : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit SectionAreas(Document& document, QObject* parent = nullptr);

    enum Column { body, name, polygons, area, column_count };

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// The number of the body in a row; −1 for the last row.
    int body_in(int row) const;

    /// The table as lines of words between tabulators, for other programs.
    QString text() const;

private:
    void update();
    QString word(int row, int column) const;

    Document& document_;
    std::shared_ptr<const kit::Section> section_;
};

} // namespace korvel::workbench
