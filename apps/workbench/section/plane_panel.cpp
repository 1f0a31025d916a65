#include "apps/workbench/section/plane_panel.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QSlider>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "apps/workbench/document/document.h"
#include "apps/workbench/document/plane_range.h"

namespace korvel::workbench {
namespace {

constexpr int slider_steps = 1000;
constexpr double to_radians = std::numbers::pi / 180;

void show_number(QLineEdit& edit, double value);
std::optional<double> number_in(const QLineEdit& edit);

} // namespace

PlanePanel::PlanePanel(Document& document, QWidget* parent) : QWidget(parent), document_(document) {
    kind_ = new QComboBox(this);
    kind_->addItems({tr("No plane"), tr("Across x"), tr("Across y"), tr("Across z"), tr("Free")});
    kind_->setAccessibleName(tr("Kind of plane"));
    pages_ = new QStackedWidget(this);
    pages_->addWidget(new QWidget(pages_));
    pages_->addWidget(axis_page());
    pages_->addWidget(free_page());
    auto* column = new QVBoxLayout(this);
    column->addWidget(kind_);
    column->addWidget(pages_);
    column->addStretch();
    connect(kind_, &QComboBox::activated, this, &PlanePanel::choose);
    connect(&document_.section(), &SectionModel::plane_changed, this, &PlanePanel::show_plane);
    connect(&document_.solids(), &SolidModel::solids_changed, this, &PlanePanel::show_plane);
    show_plane();
}

QWidget* PlanePanel::axis_page() {
    auto* page = new QWidget(pages_);
    auto* rows = new QFormLayout(page);
    place_ = add_slider(page, tr("Place of the plane"));
    place_->setRange(0, slider_steps);
    value_ = new QLineEdit(page);
    value_->setAccessibleName(tr("Value"));
    rows->addRow(tr("Place"), place_);
    rows->addRow(tr("Value"), value_);
    connect(place_, &QSlider::valueChanged, this, [this] { slide(!place_->isSliderDown()); });
    connect(place_, &QSlider::sliderReleased, this, [this] { slide(true); });
    connect(value_, &QLineEdit::editingFinished, this, &PlanePanel::type_value);
    return page;
}

QWidget* PlanePanel::free_page() {
    auto* page = new QWidget(pages_);
    auto* rows = new QFormLayout(page);
    const std::array<QString, 6> names = {tr("Point x"),  tr("Point y"),  tr("Point z"),
                                          tr("Normal x"), tr("Normal y"), tr("Normal z")};
    for (std::size_t k = 0; k < free_.size(); ++k) {
        free_[k] = new QLineEdit(page);
        free_[k]->setAccessibleName(names[k]);
        rows->addRow(names[k], free_[k]);
        connect(free_[k], &QLineEdit::editingFinished, this, &PlanePanel::type_free);
    }
    offset_ = add_slider(page, tr("Place along the normal"));
    offset_->setRange(0, slider_steps);
    turn_ = add_slider(page, tr("Turn about z in degrees"));
    turn_->setRange(-180, 180);
    tilt_ = add_slider(page, tr("Tilt from level in degrees"));
    tilt_->setRange(0, 180);
    rows->addRow(tr("Place"), offset_);
    rows->addRow(tr("Turn"), turn_);
    rows->addRow(tr("Tilt"), tilt_);
    connect(offset_, &QSlider::valueChanged, this, [this] { slide(!offset_->isSliderDown()); });
    connect(offset_, &QSlider::sliderReleased, this, [this] { slide(true); });
    for (QSlider* angle : {turn_, tilt_}) {
        connect(angle, &QSlider::valueChanged, this,
                [this, angle] { turn(!angle->isSliderDown()); });
        connect(angle, &QSlider::sliderReleased, this, [this] { turn(true); });
    }
    return page;
}

QSlider* PlanePanel::add_slider(QWidget* parent, const QString& name) {
    auto* slider = new QSlider(Qt::Horizontal, parent);
    slider->setAccessibleName(name);
    slider->setToolTip(name);
    return slider;
}

// A free plane begins as the one that there is, or aslant.
void PlanePanel::choose(int kind) {
    is_free_ = kind == free;
    const kit::Box box = document_.solids().solids().bounds();
    const auto& plane = document_.section().plane();
    if (kind == none) {
        document_.section().set_plane(std::nullopt);
    } else if (kind != free) {
        const kit::Plane across = plane_at(kind - x, 0);
        put(moved_to(across, range_of(across, box).middle()), true);
    } else if (!plane) {
        const kit::Plane aslant = {1, 1, 1, 0};
        put(moved_to(aslant, range_of(aslant, box).middle()), true);
    } else {
        show_plane();
    }
}

void PlanePanel::slide(bool is_final) {
    const auto plane = document_.section().plane();
    if (is_showing_ || !plane) {
        return;
    }
    const QSlider& slider = is_free_ ? *offset_ : *place_;
    const PlaneRange range = range_of(*plane, document_.solids().solids().bounds());
    if (range.length() <= 0) {
        return;
    }
    const double part = static_cast<double>(slider.value()) / slider_steps;
    // A slider that was only released has not moved the plane that was typed.
    const double shown = (place_of(*plane) - range.least) / range.length() * slider_steps;
    const bool is_moved = std::lround(shown) != slider.value();
    put(is_moved ? moved_to(*plane, range.least + part * range.length()) : *plane, is_final);
}

void PlanePanel::type_value() {
    const auto value = number_in(*value_);
    const auto plane = document_.section().plane();
    if (!is_showing_ && value && plane && *value != place_of(*plane)) {
        put(moved_to(*plane, *value), true);
    } else {
        show_plane();
    }
}

void PlanePanel::type_free() {
    std::array<double, 6> numbers = {};
    for (std::size_t k = 0; k < free_.size(); ++k) {
        const auto number = number_in(*free_[k]);
        if (is_showing_ || !number || !document_.section().plane()) {
            show_plane();
            return;
        }
        numbers[k] = *number;
    }
    const bool is_changed =
        std::ranges::any_of(free_, [](const QLineEdit* edit) { return edit->isModified(); });
    const auto [px, py, pz, nx, ny, nz] = numbers;
    if (is_changed && (nx != 0 || ny != 0 || nz != 0)) {
        put(kit::Plane::through({px, py, pz}, {nx, ny, nz}), true);
    } else {
        show_plane();
    }
}

// About the point of the plane that is nearest to the middle of the solids.
void PlanePanel::turn(bool is_final) {
    const auto plane = document_.section().plane();
    if (is_showing_ || !plane) {
        return;
    }
    const kit::Point3 point = middle_of(*plane, document_.solids().solids().bounds());
    const double around = turn_->value() * to_radians;
    const double from_level = tilt_->value() * to_radians;
    put(kit::Plane::through(point, {std::sin(from_level) * std::cos(around),
                                    std::sin(from_level) * std::sin(around), std::cos(from_level)}),
        is_final);
}

void PlanePanel::put(const kit::Plane& plane, bool is_final) {
    if (is_final) {
        document_.section().set_plane(plane);
    } else {
        document_.section().try_plane(plane);
    }
}

void PlanePanel::show_plane() {
    is_showing_ = true;
    setEnabled(!document_.solids().empty());
    const auto& plane = document_.section().plane();
    if (!plane) {
        is_free_ = false;
        kind_->setCurrentIndex(none);
        pages_->setCurrentIndex(0);
    } else {
        is_free_ = is_free_ || !fixed_axis(*plane);
        kind_->setCurrentIndex(is_free_ ? static_cast<int>(free) : x + *fixed_axis(*plane));
        pages_->setCurrentIndex(is_free_ ? 2 : 1);
        const PlaneRange range = range_of(*plane, document_.solids().solids().bounds());
        const double part =
            range.length() > 0 ? (place_of(*plane) - range.least) / range.length() : 0;
        QSlider& slider = is_free_ ? *offset_ : *place_;
        slider.setValue(static_cast<int>(std::lround(std::clamp(part, 0.0, 1.0) * slider_steps)));
        show_number(*value_, place_of(*plane));
        show_free(*plane);
    }
    is_showing_ = false;
}

void PlanePanel::show_free(const kit::Plane& plane) {
    const kit::Box box = document_.solids().solids().bounds();
    const kit::Point3 point = box.is_empty() ? kit::Point3{} : middle_of(plane, box);
    const std::array<double, 6> numbers = {point[0], point[1], point[2], plane.a, plane.b, plane.c};
    for (std::size_t k = 0; k < numbers.size(); ++k) {
        show_number(*free_[k], numbers[k]);
    }
    const double level = std::hypot(plane.a, plane.b);
    const auto degrees = [](double angle) {
        return static_cast<int>(std::lround(angle / to_radians));
    };
    if (!tilt_->isSliderDown() && level > 0) { // a level plane keeps the turn that it had
        turn_->setValue(degrees(std::atan2(plane.b, plane.a)));
    }
    tilt_->setValue(degrees(std::atan2(level, plane.c)));
}

namespace {

void show_number(QLineEdit& edit, double value) {
    edit.setText(QString::number(value, 'g', QLocale::FloatingPointShortest));
    edit.setCursorPosition(0);
}

std::optional<double> number_in(const QLineEdit& edit) {
    bool is_number = false;
    const double value = edit.text().trimmed().toDouble(&is_number);
    if (!is_number || !std::isfinite(value)) {
        return {};
    }
    return value;
}

} // namespace
} // namespace korvel::workbench
