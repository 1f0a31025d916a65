#include "apps/workbench/map/clicked_line_tool.h"

namespace korvel::workbench {

// Its first click added a point already.
bool ClickedLineTool::double_click(const MapMouse& /*mouse*/) {
    finish();
    return true;
}

bool ClickedLineTool::key(const QKeyEvent& event) {
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        finish();
        return true;
    case Qt::Key_Backspace:
        if (!points_.empty()) {
            points_.pop_back();
        }
        return true;
    default:
        return false;
    }
}

void ClickedLineTool::cancel() {
    points_.clear();
    next_.reset();
}

} // namespace korvel::workbench
