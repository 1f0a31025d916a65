#include "apps/workbench/solid/move_dialog.h"

#include <algorithm>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>

#include "apps/workbench/solid/number_edit.h"

namespace korvel::workbench {

MoveDialog::MoveDialog(const kit::Solids& solids, const std::optional<kit::Pick>& pick,
                       QWidget* parent)
    : QDialog(parent), vertices_(solids.vertex_count()), bodies_(solids.size()), pick_(pick),
      kind_(new QComboBox), number_(new QSpinBox), depth_(new QSpinBox),
      by_(new QRadioButton(tr("&By"))),
      to_(new QRadioButton(tr("&To"))), xyz_{new NumberEdit(tr("x"), 0), new NumberEdit(tr("y"), 0),
                                             new NumberEdit(tr("z"), 0)},
      buttons_(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel)) {
    constexpr int most_depth = 50;
    setWindowTitle(tr("Move"));
    kind_->addItems({tr("Vertex"), tr("Body")});
    kind_->setAccessibleName(tr("What moves"));
    number_->setAccessibleName(tr("Number"));
    depth_->setRange(0, most_depth);
    depth_->setToolTip(tr("Vertices up to so many edges away move along, less and less in x and y "
                          "and alike in z"));
    by_->setChecked(true);
    auto* const form = new QFormLayout(this);
    form->addRow(tr("&What:"), kind_);
    form->addRow(tr("&Number:"), number_);
    form->addRow(tr("&Edges around it:"), depth_);
    form->addRow(tr("Move:"), by_);
    form->addRow(QString(), to_);
    for (NumberEdit* const edit : xyz_) {
        form->addRow(edit->accessibleName() + QLatin1Char(':'), edit);
        connect(edit, &QLineEdit::textChanged, this, &MoveDialog::check);
    }
    form->addRow(buttons_);
    connect(kind_, &QComboBox::currentIndexChanged, this, &MoveDialog::choose_kind);
    connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
    choose_kind();
}

TypedMove MoveDialog::move() const {
    return {.is_body = kind_->currentIndex() == 1,
            .number = number_->value(),
            .depth = depth_->value(),
            .is_place = to_->isChecked(),
            .xyz = {xyz_[0]->value(), xyz_[1]->value(), xyz_[2]->value()}};
}

void MoveDialog::choose_kind() {
    const bool is_body = kind_->currentIndex() == 1;
    number_->setRange(0, std::max(0, (is_body ? bodies_ : vertices_) - 1));
    if (pick_) {
        number_->setValue(is_body ? pick_->body : pick_->vertex);
    }
    depth_->setEnabled(!is_body);
}

void MoveDialog::check() {
    buttons_->button(QDialogButtonBox::Ok)
        ->setEnabled(std::all_of(xyz_.begin(), xyz_.end(),
                                 [](const NumberEdit* edit) { return edit->has_value(); }));
}

} // namespace korvel::workbench
