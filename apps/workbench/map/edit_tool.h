#pragma once

#include <optional>
#include <vector>

#include "apps/workbench/document/curve_finder.h"
#include "apps/workbench/map/map_tool.h"

namespace korvel::workbench {

class MapView;

/// Changes points of curves. A click chooses a point with all that are at its place, or a curve; a
/// drag moves the chosen points, and points of other curves at the same places with them unless Alt
/// is down; a drag from where nothing is chooses the points in a rectangle; a double click on a
/// line inserts a point. Ctrl adds to what is chosen.
class EditTool : public MapTool {
public:
    explicit EditTool(MapView& view) : view_(view) {}

    bool press(const MapMouse& mouse) override;
    bool move(const MapMouse& mouse) override;
    bool release(const MapMouse& mouse) override;
    bool double_click(const MapMouse& mouse) override;
    void paint(QPainter& painter) override;
    void cancel() override;
    void curves_changed() override;
    QString hint() const override;

private:
    enum class Drag { none, points, rectangle };

    void choose(const CurvePlace& place, bool adds);
    PointSet moving(Qt::KeyboardModifiers modifiers) const;
    void drag_points(const MapMouse& mouse);
    void choose_rectangle(bool adds);
    void paint_points(QPainter& painter) const;
    void paint_moved(QPainter& painter) const;

    MapView& view_;
    Drag drag_ = Drag::none;
    std::optional<CurvePlace> under_; // the mouse
    std::optional<CurvePlace> snapped_to_;
    QPointF pressed_;
    QPointF dragged_to_;
    kit::GridPoint grip_ = {}; // the place of the point that was pressed
    kit::GridPoint way_ = {};  // of the moving points
    PointSet moving_;
};

} // namespace korvel::workbench
