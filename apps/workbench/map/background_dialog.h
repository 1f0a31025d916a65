#pragma once

#include <array>

#include <QString>

#include "kit/kit.h"

namespace korvel::workbench {

class MapView;

/// Asks for a PNG or JPEG file and puts it under the map, as wide as what is shown.
void open_background(MapView& view);

/// Puts a picture under the map, as wide as what is shown; a file that is no picture is reported.
void take_background_file(MapView& view, const QString& file);

/// Asks for the coordinates of two places of the background, given where they are now, and moves
/// the background so.
void ask_background_places(MapView& view, const std::array<kit::Point2, 2>& places);

} // namespace korvel::workbench
