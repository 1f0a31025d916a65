#include "apps/workbench/solid/bodies_dock.h"

#include <set>

#include <QColorDialog>
#include <QHeaderView>
#include <QItemSelection>
#include <QTableView>

#include "apps/workbench/solid/bodies_model.h"

namespace korvel::workbench {

BodiesDock::BodiesDock(SolidModel& solids, QWidget* parent)
    : QDockWidget(tr("Bodies"), parent), solids_(solids), model_(new BodiesModel(solids, this)),
      table_(new QTableView(this)) {
    setObjectName(QStringLiteral("bodies"));
    table_->setAccessibleName(tr("Bodies"));
    table_->setModel(model_);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->verticalHeader()->hide();
    QHeaderView& columns = *table_->horizontalHeader();
    columns.setSectionResizeMode(QHeaderView::ResizeToContents);
    columns.setResizeContentsPrecision(0); // the rows that are seen
    columns.setStretchLastSection(true);
    setWidget(table_);
    connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &BodiesDock::give_selection);
    connect(&solids_, &SolidModel::selection_changed, this, &BodiesDock::take_selection);
    connect(model_, &QAbstractItemModel::modelReset, this, &BodiesDock::take_selection);
    connect(table_, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
        if (index.column() == BodiesModel::colour) {
            choose_colour(index.row());
        }
    });
}

void BodiesDock::choose_colour(int body) {
    const kit::BodyColour before = solids_.drawn()[body].colour();
    const kit::Colour rgb = before.rgb();
    QColor shown(rgb.red, rgb.green, rgb.blue);
    shown.setAlphaF(static_cast<float>(before.alpha));
    auto* const dialog = new QColorDialog(shown, this);
    dialog->setOption(QColorDialog::ShowAlphaChannel);
    dialog->setWindowTitle(tr("Colour of Body %1").arg(body));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QColorDialog::colorSelected, this, [this, body](const QColor& colour) {
        if (body < solids_.drawn().size()) {
            solids_.set_colour(body, body_colour(colour));
        }
    });
    dialog->open();
}

void BodiesDock::take_selection() {
    is_taking_ = true;
    QItemSelection rows;
    for (const int body : solids_.selected()) {
        rows.select(model_->index(body, 0), model_->index(body, BodiesModel::columns - 1));
    }
    table_->selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect);
    if (solids_.selected().size() == 1) {
        table_->scrollTo(model_->index(*solids_.selected().begin(), 0));
    }
    is_taking_ = false;
}

void BodiesDock::give_selection() {
    if (is_taking_) {
        return;
    }
    std::set<int> bodies;
    for (const QModelIndex& row : table_->selectionModel()->selectedRows()) {
        bodies.insert(row.row());
    }
    if (bodies != solids_.selected()) {
        solids_.select(std::move(bodies));
    }
}

} // namespace korvel::workbench
