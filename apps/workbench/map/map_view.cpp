#include "apps/workbench/map/map_view.h"

#include <algorithm>
#include <cmath>

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include "apps/workbench/document/document.h"
#include "apps/workbench/flat/number_shown.h"
#include "apps/workbench/flat/scale_bar.h"
#include "apps/workbench/map/map_actions.h"
#include "apps/workbench/map/map_painter.h"
#include "apps/workbench/map/problem_list.h"
#include "apps/workbench/map/region_table.h"
#include "apps/workbench/map/select_tool.h"

namespace korvel::workbench {

MapView::MapView(Document& document, QWidget* parent)
    : QWidget(parent), document_(document), tool_(std::make_unique<SelectTool>(*this)) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Map"));
    constexpr QSize least(320, 240);
    setMinimumSize(least);
    const kit::Rectangle first_part = {.left = 0, .top = 0, .right = 1000, .bottom = 1000};
    viewport_.resize(size());
    viewport_.show(first_part);
    docks_ = {new RegionTable(*this), new ProblemList(*this)};
    MapModel* map = &document_.map();
    connect(map, &MapModel::curves_changed, this, &MapView::take_map);
    connect(map, &MapModel::replaced, this, &MapView::show_all);
    connect(map, &MapModel::regions_changed, this, &MapView::follow_triangles);
    connect(map, &MapModel::regions_changed, this, &MapView::redraw);
    connect(map, &MapModel::selection_changed, this, &MapView::redraw);
    connect(map, &MapModel::background_changed, this, &MapView::take_background);
}

MapView::~MapView() = default;

void MapView::add_actions(const Menus& menus) {
    actions_ = new MapActions(*this, menus);
    emit hint_changed(tool_->hint());
}

MapModel& MapView::map() {
    return document_.map();
}

void MapView::show_part(const kit::Rectangle& part) {
    viewport_.show(part);
    redraw();
}

void MapView::show_all() {
    kit::Rectangle all = map().curves().bounds();
    if (!background_.isNull()) {
        const auto width = static_cast<double>(background_.width());
        const auto height = static_cast<double>(background_.height());
        for (const kit::Point2& corner :
             {kit::Point2{0, 0}, {width, 0}, {0, height}, {width, height}}) {
            const kit::Point2 user = map().background().user(corner);
            all.take_in(user[0], user[1]);
        }
    }
    show_part(all);
}

void MapView::zoom(double factor) {
    viewport_.zoom(factor, {viewport_.size().width() / 2.0, viewport_.size().height() / 2.0});
    redraw();
}

void MapView::pan(const QPointF& pixels) {
    viewport_.pan(pixels);
    redraw();
}

void MapView::choose(std::unique_ptr<MapTool> tool) {
    tool_->cancel();
    tool_ = std::move(tool);
    emit tool_changed();
    update_tool();
}

kit::Placement MapView::drawing_placement() const {
    const Curves& curves = document_.map().curves();
    if (!curves.empty()) {
        return curves.placement();
    }
    const double decimals = -std::log10(power_of_ten_in(viewport_.unit()));
    constexpr double most_decimals = 15;
    return {.grid = kit::Grid(1, std::pow(10.0, std::clamp(decimals, 0.0, most_decimals))),
            .reference = curves.placement().reference};
}

MapView::Snapped MapView::snap(const kit::Point2& point, const PointSet& except) const {
    const Curves& curves = document_.map().curves();
    const kit::Grid grid = drawing_placement().grid;
    if (snapping_.is_on && !curves.empty()) {
        const double unit = snapping_.in_units ? 1 : viewport_.unit();
        const auto place =
            find_place(curves, grid.to_grid(point), snapping_.distance * unit / grid.step(),
                       Find::places, except);
        if (place) {
            return {curves.to_user(place->place), place};
        }
    }
    return {.place = grid.to_user(grid.nearest(point))};
}

std::optional<CurvePlace> MapView::place_at(const kit::Point2& point, Find find,
                                            const PointSet& except) const {
    constexpr double pixels = 8;
    const Curves& curves = document_.map().curves();
    const kit::Grid& grid = curves.placement().grid;
    return find_place(curves, grid.to_grid(point), pixels * viewport_.unit() / grid.step(), find,
                      except);
}

QPointF MapView::to_screen(const kit::GridPoint& point) const {
    return viewport_.to_screen(document_.map().curves().to_user(point));
}

void MapView::paint_mark(QPainter& painter, const CurvePlace& place) const {
    constexpr double size = 6;
    const QPointF middle = to_screen(place.place);
    painter.setPen(QPen(mark_colour(), 2));
    painter.setBrush(Qt::NoBrush);
    if (place.kind == CurvePlace::Kind::end) {
        painter.drawRect(QRectF(middle - QPointF(size, size), middle + QPointF(size, size)));
    } else if (place.kind == CurvePlace::Kind::point) {
        painter.drawEllipse(middle, size, size);
    } else {
        painter.drawLine(middle - QPointF(size, size), middle + QPointF(size, size));
        painter.drawLine(middle - QPointF(size, -size), middle + QPointF(size, -size));
    }
}

void MapView::choose_points(PointSet points) {
    chosen_ = std::move(points);
    emit points_chosen();
    update();
}

void MapView::set_triangles_shown(bool shown) {
    are_triangles_shown_ = shown;
    follow_triangles();
    redraw();
}

void MapView::set_labels_shown(bool shown) {
    are_labels_shown_ = shown;
    redraw();
}

void MapView::set_problems_shown(bool shown) {
    are_problems_shown_ = shown;
    redraw();
}

