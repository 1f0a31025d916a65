#include "apps/workbench/solid/bodies_model.h"

#include <array>

#include <QColor>

namespace korvel::workbench {

BodiesModel::BodiesModel(SolidModel& solids, QObject* parent)
    : QAbstractTableModel(parent), solids_(solids) {
    connect(&solids_, &SolidModel::solids_changed, this, &BodiesModel::reset);
    connect(&solids_, &SolidModel::bodies_changed, this, &BodiesModel::repaint);
    connect(&solids_, &SolidModel::hidden_changed, this, &BodiesModel::repaint);
    reset();
}

void BodiesModel::reset() {
    const int rows = solids_.drawn().size();
    if (rows != rows_) {
        beginResetModel();
        rows_ = rows;
        measures_.clear();
        endResetModel();
    }
    repaint();
    solids_.follow("bodies", [this](kit::SolidsEditor& editor, const kit::Context& context) {
        const kit::Solids& solids = editor.solids();
        std::vector<Measure> measures;
        measures.reserve(static_cast<std::size_t>(solids.size()));
        for (const kit::Body body : solids) {
            context.stop_if_requested("measuring bodies");
            measures.push_back(
                {body.volume(), QString::fromStdString(kit::state_text(body.surface()))});
        }
        return [this, measures = std::move(measures)] {
            measures_ = measures;
            repaint();
        };
    });
}

void BodiesModel::repaint() {
    if (rows_ > 0) {
        emit dataChanged(index(0, 0), index(rows_ - 1, columns - 1));
    }
}

int BodiesModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : rows_;
}

int BodiesModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(columns);
}

QVariant BodiesModel::data(const QModelIndex& index, int role) const {
    const int body = index.row();
    if (!index.isValid() || body >= solids_.drawn().size()) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return text(body, index.column());
    case Qt::CheckStateRole:
        return index.column() == number
                   ? QVariant(solids_.hidden().contains(body) ? Qt::Unchecked : Qt::Checked)
                   : QVariant();
    case Qt::DecorationRole:
        if (index.column() == colour) {
            const kit::Colour rgb = solids_.drawn()[body].colour().rgb();
            return QColor(rgb.red, rgb.green, rgb.blue);
        }
        return {};
    case Qt::TextAlignmentRole:
        return index.column() == volume ? QVariant(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
    default:
        return {};
    }
}

QVariant BodiesModel::text(int body, int column) const {
    constexpr int digits = 8;
    const kit::Body record = solids_.drawn()[body];
    const auto row = static_cast<std::size_t>(body);
    switch (column) {
    case number:
        return body;
    case name:
        return QString::fromStdString(record.name());
    case colour:
        return QString::fromStdString(kit::colour_text(record.colour().rgb()));
    case volume:
        return row < measures_.size() ? QString::number(measures_[row].volume, 'g', digits)
                                      : QString();
    default:
        return row < measures_.size() ? measures_[row].state : QString();
    }
}

bool BodiesModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role == Qt::CheckStateRole) {
        std::set<int> hidden = solids_.hidden();
        if (value.toInt() == Qt::Checked) {
            hidden.erase(index.row());
        } else {
            hidden.insert(index.row());
        }
        solids_.set_hidden(std::move(hidden));
        return true;
    }
    if (role == Qt::EditRole && index.column() == name && index.row() < solids_.drawn().size()) {
        if (value.toString() != text(index.row(), name).toString()) {
            solids_.set_name(index.row(), value.toString());
        }
        return true;
    }
    return false;
}

QVariant BodiesModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    const std::array titles = {tr("Body"), tr("Name"), tr("Colour"), tr("Volume"), tr("Surface")};
    return titles[static_cast<std::size_t>(section)];
}

Qt::ItemFlags BodiesModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    flags.setFlag(Qt::ItemIsUserCheckable, index.column() == number);
    flags.setFlag(Qt::ItemIsEditable, index.column() == name);
    return flags;
}

// Greys have no hue; red is 360 degrees.
kit::BodyColour body_colour(const QColor& colour) {
    constexpr double full_turn = 360;
    const double hue = full_turn * colour.hslHueF();
    return {.hue = hue > 0 ? hue : full_turn,
            .saturation = colour.hslSaturationF(),
            .lightness = colour.lightnessF(),
            .alpha = colour.alphaF()};
}

} // namespace korvel::workbench
