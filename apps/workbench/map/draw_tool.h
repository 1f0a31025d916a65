#pragma once

#include <optional>
#include <vector>

#include "apps/workbench/document/curve_finder.h"
#include "apps/workbench/map/map_tool.h"

namespace korvel::workbench {

class MapView;

/// Draws a curve: a click adds a point, a double click or Enter ends it, a click on its first point
/// closes it, Backspace removes the last point, Escape all.
class DrawTool : public MapTool {
public:
    explicit DrawTool(MapView& view) : view_(view) {}

    bool press(const MapMouse& mouse) override;
    bool move(const MapMouse& mouse) override;
    bool double_click(const MapMouse& mouse) override;
    bool key(const QKeyEvent& event) override;
    void paint(QPainter& painter) override;
    void cancel() override;
    QString hint() const override;

private:
    bool is_at_first(const QPointF& pixel) const;
    void finish();

    MapView& view_;
    std::vector<kit::Point2> points_; // in the user's coordinates
    std::optional<kit::Point2> next_; // where a click would add one
    std::optional<CurvePlace> snapped_to_;
    kit::Placement finest_; // the finest grid on which points were clicked
};

} // namespace korvel::workbench
