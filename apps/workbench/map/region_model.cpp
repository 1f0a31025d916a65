#include "apps/workbench/map/region_model.h"

#include <cmath>
#include <optional>

#include "apps/workbench/document/map_model.h"

namespace korvel::workbench {
namespace {

std::optional<double> number_in(const QVariant& value);

} // namespace

RegionModel::RegionModel(MapModel& map, QObject* parent) : QAbstractTableModel(parent), map_(map) {
    connect(&map, &MapModel::regions_changed, this, [this] {
        beginResetModel();
        found_ = map_.found();
        endResetModel();
    });
}

int RegionModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() || found_ == nullptr ? 0 : found_->map.size();
}

int RegionModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns;
}

QVariant RegionModel::data(const QModelIndex& index, int role) const {
    const auto region = static_cast<std::size_t>(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return text(region, index.column());
    case Qt::ToolTipRole:
        return index.column() == neighbours ? text(region, neighbours) : QVariant();
    case Qt::TextAlignmentRole:
        return index.column() == name || index.column() == neighbours
                   ? QVariant()
                   : QVariant(Qt::AlignRight | Qt::AlignVCenter);
    case sorted_by:
        return value(region, index.column());
    default:
        return {};
    }
}

QVariant RegionModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case number:
        return tr("Region");
    case name:
        return tr("Name");
    case area:
        return tr("Area");
    case neighbours:
        return tr("Neighbours");
    case low:
        return tr("Low");
    default:
        return tr("High");
    }
}

Qt::ItemFlags RegionModel::flags(const QModelIndex& index) const {
    const bool can_edit = index.column() == name || index.column() == low || index.column() == high;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable |
           (can_edit ? Qt::ItemIsEditable : Qt::NoItemFlags);
}

// A level alone has the usual one beside it.
bool RegionModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::EditRole || found_ == nullptr || found_ != map_.found()) {
        return false;
    }
    const int region = index.row();
    std::string text = found_->map[region].name();
    std::optional<kit::Levels> levels = found_->levels[static_cast<std::size_t>(region)];
    if (index.column() == name) {
        text = value.toString().trimmed().toStdString();
    } else if (value.toString().trimmed().isEmpty()) {
        levels.reset();
    } else if (const auto level = number_in(value)) {
        kit::Levels changed = levels.value_or(kit::Levels());
        (index.column() == low ? changed.low : changed.high) = *level;
        levels = changed;
    } else {
        return false;
    }
    map_.set_note(region, text, levels);
    return true;
}

QVariant RegionModel::value(std::size_t region, int column) const {
    switch (column) {
    case number:
        return static_cast<int>(region);
    case area:
        return found_->areas[region];
    case neighbours:
        return static_cast<int>(found_->neighbours[region].size());
    case low:
        return found_->levels[region] ? QVariant(found_->levels[region]->low) : QVariant();
    case high:
        return found_->levels[region] ? QVariant(found_->levels[region]->high) : QVariant();
    default:
        return text(region, column);
    }
}

QString RegionModel::text(std::size_t region, int column) const {
    if (column == name) {
        return QString::fromStdString(found_->map[static_cast<int>(region)].name());
    }
    if (column == neighbours) {
        QStringList numbers;
        for (const int other : found_->neighbours[region]) {
            numbers.append(QString::number(other));
        }
        return numbers.join(QStringLiteral(", "));
    }
    const QVariant number = value(region, column);
    return number.isNull() ? QString()
                           : QString::fromStdString(kit::number_text(number.toDouble()));
}

namespace {

std::optional<double> number_in(const QVariant& value) {
    bool is_number = false;
    const double number = value.toString().trimmed().toDouble(&is_number);
    return is_number && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

} // namespace
} // namespace korvel::workbench
