#pragma once

#include <QKeyEvent>
#include <QPointF>
#include <QString>
#include <Qt>

#include "kit/kit.h"

namespace korvel::workbench {

/// Where the mouse is in the view of the solids.
struct SolidMouse {
    QPointF pixel;
    double u = 0; ///< in view coordinates
    double v = 0;
    Qt::MouseButton button = Qt::NoButton; ///< that was pressed or released
    Qt::MouseButtons buttons = {};         ///< that are down
    Qt::KeyboardModifiers modifiers = {};
};

/// What mouse and keys do in the view of the solids while it is chosen. Each is in a file of its
/// own. Handlers return whether the event was used; what is not used turns, pans and zooms.
class SolidTool {
public:
    virtual ~SolidTool() = default;

    virtual bool press(const SolidMouse& /*mouse*/) { return false; }
    virtual bool move(const SolidMouse& /*mouse*/) { return false; }
    virtual bool release(const SolidMouse& /*mouse*/) { return false; }
    virtual bool wheel(const SolidMouse& /*mouse*/, int /*steps*/) { return false; }
    virtual bool key(const QKeyEvent& /*event*/) { return false; }

    /// Draws over the solids with OpenGL, in view coordinates, after `begin_view`.
    virtual void draw() {}

    /// Another tool was chosen, the solids changed, or Escape was pressed: undoes what is tried.
    virtual void cancel() {}

    /// What can be done now, for the status bar.
    virtual QString hint() const = 0;
};

} // namespace korvel::workbench
