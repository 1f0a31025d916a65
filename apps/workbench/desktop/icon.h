#pragma once

#include <QImage>

namespace korvel::workbench {

/// The program's icon, drawn by korvel itself: the regions of a few curves that look like a cube
/// that is cut. Square, transparent around the cube. Needs no application object.
QImage icon_image(int pixels);

} // namespace korvel::workbench
