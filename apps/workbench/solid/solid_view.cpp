#include "apps/workbench/solid/solid_view.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QMouseEvent>
#include <QWheelEvent>

#include "apps/workbench/document/document.h"
#include "apps/workbench/solid/pick_report.h"
#include "apps/workbench/solid/pick_tool.h"

namespace korvel::workbench {
namespace {

void make_opaque();
bool is_other_place(const kit::Box& before, const kit::Box& now);

constexpr kit::ViewAngles first_view = {30, -60};

} // namespace

SolidView::SolidView(Document& document, QWidget* parent)
    : QOpenGLWidget(parent), document_(document), tool_(std::make_unique<PickTool>(*this)) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Solids"));
    setMinimumSize(200, 150);
    document_.solids().set_view(first_view);
    connect_model();
    add_docks();
}

SolidView::~SolidView() = default;

void SolidView::connect_model() {
    SolidModel& solids = document_.solids();
    const auto repaint = [this] { update(); };
    connect(&solids, &SolidModel::solids_replaced, this, [this] {
        report_pick({});
        tool_->cancel();
        is_new_ = true;
    });
    connect(&solids, &SolidModel::solids_changed, this, &SolidView::take_solids);
    connect(&solids, &SolidModel::trial_changed, this, &SolidView::take_trial);
    connect(&solids, &SolidModel::view_changed, this, [this] {
        scene_.set_turned();
        camera_.follow(document_.solids().drawn());
        update();
    });
    connect(&solids, &SolidModel::bodies_changed, this, [this] {
        scene_.set_changed();
        update();
    });
    connect(&solids, &SolidModel::hidden_changed, this, [this] {
        scene_.set_changed();
        update();
    });
    connect(&solids, &SolidModel::selection_changed, this, repaint);
    connect(&document_.section(), &SectionModel::plane_changed, this, repaint);
}

void SolidView::fit() {
    keep_view();
    camera_.fit(document_.solids().drawn(), document_.solids().hidden(), display_.box);
    update();
}

void SolidView::fit_selection() {
    keep_view();
    const SolidModel& solids = document_.solids();
    camera_.show(solids.drawn(), bounds_in_view(solids.drawn(), solids.selected()));
    update();
}

void SolidView::look_from(const kit::ViewAngles& angles) {
    keep_view();
    document_.solids().set_view(angles);
    camera_.fit(document_.solids().drawn(), document_.solids().hidden(), display_.box);
    update();
}

void SolidView::go_back() {
    if (const auto angles = camera_.go_back()) {
        document_.solids().set_view(*angles);
        update();
    }
}

void SolidView::report_pick(const std::optional<kit::Pick>& pick) {
    const kit::Solids& solids = document_.solids().drawn();
    last_pick_ = pick;
    emit position_changed(pick ? pick_line(solids, *pick) : QString());
    emit picked(pick ? pick_report(solids, *pick) : QString());
}

void SolidView::set_display(const SolidDisplay& display) {
    display_ = display;
    update();
}

void SolidView::choose(std::unique_ptr<SolidTool> tool) {
    tool_->cancel();
    tool_ = std::move(tool);
    emit tool_changed();
    emit hint_changed(tool_->hint());
    update();
}

void SolidView::paintGL() {
    const SolidModel& solids = document_.solids();
    scene_.draw({.solids = solids.drawn(),
                 .hidden = solids.hidden(),
                 .selected = solids.selected(),
                 .plane = document_.section().plane()},
                camera_.frame(), display_);
    tool_->draw();
    make_opaque();
}

void SolidView::resizeGL(int /*width*/, int /*height*/) {
    camera_.resize(pixels());
    if (!std::exchange(is_shown_, true) || camera_.is_fitted()) {
        fit();
    }
}

void SolidView::mousePressEvent(QMouseEvent* event) {
    if (!tool_->press(mouse_of(*event))) {
        keep_view();
        dragged_from_ = event->position();
        is_panning_ = event->button() == Qt::RightButton;
    }
}

void SolidView::mouseMoveEvent(QMouseEvent* event) {
    if (tool_->move(mouse_of(*event)) || !dragged_from_) {
        return;
    }
    const QPointF by = event->position() - *dragged_from_;
    dragged_from_ = event->position();
    if (is_panning_) {
        pan(by * devicePixelRatioF());
    } else {
        constexpr double degrees_per_pixel = 0.5;
        turn(degrees_per_pixel * by.x(), degrees_per_pixel * by.y());
    }
}

void SolidView::mouseReleaseEvent(QMouseEvent* event) {
    dragged_from_.reset();
    tool_->release(mouse_of(*event));
}

