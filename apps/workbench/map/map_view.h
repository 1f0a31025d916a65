#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <QImage>
#include <QWidget>

#include "apps/workbench/actions/menus.h"
#include "apps/workbench/document/curve_finder.h"
#include "apps/workbench/document/map_model.h"
#include "apps/workbench/flat/flat_viewport.h"
#include "apps/workbench/map/map_tool.h"
#include "apps/workbench/map/snapping.h"

class QDockWidget;

namespace korvel::workbench {

class Document;
class MapActions;

/// The map of a document: a picture under it, regions in distinct colours, curves, and what the
/// chosen tool draws. What is below the tool's drawing is kept as an image while it is the same.
class MapView : public QWidget {
    Q_OBJECT

public:
    explicit MapView(Document& document, QWidget* parent = nullptr);
    ~MapView() override;

    void add_actions(const Menus& menus);

    /// The lists of regions and of problems, for the window.
    std::vector<QDockWidget*> docks() const { return docks_; }

    Document& document() { return document_; }
    MapModel& map();
    const FlatViewport& viewport() const { return viewport_; }
    MapActions& actions_of_map() { return *actions_; }

    /// Shows a part of the map, or all of it.
    void show_part(const kit::Rectangle& part);
    void show_all();
    void zoom(double factor); ///< about the middle
    void pan(const QPointF& pixels);

    void choose(std::unique_ptr<MapTool> tool);
    MapTool& tool() { return *tool_; }

    // For tools.

    /// The grid on which points are drawn: that of the map. One without curves has none yet: then
    /// it has a decimal step that is no wider than a pixel, nor than 1.
    kit::Placement drawing_placement() const;

    /// Where the next point goes: to the place that it snaps to, if there is one, else to the
    /// nearest point of the grid. In the user's coordinates.
    struct Snapped {
        kit::Point2 place = {};
        std::optional<CurvePlace> to = {};
    };
    Snapped snap(const kit::Point2& point, const PointSet& except = {}) const;

    /// The place of a curve within a few pixels, of curves that `except` does not contain.
    std::optional<CurvePlace> place_at(const kit::Point2& point, Find find,
                                       const PointSet& except = {}) const;

    QPointF to_screen(const kit::GridPoint& point) const;

    /// A square around an end, a circle around a point, a cross on a line.
    void paint_mark(QPainter& painter, const CurvePlace& place) const;

    const Snapping& snapping() const { return snapping_; }
    void set_snapping(const Snapping& snapping) { snapping_ = snapping; }

    /// Points that are chosen for changes. None after each change of curves.
    const PointSet& chosen() const { return chosen_; }
    void choose_points(PointSet points);

    // What is drawn.

    void set_triangles_shown(bool shown);
    void set_labels_shown(bool shown);
    void set_problems_shown(bool shown);
    const std::optional<kit::Triangulation>& triangles() const { return triangles_; }
    const QImage& background_picture() const { return background_; }

signals:
    void position_changed(const QString& text); ///< of the mouse, in the user's coordinates
    void hint_changed(const QString& text);
    void points_chosen();
    void tool_changed();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;
    QSize sizeHint() const override { return {600, 500}; }

private:
    MapMouse mouse_of(const QMouseEvent& event) const;
    bool move_by_key(int key);
    void report_position(const kit::Point2& point);
    void update_tool();
    void redraw();
    void draw_picture();
    void take_map();
    void take_background();
    void follow_triangles();

    Document& document_;
    FlatViewport viewport_;
    std::unique_ptr<MapTool> tool_;
    MapActions* actions_ = nullptr;
    std::vector<QDockWidget*> docks_;
    QString hint_;
    Snapping snapping_;
    PointSet chosen_;
    std::optional<QPointF> panned_from_;
    bool is_space_down_ = false;

    QImage picture_; // of all but what the tool draws
    bool is_picture_current_ = false;
    QImage background_;
    std::optional<kit::Triangulation> triangles_;
    bool are_triangles_shown_ = false;
    bool are_labels_shown_ = true;
    bool are_problems_shown_ = true;
};

} // namespace korvel::workbench
