#include "apps/workbench/section/section_areas.h"

#include <QColor>

#include "apps/workbench/document/document.h"

namespace korvel::workbench {

SectionAreas::SectionAreas(Document& document, QObject* parent)
    : QAbstractTableModel(parent), document_(document) {
    connect(&document_.section(), &SectionModel::section_changed, this, &SectionAreas::update);
}

void SectionAreas::update() {
    beginResetModel();
    section_ = document_.section().section();
    endResetModel();
}

int SectionAreas::rowCount(const QModelIndex& parent) const {
    const bool has_rows = section_ != nullptr && !parent.isValid();
    return has_rows ? static_cast<int>(section_->bodies().size()) + 1 : 0;
}

int SectionAreas::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(column_count);
}

int SectionAreas::body_in(int row) const {
    const bool is_body = row >= 0 && row + 1 < rowCount();
    return is_body ? section_->bodies()[static_cast<std::size_t>(row)].body : -1;
}

QVariant SectionAreas::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) {
        return {};
    }
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole) {
        return word(index.row(), index.column());
    }
    if (role == Qt::TextAlignmentRole && index.column() != name) {
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    }
    const bool is_body = body_in(index.row()) >= 0;
    if (role == Qt::DecorationRole && index.column() == body && is_body) {
        const kit::SectionBody& cut = section_->bodies()[static_cast<std::size_t>(index.row())];
        const kit::Colour colour = (*section_)[cut.polygons.front()].colour();
        return QColor(colour.red, colour.green, colour.blue);
    }
    return {};
}

QVariant SectionAreas::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal) {
        return {};
    }
    const QStringList titles = {tr("Body"), tr("Name"), tr("Polygons"), tr("Area")};
    return titles.value(section);
}

QString SectionAreas::text() const {
    QString lines;
    QStringList titles;
    for (int column = 0; column < column_count; ++column) {
        titles.append(headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());
    }
    lines += titles.join(QLatin1Char('\t')) + QLatin1Char('\n');
    for (int row = 0; row < rowCount(); ++row) {
        QStringList words;
        for (int column = 0; column < column_count; ++column) {
            words.append(word(row, column));
        }
        lines += words.join(QLatin1Char('\t')) + QLatin1Char('\n');
    }
    return lines;
}

// The section may be older than the solids, until the next one is cut.
QString SectionAreas::word(int row, int column) const {
    const int number = body_in(row);
    if (number < 0) {
        return column == body       ? tr("All")
               : column == polygons ? QString::number(section_->size())
               : column == area     ? QString::fromStdString(kit::number_text(section_->area()))
                                    : QString();
    }
    const kit::SectionBody& cut = section_->bodies()[static_cast<std::size_t>(row)];
    const kit::Solids& solids = document_.solids().solids();
    switch (column) {
    case body:
        return QString::number(number);
    case name:
        return number < solids.size() ? QString::fromStdString(solids[number].name()) : QString();
    case polygons:
        return QString::number(cut.polygons.size());
    default:
        return QString::fromStdString(kit::number_text(cut.area));
    }
}

} // namespace korvel::workbench
