#pragma once

#include <optional>
#include <vector>

#include "apps/workbench/map/clicked_line_tool.h"

namespace korvel::workbench {

/// Measures along clicked points: the length of the line, and from three points on the area of the
/// polygon. A double click or Enter ends it, Backspace removes the last point.
class MeasureTool : public ClickedLineTool {
public:
    using ClickedLineTool::ClickedLineTool;

    bool press(const MapMouse& mouse) override;
    bool move(const MapMouse& mouse) override;
    void paint(QPainter& painter) override;
    void cancel() override;
    QString hint() const override;

    // In the user's units, of the clicked points.
    double length() const;
    double area() const; ///< 0 with less than three points

private:
    void finish() override { is_ended_ = true; }
    std::vector<kit::Point2> shown() const;
    QString result(const std::vector<kit::Point2>& points) const;

    bool is_ended_ = false; // the next click begins anew
};

} // namespace korvel::workbench
