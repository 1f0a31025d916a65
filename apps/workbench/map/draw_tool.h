#pragma once

#include <optional>
#include <vector>

#include "apps/workbench/document/curve_finder.h"
#include "apps/workbench/map/clicked_line_tool.h"

namespace korvel::workbench {

/// Draws a curve: a click adds a point, a double click or Enter ends it, a click on its first point
/// closes it, Backspace removes the last point, Escape all.
class DrawTool : public ClickedLineTool {
public:
    using ClickedLineTool::ClickedLineTool;

    bool press(const MapMouse& mouse) override;
    bool move(const MapMouse& mouse) override;
    void paint(QPainter& painter) override;
    void cancel() override;
    QString hint() const override;

private:
    bool is_at_first(const QPointF& pixel) const;
    void finish() override;

    std::optional<CurvePlace> snapped_to_;
    kit::Placement finest_; // the finest grid on which points were clicked
};

} // namespace korvel::workbench
