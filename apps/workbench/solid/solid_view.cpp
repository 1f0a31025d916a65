#include "apps/workbench/solid/solid_view.h"

#include <algorithm>
#include <cmath>

#include <QMouseEvent>
#include <QWheelEvent>

#include "apps/workbench/document/document.h"
#include "apps/workbench/solid/pick_tool.h"
#include "apps/workbench/solid/plane_drawing.h"
#include "apps/workbench/solid/plane_tool.h"

namespace korvel::workbench {

SolidView::SolidView(Document& document, QWidget* parent)
    : QOpenGLWidget(parent), document_(document), tool_(std::make_unique<PickTool>(*this)) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Solids"));
    look_.outlines = true;
    connect(&document_.solids(), &SolidModel::solids_changed, this, &SolidView::fit);
    connect(&document_.solids(), &SolidModel::view_changed, this, qOverload<>(&SolidView::update));
    connect(&document_.section(), &SectionModel::plane_changed, this,
            qOverload<>(&SolidView::update));
}

SolidView::~SolidView() = default;

void SolidView::add_actions(const Menus& menus) {
    menus.view->addAction(tr("&Fit Solids"), this, &SolidView::fit);
    QAction* drag_plane = menus.section->addAction(tr("&Drag Plane"), this, [this] {
        choose(std::make_unique<PlaneTool>(*this));
    });
    drag_plane->setStatusTip(tr("Moves the plane by the mouse in the view of the solids"));
}

void SolidView::fit() {
    kit::ViewOptions options = look_;
    options.size = pixels();
    frame_ = kit::view_frame(document_.solids().solids(), options);
    update();
}

void SolidView::choose(std::unique_ptr<SolidTool> tool) {
    tool_->cancel();
    tool_ = std::move(tool);
    emit hint_changed(tool_->hint());
    update();
}

void SolidView::paintGL() {
    kit::draw_view(document_.solids().solids(), frame_, look_);
    if (const auto& plane = document_.section().plane()) {
        draw_plane(document_.solids().solids(), *plane);
    }
    tool_->draw();
}

void SolidView::resizeGL(int /*width*/, int /*height*/) {
    fit();
}

void SolidView::mousePressEvent(QMouseEvent* event) {
    if (!tool_->press(mouse_of(*event))) {
        dragged_from_ = event->position();
        is_panning_ = event->button() != Qt::LeftButton;
    }
}

void SolidView::mouseMoveEvent(QMouseEvent* event) {
    if (tool_->move(mouse_of(*event)) || !dragged_from_) {
        return;
    }
    const QPointF by = event->position() - *dragged_from_;
    dragged_from_ = event->position();
    if (is_panning_) {
        pan(by);
    } else {
        turn(by);
    }
}

void SolidView::mouseReleaseEvent(QMouseEvent* event) {
    dragged_from_.reset();
    tool_->release(mouse_of(*event));
}

void SolidView::wheelEvent(QWheelEvent* event) {
    constexpr double per_step = 1.2;
    constexpr double step = 120;
    const double factor = std::pow(per_step, -event->angleDelta().y() / step);
    const QPointF pixel = event->position() * devicePixelRatioF();
    const double u = frame_.left + pixel.x() * frame_.unit;
    const double v = frame_.top() - pixel.y() * frame_.unit;
    const double top = v + (frame_.top() - v) * factor;
    frame_.left = u + (frame_.left - u) * factor;
    frame_.unit *= factor;
    frame_.bottom = top - frame_.unit * frame_.size.height;
    update();
}

void SolidView::keyPressEvent(QKeyEvent* event) {
    if (!tool_->key(*event)) {
        QOpenGLWidget::keyPressEvent(event);
    }
}

SolidMouse SolidView::mouse_of(const QMouseEvent& event) const {
    const QPointF pixel = event.position() * devicePixelRatioF();
    return {.pixel = pixel,
            .u = frame_.left + pixel.x() * frame_.unit,
            .v = frame_.top() - pixel.y() * frame_.unit,
            .button = event.button(),
            .buttons = event.buttons(),
            .modifiers = event.modifiers()};
}

void SolidView::turn(const QPointF& pixels) {
    constexpr double degrees_per_pixel = 0.5;
    kit::ViewAngles angles = document_.solids().solids().view();
    angles.turn += degrees_per_pixel * pixels.x();
    angles.tilt = std::clamp(angles.tilt + degrees_per_pixel * pixels.y(), -180.0, 180.0);
    document_.solids().set_view(angles);
}

void SolidView::pan(const QPointF& pixels) {
    frame_.left -= pixels.x() * devicePixelRatioF() * frame_.unit;
    frame_.bottom += pixels.y() * devicePixelRatioF() * frame_.unit;
    update();
}

kit::PictureSize SolidView::pixels() const {
    const QSize pixels = size() * devicePixelRatioF();
    return {std::max(1, pixels.width()), std::max(1, pixels.height())};
}

} // namespace korvel::workbench
