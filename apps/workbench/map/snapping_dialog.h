#pragma once

namespace korvel::workbench {

class MapView;

/// Asks for the distance within which points snap, in pixels or in units of the map.
void open_snapping_dialog(MapView& view);

} // namespace korvel::workbench
