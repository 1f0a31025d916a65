#include "apps/workbench/map/background_dialog.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QImageReader>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

#include "apps/workbench/document/document.h"
#include "apps/workbench/flat/number_shown.h"
#include "apps/workbench/map/background_tool.h"
#include "apps/workbench/map/map_view.h"

namespace korvel::workbench {
namespace {

QString background_text(const char* source);
Background across_view(const MapView& view, const QString& file, const QSize& size);
kit::Point2 pixel_at(const Background& background, const kit::Point2& user);
std::optional<kit::Point2> point_in(const QLineEdit& x, const QLineEdit& y);

// The coordinates of two places.
class PlacesDialog : public QDialog {
public:
    PlacesDialog(MapView& view, const std::array<kit::Point2, 2>& places);

private:
    void check();
    void take();
    std::optional<Background> background() const;

    MapView& view_;
    std::array<kit::Point2, 2> pixels_ = {};
    std::array<QLineEdit*, 4> numbers_ = {}; // x and y of the first, then of the second
    QPushButton* ok_ = nullptr;
};

} // namespace

void open_background(MapView& view) {
    const QString file = QFileDialog::getOpenFileName(
        &view, background_text("Background Picture"), QString(),
        background_text("Pictures (*.png *.jpg *.jpeg *.PNG *.JPG *.JPEG);;All files (*)"));
    if (!file.isEmpty()) {
        take_background_file(view, file);
    }
}

void take_background_file(MapView& view, const QString& file) {
    QImageReader reader(file);
    const QSize size = reader.size();
    if (!reader.canRead() || size.isEmpty()) {
        QMessageBox::warning(&view, background_text("Background Picture"),
                             QStringLiteral("%1: %2").arg(file, reader.errorString()));
        return;
    }
    view.map().set_background(background_text("Set background"), across_view(view, file, size));
}

void ask_background_places(MapView& view, const std::array<kit::Point2, 2>& places) {
    auto* dialog = new PlacesDialog(view, places);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

namespace {

QString background_text(const char* source) {
    return QCoreApplication::translate("BackgroundDialog", source);
}

Background across_view(const MapView& view, const QString& file, const QSize& size) {
    const kit::Rectangle part = view.viewport().part();
    const double unit =
        std::max((part.right - part.left) / size.width(), (part.bottom - part.top) / size.height());
    Background background;
    background.file = file;
    background.to_user = {unit, 0, part.left, 0, -unit, part.bottom};
    return background;
}

PlacesDialog::PlacesDialog(MapView& view, const std::array<kit::Point2, 2>& places)
    : QDialog(&view), view_(view) {
    setObjectName(QStringLiteral("places"));
    setWindowTitle(background_text("Place Background Picture"));
    auto* form = new QFormLayout(this);
    form->addRow(new QLabel(background_text("Coordinates of the two places of the picture:")));
    static constexpr std::array names = {"&x of the first", "&y of the first", "x of the &second",
                                         "y of &the second"};
    const double unit = view.viewport().unit();
    for (std::size_t i = 0; i < numbers_.size(); ++i) {
        numbers_[i] = new QLineEdit(number_shown(places[i / 2][i % 2], unit));
        numbers_[i]->setObjectName(QStringLiteral("number%1").arg(i));
        form->addRow(background_text(names[i]), numbers_[i]);
        connect(numbers_[i], &QLineEdit::textChanged, this, &PlacesDialog::check);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    ok_ = buttons->button(QDialogButtonBox::Ok);
    form->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(this, &QDialog::accepted, this, &PlacesDialog::take);
    const Background& background = view.map().background();
    pixels_ = {pixel_at(background, places[0]), pixel_at(background, places[1])};
    check();
}

void PlacesDialog::check() {
    ok_->setEnabled(background().has_value());
}

void PlacesDialog::take() {
    if (auto background = this->background()) {
        view_.map().set_background(background_text("Place background"), std::move(*background));
    }
}

std::optional<Background> PlacesDialog::background() const {
    const auto first = point_in(*numbers_[0], *numbers_[1]);
    const auto second = point_in(*numbers_[2], *numbers_[3]);
    return first && second ? placed(view_.map().background(), pixels_, {*first, *second})
                           : std::nullopt;
}

// The inverse of `Background::user`.
kit::Point2 pixel_at(const Background& background, const kit::Point2& user) {
    const std::array<double, 6>& m = background.to_user;
    const double x = user[0] - m[2];
    const double y = user[1] - m[5];
    const double size = m[0] * m[4] - m[1] * m[3];
    return {(m[4] * x - m[1] * y) / size, (m[0] * y - m[3] * x) / size};
}

std::optional<kit::Point2> point_in(const QLineEdit& x, const QLineEdit& y) {
    bool is_x = false;
    bool is_y = false;
    const kit::Point2 point = {x.text().trimmed().toDouble(&is_x),
                               y.text().trimmed().toDouble(&is_y)};
    return is_x && is_y && std::isfinite(point[0]) && std::isfinite(point[1]) ? std::optional(point)
                                                                              : std::nullopt;
}

} // namespace
} // namespace korvel::workbench
