#pragma once

#include <optional>

#include "apps/workbench/solid/solid_tool.h"

namespace korvel::workbench {

class SolidView;

/// Drags the plane of the section along its normal, by its handle or anywhere on it.
class PlaneTool : public SolidTool {
public:
    explicit PlaneTool(SolidView& view) : view_(view) {}

    bool press(const SolidMouse& mouse) override;
    bool move(const SolidMouse& mouse) override;
    bool release(const SolidMouse& mouse) override;
    void cancel() override;
    QString hint() const override;

private:
    struct Drag {
        kit::Plane plane; // before
        double u = 0;
        double v = 0;
    };

    bool hits(const SolidMouse& mouse, const kit::Plane& plane) const;
    kit::Plane dragged_to(const SolidMouse& mouse) const;

    SolidView& view_;
    std::optional<Drag> drag_;
};

} // namespace korvel::workbench
