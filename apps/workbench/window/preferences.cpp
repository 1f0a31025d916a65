#include "apps/workbench/window/preferences.h"

#include <algorithm>

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPalette>
#include <QSettings>
#include <QSpinBox>
#include <QStyle>

namespace korvel::workbench {
namespace {

constexpr const char* palette_key = "palette";
constexpr const char* undo_key = "undo-megabytes";
constexpr std::size_t megabyte = std::size_t{1} << 20U;
constexpr int most_megabytes = 64 * 1024;

QPalette light_palette();
QPalette dark_palette();
QPalette palette_of(const QColor& page, const QColor& window, const QColor& button,
                    const QColor& text, const QColor& faint, const QColor& marked);

} // namespace

Preferences Preferences::load() {
    const QSettings settings;
    Preferences preferences;
    const int palette = settings.value(QLatin1String(palette_key), 0).toInt();
    if (palette > 0 && palette <= static_cast<int>(Palette::dark)) {
        preferences.palette = static_cast<Palette>(palette);
    }
    const int megabytes = settings.value(QLatin1String(undo_key), 1024).toInt();
    preferences.undo_memory =
        static_cast<std::size_t>(std::clamp(megabytes, 1, most_megabytes)) * megabyte;
    return preferences;
}

void Preferences::save() const {
    QSettings settings;
    settings.setValue(QLatin1String(palette_key), static_cast<int>(palette));
    settings.setValue(QLatin1String(undo_key), static_cast<int>(undo_memory / megabyte));
}

void Preferences::apply_palette() const {
    switch (palette) {
    case Palette::system:
        QApplication::setPalette(QPalette()); // the style's own
        break;
    case Palette::light:
        QApplication::setPalette(light_palette());
        break;
    case Palette::dark:
        QApplication::setPalette(dark_palette());
        break;
    }
}

PreferencesDialog::PreferencesDialog(const Preferences& preferences, QWidget* parent)
    : QDialog(parent), palette_(new QComboBox(this)), undo_megabytes_(new QSpinBox(this)) {
    setWindowTitle(tr("Preferences"));
    palette_->addItems({tr("As the system"), tr("Light"), tr("Dark")});
    palette_->setCurrentIndex(static_cast<int>(preferences.palette));
    undo_megabytes_->setRange(1, most_megabytes);
    undo_megabytes_->setSuffix(tr(" MiB"));
    undo_megabytes_->setValue(static_cast<int>(preferences.undo_memory / megabyte));
    undo_megabytes_->setToolTip(tr("The last 100 steps are kept whatever they take"));
    auto* layout = new QFormLayout(this);
    layout->addRow(tr("&Colours:"), palette_);
    layout->addRow(tr("&Memory for undo:"), undo_megabytes_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addRow(buttons);
}

Preferences PreferencesDialog::preferences() const {
    return {.palette = static_cast<Preferences::Palette>(palette_->currentIndex()),
            .undo_memory = static_cast<std::size_t>(undo_megabytes_->value()) * megabyte};
}

namespace {

QPalette light_palette() {
    return palette_of(Qt::white, {239, 239, 239}, {239, 239, 239}, Qt::black, {120, 120, 120},
                      {48, 140, 198});
}

QPalette dark_palette() {
    return palette_of({35, 38, 41}, {49, 54, 59}, {59, 64, 69}, {239, 240, 241}, {127, 133, 139},
                      {61, 174, 233});
}

QPalette palette_of(const QColor& page, const QColor& window, const QColor& button,
                    const QColor& text, const QColor& faint, const QColor& marked) {
    QPalette palette(button, window);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, faint);
    }
    palette.setColor(QPalette::PlaceholderText, faint);
    palette.setColor(QPalette::Base, page);
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::ToolTipBase, window);
    palette.setColor(QPalette::Highlight, marked);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, marked);
    return palette;
}

} // namespace
} // namespace korvel::workbench
