#pragma once

#include <optional>

#include "apps/workbench/solid/plane_drawing.h"
#include "apps/workbench/solid/solid_tool.h"

namespace korvel::workbench {

class SolidView;

/// Drags the plane of the section along its normal, by its arrow or anywhere on it, and turns it by
/// the end of its normal.
class PlaneTool : public SolidTool {
public:
    explicit PlaneTool(SolidView& view) : view_(view) {}

    bool press(const SolidMouse& mouse) override;
    bool move(const SolidMouse& mouse) override;
    bool release(const SolidMouse& mouse) override;
    void draw() override;
    void cancel() override;
    QString hint() const override;

private:
    struct Drag {
        PlanePart part = PlanePart::plane;
        kit::Plane plane; // before
        kit::Point3 foot = {};
        double u = 0;
        double v = 0;
    };

    PlanePart part_at(const SolidMouse& mouse) const;
    kit::Plane dragged_to(const SolidMouse& mouse) const;
    kit::Plane moved_by(double by_u, double by_v) const;
    void show_cursor(PlanePart part);

    SolidView& view_;
    std::optional<Drag> drag_;
    PlanePart under_mouse_ = PlanePart::none;
};

} // namespace korvel::workbench
