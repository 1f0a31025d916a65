#pragma once

#include "apps/workbench/solid/solid_tool.h"

namespace korvel::workbench {

class SolidView;

/// A click inserts a vertex there on the face, or on the nearest edge of the face.
class InsertTool : public SolidTool {
public:
    enum class Place { face, edge };
    InsertTool(SolidView& view, Place place) : view_(view), place_(place) {}

    bool press(const SolidMouse& mouse) override;
    bool release(const SolidMouse& mouse) override;
    QString hint() const override;

private:
    SolidView& view_;
    Place place_;
    QPointF pressed_;
};

} // namespace korvel::workbench
