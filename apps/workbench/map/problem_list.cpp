#include "apps/workbench/map/problem_list.h"

#include <algorithm>
#include <cmath>

#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QStringListModel>
#include <QVBoxLayout>

#include "apps/workbench/document/document.h"
#include "apps/workbench/map/map_view.h"

namespace korvel::workbench {

ProblemList::ProblemList(MapView& view)
    : QDockWidget(tr("Problems")), view_(view), problems_(new QStringListModel(this)),
      list_(new QListView), tolerance_(new QLineEdit) {
    setObjectName(QStringLiteral("problems"));
    list_->setModel(problems_);
    list_->setAccessibleName(tr("Problems"));
    list_->setUniformItemSizes(true);
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tolerance_->setPlaceholderText(tr("one step of the grid"));
    tolerance_->setAccessibleName(tr("Tolerance"));
    tolerance_->setToolTip(tr("Ends of curves closer than half of this are joined; loose ends that "
                              "come closer than this to a line are listed as gaps"));
    auto* label = new QLabel(tr("&Tolerance:"));
    label->setBuddy(tolerance_);
    auto* line = new QHBoxLayout;
    line->addWidget(label);
    line->addWidget(tolerance_);
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    column->addLayout(line);
    column->addWidget(list_);
    setWidget(page);
    MapModel* map = &view.map();
    connect(map, &MapModel::regions_changed, this, &ProblemList::list);
    connect(map, &MapModel::tolerance_changed, this, &ProblemList::show_tolerance);
    connect(tolerance_, &QLineEdit::editingFinished, this, &ProblemList::set_tolerance);
    connect(list_, &QListView::clicked, this,
            [this](const QModelIndex& index) { show_problem(index.row()); });
    connect(list_, &QListView::activated, this,
            [this](const QModelIndex& index) { show_problem(index.row()); });
}

void ProblemList::list() {
    QStringList texts;
    for (const Problem& problem : view_.map().found()->problems) {
        texts.append(problem.text);
    }
    setWindowTitle(texts.empty() ? tr("Problems") : tr("Problems (%1)").arg(texts.size()));
    problems_->setStringList(texts);
}

// With what is around it.
void ProblemList::show_problem(int row) {
    constexpr double steps = 20;
    const auto found = view_.map().found();
    kit::Rectangle part = found->problems[static_cast<std::size_t>(row)].bounds;
    const double room = std::max({steps * found->map.placement().grid.step(),
                                  part.right - part.left, part.bottom - part.top});
    part.take_in(part.left - room, part.top - room);
    part.take_in(part.right + room, part.bottom + room);
    view_.show_part(part);
}

// What is no length is not taken.
void ProblemList::set_tolerance() {
    bool is_number = false;
    const QString text = tolerance_->text().trimmed();
    const double tolerance = text.toDouble(&is_number);
    if (text.isEmpty()) {
        view_.map().set_tolerance({});
    } else if (is_number && std::isfinite(tolerance) && tolerance >= 0) {
        view_.map().set_tolerance(tolerance);
    } else {
        show_tolerance();
    }
}

void ProblemList::show_tolerance() {
    const std::optional<double> tolerance = view_.map().tolerance();
    tolerance_->setText(tolerance ? QString::fromStdString(kit::number_text(*tolerance))
                                  : QString());
}

} // namespace korvel::workbench
