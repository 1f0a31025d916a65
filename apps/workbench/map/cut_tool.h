#pragma once

#include <optional>

#include "apps/workbench/document/curve_finder.h"
#include "apps/workbench/map/map_tool.h"

namespace korvel::workbench {

class MapView;

/// A click on a curve cuts it there in two.
class CutTool : public MapTool {
public:
    explicit CutTool(MapView& view) : view_(view) {}

    bool press(const MapMouse& mouse) override;
    bool move(const MapMouse& mouse) override;
    void paint(QPainter& painter) override;
    void cancel() override { under_.reset(); }
    void curves_changed() override { under_.reset(); }
    QString hint() const override;

private:
    MapView& view_;
    std::optional<CurvePlace> under_; // the mouse
};

} // namespace korvel::workbench
