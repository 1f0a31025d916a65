#pragma once

#include <cstddef>

#include <QDialog>
#include <QString>

class QComboBox;
class QSpinBox;

namespace korvel::workbench {

/// What the user has chosen for all documents; kept in the settings of the program.
struct Preferences {
    enum class Palette { system, light, dark };
    Palette palette = Palette::system;
    std::size_t undo_memory = std::size_t{1} << 30U; ///< bytes, see `History::set_memory_limit`

    static Preferences load();
    void save() const;

    /// Gives the whole program its colours.
    void apply_palette() const;
};

class PreferencesDialog : public QDialog {
    Q_OBJECT

public:
    explicit PreferencesDialog(const Preferences& preferences, QWidget* parent = nullptr);

    /// What is chosen in the dialog.
    Preferences preferences() const;

private:
    QComboBox* palette_;
    QSpinBox* undo_megabytes_;
};

} // namespace korvel::workbench
