#pragma once

#include <array>
#include <optional>

#include <QDialog>

#include "apps/workbench/document/typed_move.h"

class QComboBox;
class QDialogButtonBox;
class QRadioButton;
class QSpinBox;

namespace korvel::workbench {

class NumberEdit;

/// Asks for a move by coordinates.
class MoveDialog : public QDialog {
    Q_OBJECT

public:
    /// With the numbers of what was picked last, if there is one.
    MoveDialog(const kit::Solids& solids, const std::optional<kit::Pick>& pick, QWidget* parent);

    TypedMove move() const;

private:
    void choose_kind();
    void check();

    int vertices_;
    int bodies_;
    std::optional<kit::Pick> pick_;
    QComboBox* kind_;
    QSpinBox* number_;
    QSpinBox* depth_;
    QRadioButton* by_;
    QRadioButton* to_;
    std::array<NumberEdit*, 3> xyz_;
    QDialogButtonBox* buttons_;
};

} // namespace korvel::workbench
