#pragma once

#include "apps/workbench/solid/drag_tool.h"

namespace korvel::workbench {

/// Scales a body in the view by dragging the sides of its box that are next to the mouse; the
/// opposite ones stay. Shift drags only the side towards which the mouse has moved more.
class ScaleBodyTool : public DragTool {
public:
    explicit ScaleBodyTool(SolidView& view) : DragTool(view) {}

    QString hint() const override;

protected:
    std::optional<SolidChange> grab(const SolidMouse& mouse) override;
    SolidChange move_to(const SolidMouse& mouse) override;
    QString step_text() const override;
    void draw_gathered() override;

private:
    std::optional<int> body_at(const SolidMouse& mouse);

    int body_ = 0;
};

} // namespace korvel::workbench
