#pragma once

#include <QDialog>

#include "apps/workbench/document/raise_map.h"

class QCheckBox;
class QComboBox;
class QDialogButtonBox;
class QRadioButton;

namespace korvel::workbench {

class NumberEdit;

/// Asks how regions become bodies.
class RaiseDialog : public QDialog {
    Q_OBJECT

public:
    /// With nothing selected all regions are raised.
    RaiseDialog(int selected, bool has_solids, QWidget* parent);

    RaiseSettings settings() const;

private:
    void check();

    QRadioButton* selected_;
    QRadioButton* all_;
    QComboBox* axis_;
    NumberEdit* low_;
    NumberEdit* high_;
    QCheckBox* only_listed_;
    QCheckBox* separate_;
    QCheckBox* adds_;
    QDialogButtonBox* buttons_;
};

} // namespace korvel::workbench
