#include "apps/workbench/section/section_view.h"

#include <cmath>

#include <QApplication>
#include <QClipboard>
#include <QDockWidget>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QTableView>
#include <QWheelEvent>

#include "apps/workbench/document/document.h"
#include "apps/workbench/flat/painter_canvas.h"
#include "apps/workbench/section/plane_actions.h"
#include "apps/workbench/section/plane_panel.h"
#include "apps/workbench/section/section_areas.h"

namespace korvel::workbench {
namespace {

constexpr int units_per_pixel = kit::PictureFit::units_per_pixel;

std::vector<std::string> names_of(const kit::Solids& solids);

/// The point of the model that is seen at coordinates of the plane.
kit::Point3 in_model(const kit::Section& section, const kit::Point2& seen);

} // namespace

SectionView::SectionView(Document& document, QWidget* parent)
    : QWidget(parent), document_(document), plane_actions_(new PlaneActions(document, this)),
      areas_(new SectionAreas(document, this)) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAccessibleName(tr("Section"));
    add_plane_dock();
    add_areas_dock();
    connect(&document_.section(), &SectionModel::section_changed, this, &SectionView::take_section);
    connect(&document_.solids(), &SolidModel::selection_changed, this, &SectionView::select_rows);
    connect(&document_.solids(), &SolidModel::solids_changed, this, qOverload<>(&QWidget::update));
}

void SectionView::add_actions(const Menus& menus) {
    plane_actions_->add_actions(menus);
    menus.section->addSeparator();
    QAction* fit = menus.section->addAction(tr("&Fit Section"), this, &SectionView::fit);
    fit->setStatusTip(tr("Shows the whole section"));
    QAction* copy =
        menus.section->addAction(tr("&Copy Areas as Text"), this, &SectionView::copy_areas);
    copy->setStatusTip(tr("Copies the table of areas to the clipboard"));
}

void SectionView::add_plane_dock() {
    auto* dock = new QDockWidget(tr("Plane"), this);
    dock->setObjectName(QStringLiteral("plane"));
    dock->setWidget(new PlanePanel(document_, dock));
    docks_.push_back(dock);
}

void SectionView::add_areas_dock() {
    auto* dock = new QDockWidget(tr("Section Areas"), this);
    dock->setObjectName(QStringLiteral("section-areas"));
    table_ = new QTableView(dock);
    table_->setModel(areas_);
    table_->setAccessibleName(tr("Section areas"));
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->verticalHeader()->hide();
    QHeaderView& columns = *table_->horizontalHeader();
    columns.setSectionResizeMode(QHeaderView::ResizeToContents);
    columns.setResizeContentsPrecision(0); // the rows that are seen
    columns.setStretchLastSection(true);
    dock->setWidget(table_);
    docks_.push_back(dock);
    connect(table_, &QTableView::clicked, this, [this](const QModelIndex& index) {
        if (const int body = areas_->body_in(index.row()); body >= 0) {
            document_.solids().select({body});
        }
    });
}

// A plane of another direction has other axes, so that what was shown does not fit it.
void SectionView::take_section() {
    const auto section = document_.section().section();
    if (section != nullptr) {
        const kit::Plane& plane = section->plane();
        const double length = plane.normal_length();
        const kit::Point3 normal = {plane.a / length, plane.b / length, plane.c / length};
        if (normal != normal_) {
            normal_ = normal;
            scale_.reset();
        }
    }
    select_rows();
    update();
}

kit::SectionPictureOptions SectionView::options() const {
    constexpr int least_for_legend = 480; // pixels
    return {.size = {width(), height()},
            .scale = scale_,
            .names = names_of(document_.solids().solids()),
            .scale_bar = true,
            .legend = width() >= least_for_legend,
            .units_per_pixel = units_per_pixel};
}

kit::SectionPlot SectionView::plot() const {
    const auto section = document_.section().section();
    if (section == nullptr) {
        return {};
    }
    QPixmap page(1, 1); // for the widths of labels
    QPainter painter(&page);
    PainterCanvas canvas(painter, units_per_pixel);
    kit::SectionPictureOptions shown = options();
    shown.labels = &canvas;
    return kit::plot_of(*section, shown);
}

void SectionView::fit() {
    scale_.reset();
    update();
}

void SectionView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    const auto section = document_.section().section();
    if (section == nullptr || (section->empty() && !scale_)) {
        write_hint(painter);
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    PainterCanvas canvas(painter, units_per_pixel);
    kit::SectionPictureOptions shown = options();
    shown.labels = &canvas;
    kit::draw(*section, canvas, shown);
}

void SectionView::write_hint(QPainter& painter) {
    const SectionModel& model = document_.section();
    const QString text = !model.problem().isEmpty()   ? model.problem()
                         : document_.solids().empty() ? tr("There are no solids to cut.")
                         : model.plane()              ? tr("The plane meets no body.")
                                                      : tr("Choose a plane in the menu Section.");
    painter.setPen(Qt::darkGray);
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, text);
}

void SectionView::mousePressEvent(QMouseEvent* event) {
    pressed_ = dragged_from_ = event->position();
}

