#pragma once

#include <array>
#include <optional>

#include "apps/workbench/document/map_model.h"
#include "apps/workbench/map/map_tool.h"

namespace korvel::workbench {

class MapView;

/// Clicks on two places of the background picture, for which a dialog asks the coordinates then:
/// the picture is moved, turned and scaled to have them there.
class BackgroundTool : public MapTool {
public:
    explicit BackgroundTool(MapView& view) : view_(view) {}

    bool press(const MapMouse& mouse) override;
    void paint(QPainter& painter) override;
    void cancel() override { first_.reset(); }
    QString hint() const override;

private:
    MapView& view_;
    std::optional<kit::Point2> first_; // in the user's coordinates
};

/// A background of which two pixels get other coordinates, without a change of shape. Nothing where
/// the pixels or the coordinates of both are the same.
std::optional<Background> placed(const Background& background,
                                 const std::array<kit::Point2, 2>& pixels,
                                 const std::array<kit::Point2, 2>& users);

} // namespace korvel::workbench