void SolidView::wheelEvent(QWheelEvent* event) {
    constexpr double per_step = 1.2;
    constexpr double step = 120;
    const double steps = event->angleDelta().y() / step;
    QMouseEvent at(QEvent::MouseMove, event->position(), event->globalPosition(), Qt::NoButton,
                   event->buttons(), event->modifiers());
    if (tool_->wheel(mouse_of(at), static_cast<int>(std::lround(steps)))) {
        return;
    }
    zoom(std::pow(per_step, -steps), event->position() * devicePixelRatioF());
}

void SolidView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        tool_->cancel();
        update();
    } else if (!tool_->key(*event) && !move_by_key(*event)) {
        QOpenGLWidget::keyPressEvent(event);
    }
}

bool SolidView::move_by_key(const QKeyEvent& event) {
    constexpr double degrees = 5;
    constexpr double pixels = 20;
    constexpr double factor = 1.2;
    const auto move = [&](double right, double down) {
        keep_view();
        if (event.modifiers().testFlag(Qt::ShiftModifier)) {
            pan(pixels * QPointF(right, down));
        } else {
            turn(degrees * right, degrees * down);
        }
        return true;
    };
    switch (event.key()) {
    case Qt::Key_Left:
        return move(-1, 0);
    case Qt::Key_Right:
        return move(1, 0);
    case Qt::Key_Up:
        return move(0, -1);
    case Qt::Key_Down:
        return move(0, 1);
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        zoom(1 / factor, middle());
        return true;
    case Qt::Key_Minus:
        zoom(factor, middle());
        return true;
    default:
        return false;
    }
}

SolidMouse SolidView::mouse_of(const QMouseEvent& event) const {
    const QPointF pixel = event.position() * devicePixelRatioF();
    return {.pixel = pixel,
            .u = camera_.u_of(pixel),
            .v = camera_.v_of(pixel),
            .button = event.button(),
            .buttons = event.buttons(),
            .modifiers = event.modifiers()};
}

// What is nearest to the viewer goes along with the mouse.
void SolidView::turn(double right, double down) {
    kit::ViewAngles angles = document_.solids().drawn().view();
    angles.turn = std::remainder(angles.turn - right, 360.0);
    angles.tilt = std::clamp(angles.tilt + down, -180.0, 180.0);
    document_.solids().set_view(angles);
}

// Turning the wheel on is one change of the view.
void SolidView::zoom(double factor, const QPointF& pixel) {
    constexpr int pause = 700; // milliseconds
    if (!since_zoom_.isValid() || since_zoom_.elapsed() > pause) {
        keep_view();
    }
    since_zoom_.start();
    camera_.zoom(factor, pixel);
    update();
}

void SolidView::pan(const QPointF& pixels) {
    camera_.pan(pixels);
    update();
}

void SolidView::keep_view() {
    camera_.keep(document_.solids().drawn().view());
}

// Angles and scale stay when solids change, unless others come.
void SolidView::take_solids() {
    const kit::Solids& solids = document_.solids().solids();
    scene_.set_changed();
    const kit::Box bounds = solids.bounds();
    if (std::exchange(is_new_, false) && is_other_place(shown_bounds_, bounds)) {
        camera_.fit(solids, document_.solids().hidden(), display_.box);
    } else {
        camera_.follow(solids);
    }
    shown_bounds_ = bounds;
    follow_outlines();
    update();
}

// The worker finds them; until then those of before are drawn.
void SolidView::follow_outlines() {
    document_.solids().follow("outlines", [this](kit::SolidsEditor& editor,
                                                 const kit::Context& /*context*/) {
        const kit::Solids& solids = editor.solids();
        return [this, outlines = kit::outline_edges(solids.model()), edges = solids.edge_count()] {
            scene_.set_outlines(outlines, edges);
            update();
        };
    });
}

void SolidView::take_trial() {
    SolidModel& solids = document_.solids();
    scene_.set_moved(solids.drawn(), solids.gathered().vertices());
    update();
}

kit::PictureSize SolidView::pixels() const {
    const QSize pixels = size() * devicePixelRatioF();
    return {std::max(1, pixels.width()), std::max(1, pixels.height())};
}

namespace {

// Through what is blended the colour of the window would be seen.
void make_opaque() {
    glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_TRUE);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
}

// Whether the extent has changed by a good part of itself.
bool is_other_place(const kit::Box& before, const kit::Box& now) {
    if (before.is_empty() || now.is_empty()) {
        return true;
    }
    constexpr double part = 0.1;
    double change = 0;
    double size = 0;
    for (std::size_t k = 0; k < 3; ++k) {
        size = std::max(size, before.high[k] - before.low[k]);
        change = std::max(
            {change, std::abs(now.low[k] - before.low[k]), std::abs(now.high[k] - before.high[k])});
    }
    return change > part * size;
}

} // namespace
} // namespace korvel::workbench
