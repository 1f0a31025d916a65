#pragma once

#include <QLineEdit>
#include <QLocale>

namespace korvel::workbench {

/// A line for a number, with a point before the decimals as files have it.
class NumberEdit : public QLineEdit {
    Q_OBJECT

public:
    NumberEdit(const QString& name, double value, QWidget* parent = nullptr) : QLineEdit(parent) {
        setAccessibleName(name);
        setText(QLocale::c().toString(value, 'g', QLocale::FloatingPointShortest));
    }

    bool has_value() const {
        bool is_number = false;
        const double number = QLocale::c().toDouble(text().trimmed(), &is_number);
        return is_number && qIsFinite(number);
    }
    double value() const { return QLocale::c().toDouble(text().trimmed()); }
};

} // namespace korvel::workbench
