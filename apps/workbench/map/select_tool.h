#pragma once

#include "apps/workbench/map/map_tool.h"

namespace korvel::workbench {

class MapView;

/// A click selects the region there, or none; with Ctrl it adds the region or takes it back.
class SelectTool : public MapTool {
public:
    explicit SelectTool(MapView& view) : view_(view) {}

    bool release(const MapMouse& mouse) override;
    bool press(const MapMouse& mouse) override;
    QString hint() const override;

private:
    MapView& view_;
    QPointF pressed_;
};

} // namespace korvel::workbench
