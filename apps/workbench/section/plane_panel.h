#pragma once

#include <array>

#include <QWidget>

class QComboBox;
class QLineEdit;
class QSlider;
class QStackedWidget;

#include "kit/kit.h"

namespace korvel::workbench {

class Document;

/// Where the plane is chosen: across an axis by a slider or a typed value, or free by a point and a
/// normal, which are typed or turned.
class PlanePanel : public QWidget {
    Q_OBJECT

public:
    explicit PlanePanel(Document& document, QWidget* parent = nullptr);

private:
    enum Kind { none, x, y, z, free };

    QWidget* axis_page();
    QWidget* free_page();
    QSlider* add_slider(QWidget* parent, const QString& name);
    void choose(int kind);
    void slide(bool is_final);
    void type_value();
    void type_free();
    void turn(bool is_final);
    void put(const kit::Plane& plane, bool is_final);
    void show_plane();
    void show_free(const kit::Plane& plane);

    Document& document_;
    QComboBox* kind_ = nullptr;
    QStackedWidget* pages_ = nullptr;
    QSlider* place_ = nullptr;
    QLineEdit* value_ = nullptr;
    std::array<QLineEdit*, 6> free_ = {}; // the point, then the normal
    QSlider* offset_ = nullptr;
    QSlider* turn_ = nullptr; // in degrees
    QSlider* tilt_ = nullptr;
    bool is_free_ = false;    // chosen by the user
    bool is_showing_ = false; // the widgets follow the plane
};

} // namespace korvel::workbench
