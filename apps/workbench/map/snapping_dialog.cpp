#include "apps/workbench/map/snapping_dialog.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>

#include "apps/workbench/map/map_view.h"

namespace korvel::workbench {

void open_snapping_dialog(MapView& view) {
    const auto text = [](const char* source) {
        return QCoreApplication::translate("SnappingDialog", source);
    };
    auto* dialog = new QDialog(&view);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setObjectName(QStringLiteral("snapping"));
    dialog->setWindowTitle(text("Snapping"));
    auto* distance = new QDoubleSpinBox;
    distance->setDecimals(6);
    distance->setRange(0, 1e9);
    distance->setStepType(QAbstractSpinBox::AdaptiveDecimalStepType);
    distance->setValue(view.snapping().distance);
    auto* unit = new QComboBox;
    unit->addItems({text("pixels"), text("units of the map")});
    unit->setCurrentIndex(view.snapping().in_units ? 1 : 0);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    auto* form = new QFormLayout(dialog);
    form->addRow(text("&Distance:"), distance);
    form->addRow(text("&In:"), unit);
    form->addRow(buttons);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    QObject::connect(dialog, &QDialog::accepted, &view, [&view, distance, unit] {
        Snapping snapping = view.snapping();
        snapping.distance = distance->value();
        snapping.in_units = unit->currentIndex() == 1;
        view.set_snapping(snapping);
    });
    dialog->open();
}

} // namespace korvel::workbench
