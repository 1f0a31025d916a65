#pragma once

#include <optional>
#include <vector>

#include <QWidget>

#include "apps/workbench/actions/menus.h"
#include "kit/kit.h"

class QDockWidget;
class QTableView;

namespace korvel::workbench {

class Document;
class PlaneActions;
class SectionAreas;

/// The section of a document, filled by the rules of the library, with axes, a scale bar and the
/// names of bodies. The wheel zooms, a drag moves, a click selects the body.
class SectionView : public QWidget {
    Q_OBJECT

public:
    explicit SectionView(Document& document, QWidget* parent = nullptr);

    void add_actions(const Menus& menus);

    /// The choice of the plane, and the areas.
    std::vector<QDockWidget*> docks() const { return docks_; }

    /// How the section is drawn, as large as the widget; with a legend if that has room for it.
    kit::SectionPictureOptions options() const;

    /// Where what is shown; empty while there is no section.
    kit::SectionPlot plot() const;

    /// Shows the whole section again.
    void fit();

    SectionAreas& areas() { return *areas_; }

signals:
    void position_changed(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    QSize sizeHint() const override { return {600, 300}; }

private:
    void add_plane_dock();
    void add_areas_dock();
    void take_section();
    void zoom(double factor, const QPointF& pixel);
    void show_position(const QPointF& pixel);
    void select_at(const QPointF& pixel);
    void select_rows();
    void copy_areas();
    void write_hint(QPainter& painter);

    Document& document_;
    PlaneActions* plane_actions_;
    SectionAreas* areas_;
    QTableView* table_ = nullptr;
    std::vector<QDockWidget*> docks_;
    std::optional<kit::SectionScale> scale_; // none: all is shown
    kit::Point3 normal_ = {};                // of the section that `scale_` belongs to
    std::optional<QPointF> pressed_;
    std::optional<QPointF> dragged_from_;
};

} // namespace korvel::workbench
