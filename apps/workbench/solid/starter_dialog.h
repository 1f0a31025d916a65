#pragma once

#include <array>

#include <QDialog>

#include "apps/workbench/document/solid_operations.h"

class QCheckBox;
class QDialogButtonBox;
class QSpinBox;

namespace korvel::workbench {

class NumberEdit;

/// Asks for the place and the size of a cuboid or a ball.
class StarterDialog : public QDialog {
    Q_OBJECT

public:
    StarterDialog(bool is_ball, bool has_solids, QWidget* parent);

    Starter starter() const;

private:
    void check();

    bool is_ball_;
    std::array<NumberEdit*, 3> centre_;
    std::array<NumberEdit*, 3> lengths_;
    QSpinBox* rounds_;
    QCheckBox* adds_;
    QDialogButtonBox* buttons_;
};

} // namespace korvel::workbench
