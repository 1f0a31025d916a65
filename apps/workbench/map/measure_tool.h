#pragma once

#include <optional>
#include <vector>

#include "apps/workbench/map/map_tool.h"

namespace korvel::workbench {

class MapView;

/// Measures along clicked points: the length of the line, and from three points on the area of the
/// polygon. A double click or Enter ends it, Backspace removes the last point.
class MeasureTool : public MapTool {
public:
    explicit MeasureTool(MapView& view) : view_(view) {}

    bool press(const MapMouse& mouse) override;
    bool move(const MapMouse& mouse) override;
    bool double_click(const MapMouse& mouse) override;
    bool key(const QKeyEvent& event) override;
    void paint(QPainter& painter) override;
    void cancel() override;
    QString hint() const override;

    // In the user's units, of the clicked points.
    double length() const;
    double area() const; ///< 0 with less than three points

private:
    std::vector<kit::Point2> shown() const;
    QString result(const std::vector<kit::Point2>& points) const;

    MapView& view_;
    std::vector<kit::Point2> points_;
    std::optional<kit::Point2> next_;
    bool is_ended_ = false; // the next click begins anew
};

} // namespace korvel::workbench
