#pragma once

#include <optional>

#include "apps/workbench/solid/solid_tool.h"

namespace korvel::workbench {

class SolidView;

/// A click marks what is there, reports its numbers and coordinates, and selects the body.
class PickTool : public SolidTool {
public:
    explicit PickTool(SolidView& view) : view_(view) {}

    bool press(const SolidMouse& mouse) override;
    bool release(const SolidMouse& mouse) override;
    void draw() override;
    void cancel() override { pick_.reset(); }
    QString hint() const override;

    const std::optional<kit::Pick>& pick() const { return pick_; }

private:
    void select(const SolidMouse& mouse);
    bool is_as_picked() const;

    SolidView& view_;
    QPointF pressed_;
    std::optional<kit::Pick> pick_;
};

} // namespace korvel::workbench
