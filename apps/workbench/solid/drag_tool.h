#pragma once

#include <optional>
#include <vector>

#include "apps/workbench/document/solid_model.h"
#include "apps/workbench/solid/solid_tool.h"

namespace korvel::workbench {

class SolidView;

/// What moves with the mouse. While it moves, the verdict is shown; where the button is released
/// the move becomes a step, or what moved springs back with the reason in the status bar. A drag
/// that grabs nothing turns the view.
class DragTool : public SolidTool {
public:
    bool press(const SolidMouse& mouse) override;
    bool move(const SolidMouse& mouse) override;
    bool release(const SolidMouse& mouse) override;
    void draw() override;
    void cancel() override;

    /// Of the move as it is tried now; empty while nothing is dragged or it is not known yet.
    const std::optional<kit::Verdict>& verdict() const { return verdict_; }

protected:
    explicit DragTool(SolidView& view) : view_(view) {}

    /// What a press grabs; empty where there is nothing.
    virtual std::optional<SolidChange> grab(const SolidMouse& mouse) = 0;

    /// The move from where the mouse was pressed, while `gathered` has what was grabbed.
    virtual SolidChange move_to(const SolidMouse& mouse) = 0;

    /// For the Edit menu.
    virtual QString step_text() const = 0;

    virtual void draw_gathered() {}

    SolidModel& solids() const;
    SolidView& view() const { return view_; }
    const SolidMouse& pressed() const { return pressed_; }
    bool is_dragging() const;

    /// Of what is gathered, before it moves.
    const std::vector<double>& weights() const { return weights_; }

    /// Gathers anew while the mouse is down, and tries the move again.
    void regather(SolidChange gather);

private:
    void begin();
    void try_to(const SolidMouse& mouse, bool waits_for_verdict);

    SolidView& view_;
    SolidMouse pressed_;
    SolidMouse last_;
    bool is_down_ = false;
    bool has_moved_ = false;
    std::optional<kit::Verdict> verdict_;
    std::vector<double> weights_;
};

} // namespace korvel::workbench
