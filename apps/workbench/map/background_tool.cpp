#include "apps/workbench/map/background_tool.h"

#include <complex>

#include <QCoreApplication>

#include "apps/workbench/document/document.h"
#include "apps/workbench/map/background_dialog.h"
#include "apps/workbench/map/map_painter.h"
#include "apps/workbench/map/map_view.h"

namespace korvel::workbench {

bool BackgroundTool::press(const MapMouse& mouse) {
    if (mouse.button != Qt::LeftButton || view_.background_picture().isNull()) {
        return false;
    }
    if (!first_) {
        first_ = mouse.point;
    } else {
        ask_background_places(view_, {*first_, mouse.point});
        first_.reset();
    }
    return true;
}

void BackgroundTool::paint(QPainter& painter) {
    constexpr double size = 8;
    if (first_) {
        const QPointF at = view_.viewport().to_screen(*first_);
        painter.setPen(QPen(mark_colour(), 2));
        painter.drawLine(at - QPointF(size, 0), at + QPointF(size, 0));
        painter.drawLine(at - QPointF(0, size), at + QPointF(0, size));
    }
}

QString BackgroundTool::hint() const {
    if (view_.background_picture().isNull()) {
        return QCoreApplication::translate("BackgroundTool",
                                           "Open a background picture first (Map menu)");
    }
    return first_ ? QCoreApplication::translate("BackgroundTool",
                                                "Click a second place, far from the first one")
                  : QCoreApplication::translate(
                        "BackgroundTool",
                        "Click a place of the picture of which you know the coordinates");
}

// A similarity is a linear function of complex numbers; pixels count downward.
std::optional<Background> placed(const Background& background,
                                 const std::array<kit::Point2, 2>& pixels,
                                 const std::array<kit::Point2, 2>& users) {
    using Complex = std::complex<double>;
    const Complex p(pixels[0][0], -pixels[0][1]);
    const Complex q(pixels[1][0], -pixels[1][1]);
    const Complex u(users[0][0], users[0][1]);
    const Complex v(users[1][0], users[1][1]);
    if (p == q || u == v) {
        return std::nullopt;
    }
    const Complex scale = (v - u) / (q - p);
    const Complex origin = u - scale * p;
    Background placed = background;
    placed.to_user = {scale.real(), scale.imag(),  origin.real(),
                      scale.imag(), -scale.real(), origin.imag()};
    return placed;
}

} // namespace korvel::workbench
