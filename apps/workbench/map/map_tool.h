#pragma once

#include <QKeyEvent>
#include <QPainter>
#include <QPointF>
#include <QString>
#include <Qt>

#include "kit/kit.h"

namespace korvel::workbench {

/// Where the mouse is in a map.
struct MapMouse {
    QPointF pixel;
    kit::Point2 point = {};                ///< in the user's coordinates
    Qt::MouseButton button = Qt::NoButton; ///< that was pressed or released
    Qt::MouseButtons buttons = {};         ///< that are down
    Qt::KeyboardModifiers modifiers = {};
};

/// What mouse and keys do in the map while it is chosen. Each is in a file of its own. Handlers
/// return whether the event was used; what is not used pans and zooms.
class MapTool {
public:
    virtual ~MapTool() = default;

    virtual bool press(const MapMouse& /*mouse*/) { return false; }
    virtual bool move(const MapMouse& /*mouse*/) { return false; }
    virtual bool release(const MapMouse& /*mouse*/) { return false; }
    virtual bool double_click(const MapMouse& /*mouse*/) { return false; }
    virtual bool key(const QKeyEvent& /*event*/) { return false; }

    /// Draws over the map, in pixels.
    virtual void paint(QPainter& /*painter*/) {}

    /// Another tool was chosen, or Escape was pressed: drops what is not finished.
    virtual void cancel() {}

    /// Curves are others now, by this tool or not: their numbers and points may differ.
    virtual void curves_changed() {}

    /// What can be done now, for the status bar.
    virtual QString hint() const = 0;
};

} // namespace korvel::workbench
