#include "apps/workbench/solid/starter_dialog.h"

#include <algorithm>

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>
#include <QSpinBox>

#include "apps/workbench/solid/number_edit.h"

namespace korvel::workbench {

StarterDialog::StarterDialog(bool is_ball, bool has_solids, QWidget* parent)
    : QDialog(parent), is_ball_(is_ball), centre_{new NumberEdit(tr("Middle x"), 0),
                                                  new NumberEdit(tr("Middle y"), 0),
                                                  new NumberEdit(tr("Middle z"), 0)},
      lengths_{new NumberEdit(is_ball ? tr("Radius") : tr("Length along x"), 10),
               new NumberEdit(tr("Length along y"), 10), new NumberEdit(tr("Length along z"), 10)},
      rounds_(new QSpinBox), adds_(new QCheckBox(tr("A&dd to the solids"))),
      buttons_(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel)) {
    constexpr int most_rounds = 8;
    setWindowTitle(is_ball ? tr("New Ball") : tr("New Cuboid"));
    rounds_->setRange(0, most_rounds);
    rounds_->setValue(is_ball ? 3 : 0);
    rounds_->setAccessibleName(tr("Rounds of refinement"));
    rounds_->setToolTip(tr("Each round divides every face into four"));
    adds_->setChecked(has_solids);
    adds_->setEnabled(has_solids);
    auto* const form = new QFormLayout(this);
    for (NumberEdit* const edit : centre_) {
        form->addRow(edit->accessibleName() + QLatin1Char(':'), edit);
    }
    for (NumberEdit* const edit : lengths_) {
        if (is_ball && edit != lengths_[0]) {
            edit->setParent(this);
            edit->hide();
        } else {
            form->addRow(edit->accessibleName() + QLatin1Char(':'), edit);
        }
    }
    form->addRow(tr("&Rounds of refinement:"), rounds_);
    form->addRow(QString(), adds_);
    form->addRow(buttons_);
    for (const auto& edits : {centre_, lengths_}) {
        for (NumberEdit* const edit : edits) {
            connect(edit, &QLineEdit::textChanged, this, &StarterDialog::check);
        }
    }
    connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

Starter StarterDialog::starter() const {
    Starter starter;
    starter.is_ball = is_ball_;
    for (std::size_t k = 0; k < 3; ++k) {
        starter.centre[k] = centre_[k]->value();
        starter.lengths[k] = lengths_[k]->value();
    }
    starter.rounds = rounds_->value();
    starter.adds = adds_->isChecked();
    return starter;
}

void StarterDialog::check() {
    const bool is_sound = std::all_of(centre_.begin(), centre_.end(),
                                      [](const NumberEdit* edit) { return edit->has_value(); }) &&
                          std::all_of(lengths_.begin(), lengths_.end(), [](const NumberEdit* edit) {
                              return edit->has_value() && edit->value() > 0;
                          });
    buttons_->button(QDialogButtonBox::Ok)->setEnabled(is_sound);
}

} // namespace korvel::workbench
