#include "apps/workbench/map/map_view.h"

#include <cmath>

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWheelEvent>

#include "apps/workbench/document/document.h"
#include "apps/workbench/map/select_tool.h"

namespace korvel::workbench {

MapView::MapView(Document& document, QWidget* parent)
    : QWidget(parent), document_(document), tool_(std::make_unique<SelectTool>(*this)) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Map"));
    connect(&document_.map(), &MapModel::curves_changed, this, &MapView::take_map);
    connect(&document_.map(), &MapModel::regions_changed, this, qOverload<>(&MapView::update));
    connect(&document_.map(), &MapModel::selection_changed, this, qOverload<>(&MapView::update));
}

MapView::~MapView() = default;

void MapView::add_actions(const Menus& menus) {
    menus.map->addAction(tr("Show &All"), this, &MapView::show_all);
}

void MapView::show_part(const kit::Rectangle& part) {
    viewport_.show(part);
    update();
}

void MapView::show_all() {
    show_part(document_.map().curves().bounds());
}

void MapView::choose(std::unique_ptr<MapTool> tool) {
    tool_->cancel();
    tool_ = std::move(tool);
    emit hint_changed(tool_->hint());
    update();
}

void MapView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    painter.setRenderHint(QPainter::Antialiasing);
    paint_regions(painter);
    paint_curves(painter);
    tool_->paint(painter);
}

void MapView::resizeEvent(QResizeEvent* /*event*/) {
    viewport_.resize(size());
}

void MapView::mousePressEvent(QMouseEvent* event) {
    if (!tool_->press(mouse_of(*event)) && event->button() != Qt::RightButton) {
        panned_from_ = event->position();
    }
}

void MapView::mouseMoveEvent(QMouseEvent* event) {
    const MapMouse mouse = mouse_of(*event);
    emit position_changed(QStringLiteral("x %1  y %2").arg(mouse.point[0]).arg(mouse.point[1]));
    if (panned_from_) {
        viewport_.pan(event->position() - *panned_from_);
        panned_from_ = event->position();
        update();
    } else {
        tool_->move(mouse);
    }
}

void MapView::mouseReleaseEvent(QMouseEvent* event) {
    panned_from_.reset();
    tool_->release(mouse_of(*event));
}

void MapView::mouseDoubleClickEvent(QMouseEvent* event) {
    tool_->double_click(mouse_of(*event));
}

void MapView::wheelEvent(QWheelEvent* event) {
    constexpr double per_step = 1.2;
    constexpr double step = 120;
    viewport_.zoom(std::pow(per_step, event->angleDelta().y() / step), event->position());
    update();
}

void MapView::keyPressEvent(QKeyEvent* event) {
    if (!tool_->key(*event)) {
        QWidget::keyPressEvent(event);
    }
}

MapMouse MapView::mouse_of(const QMouseEvent& event) const {
    return {.pixel = event.position(),
            .point = viewport_.from_screen(event.position()),
            .button = event.button(),
            .buttons = event.buttons(),
            .modifiers = event.modifiers()};
}

void MapView::paint_regions(QPainter& painter) {
    const auto found = document_.map().found();
    if (found == nullptr) {
        return;
    }
    painter.setPen(Qt::NoPen);
    for (const kit::Region region : found->map) {
        QPainterPath path;
        for (int ring = 0; ring < region.ring_count(); ++ring) {
            QPolygonF polygon;
            for (const kit::Point2& corner : region.ring(ring)) {
                polygon.append(viewport_.to_screen(corner));
            }
            path.addPolygon(polygon);
        }
        const kit::Colour colour = region.colour();
        QColor shown(colour.red, colour.green, colour.blue);
        if (document_.map().selected().contains(region.index())) {
            shown = shown.darker();
        }
        painter.setBrush(shown);
        painter.drawPath(path);
    }
}

void MapView::paint_curves(QPainter& painter) {
    painter.setPen(palette().color(QPalette::Text));
    const Curves& curves = document_.map().curves();
    for (const Curve& curve : curves) {
        QPolygonF line;
        for (const kit::GridPoint& point : curve) {
            line.append(viewport_.to_screen(curves.to_user(point)));
        }
        painter.drawPolyline(line);
    }
}

void MapView::take_map() {
    if (!has_shown_map_ && !document_.map().curves().empty()) {
        has_shown_map_ = true;
        show_all();
    }
    update();
}

} // namespace korvel::workbench
