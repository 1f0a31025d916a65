#pragma once

#include <filesystem>

namespace korvel::workbench {

class MapView;

/// Asks for the file of a map, and then how it is read.
void import_map(MapView& view);

/// Asks for the grid, the layer and the condition with which a map is read, and shows what comes of
/// them before the map is replaced.
void open_import_dialog(MapView& view, const std::filesystem::path& file);

} // namespace korvel::workbench
