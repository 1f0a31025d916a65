#include "apps/workbench/solid/scale_body_tool.h"

#include <cmath>

#include <QCoreApplication>

#include "apps/workbench/solid/gathered_marks.h"
#include "apps/workbench/solid/solid_view.h"

namespace korvel::workbench {

std::optional<SolidChange> ScaleBodyTool::grab(const SolidMouse& mouse) {
    const std::optional<int> body = body_at(mouse);
    if (!body) {
        return {};
    }
    body_ = *body;
    solids().select({body_});
    return [body = body_, angles = solids().drawn().view()](kit::SolidsEditor& editor) {
        editor.set_view(angles);
        editor.gather_body(body);
    };
}

// The one under the mouse, or the selected one if the mouse is on its box.
std::optional<int> ScaleBodyTool::body_at(const SolidMouse& mouse) {
    constexpr double reach = 8; // pixels
    if (const std::optional<kit::Pick> pick = solids().pick(mouse.u, mouse.v)) {
        return pick->body;
    }
    const double room = reach * view().frame().unit;
    for (const int body : solids().selected()) {
        const kit::Rectangle box = bounds_in_view(solids().drawn(), {body});
        if (mouse.u >= box.left - room && mouse.u <= box.right + room &&
            mouse.v >= box.top - room && mouse.v <= box.bottom + room) {
            return body;
        }
    }
    return {};
}

SolidChange ScaleBodyTool::move_to(const SolidMouse& mouse) {
    const kit::Point2 from = {pressed().u, pressed().v};
    kit::Point2 to = {mouse.u, mouse.v};
    if (mouse.modifiers.testFlag(Qt::ShiftModifier)) {
        const std::size_t kept = std::abs(to[0] - from[0]) > std::abs(to[1] - from[1]) ? 1 : 0;
        to[kept] = from[kept];
    }
    return [from, to](kit::SolidsEditor& editor) { editor.scale(from, to); };
}

void ScaleBodyTool::draw_gathered() {
    draw_rectangle(bounds_in_view(solids().drawn(), {body_}));
}

QString ScaleBodyTool::step_text() const {
    return QCoreApplication::translate("ScaleBodyTool", "Scale body");
}

QString ScaleBodyTool::hint() const {
    return QCoreApplication::translate(
        "ScaleBodyTool", "Drag a side or a corner of a body's box; Shift drags one side only");
}

} // namespace korvel::workbench