void MapView::paintEvent(QPaintEvent* /*event*/) {
    if (!is_picture_current_) {
        draw_picture();
        is_picture_current_ = true;
    }
    QPainter painter(this);
    painter.drawImage(QPointF(), picture_);
    painter.setRenderHint(QPainter::Antialiasing);
    tool_->paint(painter);
}

void MapView::draw_picture() {
    picture_ = QImage(size() * devicePixelRatioF(), QImage::Format_RGB32);
    picture_.setDevicePixelRatio(devicePixelRatioF());
    picture_.fill(palette().color(QPalette::Base));
    QPainter painter(&picture_);
    painter.setFont(font());
    painter.setRenderHint(QPainter::Antialiasing);
    MapPainter map(painter, viewport_, palette());
    const bool has_background = !background_.isNull();
    if (has_background) {
        map.paint_background(background_, document_.map().background());
    }
    const MapModel& model = document_.map();
    if (const auto found = model.found()) {
        map.paint_regions(*found, model.selected(), has_background ? 0.4 : 1);
    }
    if (triangles_) {
        map.paint_triangles(*triangles_);
    }
    map.paint_curves(model.curves());
    if (const auto found = model.found()) {
        map.paint_selection(*found, model.selected());
        if (are_labels_shown_) {
            map.paint_labels(*found);
        }
        if (are_problems_shown_) {
            map.paint_problems(found->problems);
        }
    }
    painter.setPen(palette().color(QPalette::Text));
    paint_scale_bar(painter, viewport_, palette().color(QPalette::Base));
}

void MapView::resizeEvent(QResizeEvent* /*event*/) {
    viewport_.resize(size());
    redraw();
}

void MapView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
        redraw();
    }
    QWidget::changeEvent(event);
}

void MapView::mousePressEvent(QMouseEvent* event) {
    const bool pans = event->button() == Qt::MiddleButton ||
                      (is_space_down_ && event->button() == Qt::LeftButton);
    if (pans || (!tool_->press(mouse_of(*event)) && event->button() == Qt::LeftButton)) {
        panned_from_ = event->position();
    }
    update_tool();
}

void MapView::mouseMoveEvent(QMouseEvent* event) {
    const MapMouse mouse = mouse_of(*event);
    report_position(mouse.point);
    if (panned_from_) {
        pan(event->position() - *panned_from_);
        panned_from_ = event->position();
    } else {
        tool_->move(mouse);
        update_tool();
    }
}

void MapView::mouseReleaseEvent(QMouseEvent* event) {
    panned_from_.reset();
    tool_->release(mouse_of(*event));
    update_tool();
}

void MapView::mouseDoubleClickEvent(QMouseEvent* event) {
    tool_->double_click(mouse_of(*event));
    update_tool();
}

void MapView::wheelEvent(QWheelEvent* event) {
    constexpr double per_step = 1.2;
    constexpr double step = 120;
    viewport_.zoom(std::pow(per_step, event->angleDelta().y() / step), event->position());
    redraw();
}

void MapView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        tool_->cancel();
        choose_points({});
    } else if (event->key() == Qt::Key_Space) {
        is_space_down_ = true;
        setCursor(Qt::OpenHandCursor);
    } else if (!tool_->key(*event) && !move_by_key(event->key())) {
        QWidget::keyPressEvent(event);
    }
    update_tool();
}

void MapView::keyReleaseEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat()) {
        is_space_down_ = false;
        unsetCursor();
    }
    QWidget::keyReleaseEvent(event);
}

void MapView::leaveEvent(QEvent* /*event*/) {
    emit position_changed(QString());
}

bool MapView::move_by_key(int key) {
    constexpr double share = 0.125;
    constexpr double factor = 1.25;
    const double x = share * width();
    const double y = share * height();
    switch (key) {
    case Qt::Key_Left:
        pan({x, 0});
        return true;
    case Qt::Key_Right:
        pan({-x, 0});
        return true;
    case Qt::Key_Up:
        pan({0, y});
        return true;
    case Qt::Key_Down:
        pan({0, -y});
        return true;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        zoom(factor);
        return true;
    case Qt::Key_Minus:
        zoom(1 / factor);
        return true;
    default:
        return false;
    }
}

MapMouse MapView::mouse_of(const QMouseEvent& event) const {
    return {.pixel = event.position(),
            .point = viewport_.from_screen(event.position()),
            .button = event.button(),
            .buttons = event.buttons(),
            .modifiers = event.modifiers()};
}

void MapView::report_position(const kit::Point2& point) {
    emit position_changed(tr("x %1  y %2  grid %3")
                              .arg(number_shown(point[0], viewport_.unit()),
                                   number_shown(point[1], viewport_.unit()),
                                   QString::fromStdString(drawing_placement().grid.step_text())));
}

void MapView::update_tool() {
    if (const QString hint = tool_->hint(); hint != hint_) {
        hint_ = hint;
        emit hint_changed(hint);
    }
    update();
}

void MapView::redraw() {
    is_picture_current_ = false;
    update();
}

void MapView::take_map() {
    tool_->curves_changed();
    choose_points({});
    redraw();
}

void MapView::take_background() {
    const QString& file = map().background().file;
    background_ = file.isEmpty() ? QImage() : QImage(file);
    redraw();
}

void MapView::follow_triangles() {
    triangles_.reset();
    const auto found = map().found();
    if (!are_triangles_shown_ || found == nullptr) {
        return;
    }
    document_.worker().follow("triangles", [this, found](const kit::Context& context) {
        const kit::Triangulation triangles = kit::triangulate(found->map, {.threads = 1}, context);
        return [this, triangles] {
            triangles_ = triangles;
            redraw();
        };
    });
}

} // namespace korvel::workbench
