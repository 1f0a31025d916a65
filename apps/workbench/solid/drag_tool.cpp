#include "apps/workbench/solid/drag_tool.h"

#include <QApplication>
#include <QCoreApplication>

#include "apps/workbench/document/document.h"
#include "apps/workbench/solid/gathered_marks.h"
#include "apps/workbench/solid/pick_report.h"
#include "apps/workbench/solid/solid_view.h"

namespace korvel::workbench {

bool DragTool::press(const SolidMouse& mouse) {
    if (mouse.button != Qt::LeftButton) {
        return false;
    }
    cancel();
    pressed_ = mouse;
    last_ = mouse;
    const std::optional<SolidChange> gather = grab(mouse);
    if (!gather || !solids().begin_trial(*gather)) {
        return false;
    }
    is_down_ = true;
    begin();
    return true;
}

// The weights follow from positions, so they are computed before these change.
void DragTool::begin() {
    kit::SolidsEditor& editor = solids().gathered();
    weights_.clear();
    if (editor.is_faded() && editor.can_fade()) {
        const std::span<const double> weights = editor.weigh();
        weights_.assign(weights.begin(), weights.end());
    } else {
        weights_.assign(editor.vertices().size(), 1);
    }
    view_.update();
}

bool DragTool::move(const SolidMouse& mouse) {
    if (!is_dragging()) {
        return false;
    }
    if (!has_moved_ &&
        (mouse.pixel - pressed_.pixel).manhattanLength() < QApplication::startDragDistance()) {
        return true;
    }
    try_to(mouse, false);
    return true;
}

void DragTool::try_to(const SolidMouse& mouse, bool waits_for_verdict) {
    has_moved_ = true;
    last_ = mouse;
    try {
        verdict_ = solids().try_move(move_to(mouse), waits_for_verdict);
    } catch (const kit::Error& error) {
        cancel();
        view_.show_hint(QString::fromUtf8(error.what()));
        return;
    }
    const kit::Solids& shown = solids().drawn();
    const int first = solids().gathered().vertices().front();
    view_.show_position(QCoreApplication::translate("DragTool", "Vertex %1 at %2")
                            .arg(first)
                            .arg(point_text(shown.vertex(first))));
    view_.show_hint(verdict_ && !verdict_->is_legal() ? QString::fromStdString(kit::text(*verdict_))
                                                      : hint());
}

bool DragTool::release(const SolidMouse& mouse) {
    if (mouse.button != Qt::LeftButton || !is_dragging()) {
        is_down_ = false;
        return false;
    }
    if (!has_moved_) {
        cancel();
        return true;
    }
    try_to(mouse, true);
    if (!is_dragging()) {
        return true;
    }
    const std::optional<kit::Verdict> verdict = verdict_;
    if (verdict && verdict->is_legal()) {
        is_down_ = false;
        has_moved_ = false;
        verdict_.reset();
        solids().keep_trial(step_text());
        view_.show_hint(hint());
    } else {
        cancel();
        view_.show_hint(QCoreApplication::translate("DragTool", "Not moved: %1")
                            .arg(QString::fromStdString(verdict ? kit::text(*verdict) : "")));
    }
    return true;
}

void DragTool::cancel() {
    const bool was_dragging = is_dragging();
    is_down_ = false;
    has_moved_ = false;
    verdict_.reset();
    if (was_dragging) {
        solids().end_trial();
    }
}

void DragTool::regather(SolidChange gather) {
    const bool had_moved = has_moved_;
    if (solids().begin_trial(std::move(gather))) {
        begin();
        if (had_moved) {
            try_to(last_, false);
        }
    }
}

void DragTool::draw() {
    if (!is_dragging()) {
        return;
    }
    draw_gathered();
    if (verdict_ && !verdict_->is_legal()) {
        draw_verdict(solids().drawn(), *verdict_, view_.frame());
    }
}

SolidModel& DragTool::solids() const {
    return view_.document().solids();
}

// Something else may have ended the trial, such as undoing with the keyboard.
bool DragTool::is_dragging() const {
    return is_down_ && solids().is_trying();
}

} // namespace korvel::workbench
