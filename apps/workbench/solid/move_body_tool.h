#pragma once

#include <set>

#include "apps/workbench/solid/drag_tool.h"
#include "apps/workbench/solid/move_mode.h"

namespace korvel::workbench {

/// Drags a body.
class MoveBodyTool : public DragTool {
public:
    MoveBodyTool(SolidView& view, MoveMode mode) : DragTool(view), mode_(mode) {}

    QString hint() const override;

protected:
    std::optional<SolidChange> grab(const SolidMouse& mouse) override;
    SolidChange move_to(const SolidMouse& mouse) override;
    QString step_text() const override;

private:
    MoveMode mode_;
    kit::Point3 start_ = {};
};

} // namespace korvel::workbench