void SectionView::mouseMoveEvent(QMouseEvent* event) {
    show_position(event->position());
    if (!dragged_from_) {
        return;
    }
    const bool is_click =
        (event->position() - *pressed_).manhattanLength() < QApplication::startDragDistance();
    const kit::SectionPlot shown = plot();
    if (is_click || shown.shown.is_empty()) {
        return;
    }
    kit::SectionScale scale = scale_.value_or(shown.scale());
    scale.middle[0] -= (event->position().x() - dragged_from_->x()) * scale.u;
    scale.middle[1] += (event->position().y() - dragged_from_->y()) * scale.v;
    scale_ = scale;
    dragged_from_ = event->position();
    pressed_ = QPointF(-1e6, -1e6); // no click any more
    update();
}

void SectionView::mouseReleaseEvent(QMouseEvent* event) {
    const bool is_click = pressed_ && (event->position() - *pressed_).manhattanLength() <
                                          QApplication::startDragDistance();
    pressed_.reset();
    dragged_from_.reset();
    if (is_click && event->button() == Qt::LeftButton) {
        select_at(event->position());
    }
}

void SectionView::mouseDoubleClickEvent(QMouseEvent* /*event*/) {
    fit();
}

void SectionView::wheelEvent(QWheelEvent* event) {
    constexpr double per_step = 1.2;
    constexpr double step = 120;
    zoom(std::pow(per_step, event->angleDelta().y() / step), event->position());
}

// Keeps the place under the pixel.
void SectionView::zoom(double factor, const QPointF& pixel) {
    constexpr double finest = 1e-12;
    constexpr double coarsest = 1e12;
    const kit::SectionPlot shown = plot();
    if (shown.shown.is_empty()) {
        return;
    }
    kit::SectionScale scale = scale_.value_or(shown.scale());
    if (std::min(scale.u, scale.v) / factor < finest ||
        std::max(scale.u, scale.v) / factor > coarsest) {
        return;
    }
    const kit::Point2 at = shown.from_pixel({pixel.x(), pixel.y()});
    scale.middle = {at[0] + (scale.middle[0] - at[0]) / factor,
                    at[1] + (scale.middle[1] - at[1]) / factor};
    scale.u /= factor;
    scale.v /= factor;
    scale_ = scale;
    const kit::Point2 moved = plot().from_pixel({pixel.x(), pixel.y()}); // by wider labels
    scale_->middle[0] += at[0] - moved[0];
    scale_->middle[1] += at[1] - moved[1];
    update();
}

void SectionView::show_position(const QPointF& pixel) {
    const auto section = document_.section().section();
    const kit::SectionPlot shown = plot();
    if (section == nullptr || shown.shown.is_empty()) {
        return;
    }
    const kit::Point3 point = in_model(*section, shown.from_pixel({pixel.x(), pixel.y()}));
    const auto text = [](double value) { return QString::number(value, 'g', 7); };
    emit position_changed(
        QStringLiteral("x %1  y %2  z %3").arg(text(point[0]), text(point[1]), text(point[2])));
}

void SectionView::select_at(const QPointF& pixel) {
    const auto section = document_.section().section();
    const kit::SectionPlot shown = plot();
    if (section == nullptr || shown.shown.is_empty()) {
        return;
    }
    const kit::Point2 at = shown.from_pixel({pixel.x(), pixel.y()});
    std::set<int> hit;
    for (const kit::SectionBody& body : section->bodies()) {
        int around = 0;
        for (const int polygon : body.polygons) {
            around += (*section)[polygon].contains(at) ? 1 : 0;
        }
        if (around % 2 != 0 && body.body < document_.solids().solids().size()) {
            hit = {body.body};
        }
    }
    document_.solids().select(std::move(hit));
}

// The rows of the selected bodies.
void SectionView::select_rows() {
    const std::set<int>& selected = document_.solids().selected();
    table_->clearSelection();
    for (int row = 0; !selected.empty() && row < areas_->rowCount(); ++row) {
        if (selected.contains(areas_->body_in(row))) {
            table_->selectionModel()->select(areas_->index(row, 0), QItemSelectionModel::Select |
                                                                        QItemSelectionModel::Rows);
        }
    }
}

void SectionView::copy_areas() {
    QApplication::clipboard()->setText(areas_->text());
}

namespace {

std::vector<std::string> names_of(const kit::Solids& solids) {
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(solids.size()));
    for (const kit::Body body : solids) {
        names.push_back(body.name());
    }
    return names;
}

kit::Point3 in_model(const kit::Section& section, const kit::Point2& seen) {
    const kit::Plane& plane = section.plane();
    const kit::PlaneAxes axes = section.axes();
    const double length = plane.normal_length();
    const double away = -plane.d / length / length;
    const kit::Point3 normal = {plane.a, plane.b, plane.c};
    kit::Point3 point = {};
    for (std::size_t k = 0; k < point.size(); ++k) {
        point[k] = away * normal[k] + seen[0] * axes.u[k] + seen[1] * axes.v[k];
    }
    return point;
}

} // namespace
} // namespace korvel::workbench
