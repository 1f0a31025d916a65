#pragma once

#include <optional>

#include "apps/workbench/document/curve_finder.h"
#include "apps/workbench/map/map_tool.h"

namespace korvel::workbench {

class MapView;

/// Clicks on two ends of curves join these to one, with a straight line where the ends are apart.
/// Both ends of one curve close it.
class JoinTool : public MapTool {
public:
    explicit JoinTool(MapView& view) : view_(view) {}

    bool press(const MapMouse& mouse) override;
    bool move(const MapMouse& mouse) override;
    void paint(QPainter& painter) override;
    void cancel() override;
    void curves_changed() override { cancel(); }
    QString hint() const override;

private:
    std::optional<CurvePlace> end_at(const kit::Point2& point) const;

    MapView& view_;
    std::optional<CurvePlace> first_; // end that was clicked
    std::optional<CurvePlace> under_; // the mouse
    QPointF mouse_;
};

} // namespace korvel::workbench
