#include "apps/workbench/solid/raise_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>
#include <QRadioButton>

#include "apps/workbench/solid/number_edit.h"

namespace korvel::workbench {

RaiseDialog::RaiseDialog(int selected, bool has_solids, QWidget* parent)
    : QDialog(parent), selected_(new QRadioButton(tr("&Selected regions (%1)").arg(selected))),
      all_(new QRadioButton(tr("&All regions"))), axis_(new QComboBox),
      low_(new NumberEdit(tr("Low level"), 0)), high_(new NumberEdit(tr("High level"), 1)),
      only_listed_(new QCheckBox(tr("&Only regions with levels of their own"))),
      separate_(new QCheckBox(tr("&Neighbours share nothing"))),
      adds_(new QCheckBox(tr("A&dd to the solids"))),
      buttons_(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel)) {
    setWindowTitle(tr("Raise Regions"));
    selected_->setEnabled(selected > 0);
    (selected > 0 ? selected_ : all_)->setChecked(true);
    axis_->addItem(tr("z (a map seen from above)"), static_cast<int>(kit::LevelAxis::z));
    axis_->addItem(tr("y (a cross-section seen from the front)"),
                   static_cast<int>(kit::LevelAxis::y));
    axis_->addItem(tr("x (a cross-section seen from the side)"),
                   static_cast<int>(kit::LevelAxis::x));
    adds_->setEnabled(has_solids);
    auto* const form = new QFormLayout(this);
    form->addRow(tr("Raise:"), selected_);
    form->addRow(QString(), all_);
    form->addRow(tr("A&long:"), axis_);
    form->addRow(tr("&From level:"), low_);
    form->addRow(tr("To le&vel:"), high_);
    form->addRow(QString(), only_listed_);
    form->addRow(QString(), separate_);
    form->addRow(QString(), adds_);
    form->addRow(buttons_);
    connect(low_, &QLineEdit::textChanged, this, &RaiseDialog::check);
    connect(high_, &QLineEdit::textChanged, this, &RaiseDialog::check);
    connect(only_listed_, &QCheckBox::toggled, this, &RaiseDialog::check);
    connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

RaiseSettings RaiseDialog::settings() const {
    RaiseSettings settings;
    settings.selected_only = selected_->isChecked();
    settings.adds = adds_->isChecked();
    settings.axis = static_cast<kit::LevelAxis>(axis_->currentData().toInt());
    settings.separate = separate_->isChecked();
    if (only_listed_->isChecked()) {
        settings.levels.reset();
    } else {
        settings.levels = kit::Levels{low_->value(), high_->value()};
    }
    return settings;
}

void RaiseDialog::check() {
    const bool needs_levels = !only_listed_->isChecked();
    low_->setEnabled(needs_levels);
    high_->setEnabled(needs_levels);
    const bool has_levels =
        low_->has_value() && high_->has_value() && low_->value() < high_->value();
    buttons_->button(QDialogButtonBox::Ok)->setEnabled(!needs_levels || has_levels);
}

} // namespace korvel::workbench
