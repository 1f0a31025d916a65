#pragma once

#include <set>

#include "apps/workbench/solid/drag_tool.h"
#include "apps/workbench/solid/move_mode.h"

namespace korvel::workbench {

/// Drags the vertex nearest to the mouse with those around it. The wheel sets how many edges far
/// while the button is down, and with Ctrl.
class MoveVertexTool : public DragTool {
public:
    explicit MoveVertexTool(SolidView& view) : DragTool(view) {}

    bool wheel(const SolidMouse& mouse, int steps) override;
    bool key(const QKeyEvent& event) override;
    QString hint() const override;

    void set_mode(MoveMode mode) { mode_ = mode; }
    MoveMode mode() const { return mode_; }
    int depth() const { return depth_; }
    void set_depth(int depth);

protected:
    std::optional<SolidChange> grab(const SolidMouse& mouse) override;
    SolidChange move_to(const SolidMouse& mouse) override;
    QString step_text() const override;
    void draw_gathered() override;

private:
    SolidChange gathering() const;

    MoveMode mode_ = MoveMode::fading;
    int depth_ = 2;
    int vertex_ = 0;
    kit::ViewAngles angles_ = {};
    kit::Point3 start_ = {};
};

} // namespace korvel::workbench
