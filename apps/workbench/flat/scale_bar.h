#pragma once

#include <QPainter>

#include "apps/workbench/flat/flat_viewport.h"

namespace korvel::workbench {

/// Draws a bar of a round length, 1, 2 or 5 times a power of ten, with that length beside it, in
/// the lower left corner. The painter's pen is that of lines and text; `page` is the colour behind.
void paint_scale_bar(QPainter& painter, const FlatViewport& viewport, const QColor& page);

} // namespace korvel::workbench
