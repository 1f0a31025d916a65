#pragma once

#include <optional>
#include <vector>

#include "apps/workbench/map/map_tool.h"

namespace korvel::workbench {

class MapView;

/// A tool to which clicks give the points of a line: a double click or Enter ends it, Backspace
/// removes the last point.
class ClickedLineTool : public MapTool {
public:
    explicit ClickedLineTool(MapView& view) : view_(view) {}

    bool double_click(const MapMouse& mouse) override;
    bool key(const QKeyEvent& event) override;
    void cancel() override;

protected:
    virtual void finish() = 0;

    MapView& view_;
    std::vector<kit::Point2> points_; // in the user's coordinates
    std::optional<kit::Point2> next_; // where a click would add one
};

} // namespace korvel::workbench
