#pragma once

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "apps/workbench/document/curves.h"
#include "apps/workbench/document/find_map.h"
#include "apps/workbench/document/map_model.h"
#include "kit/kit.h"

namespace korvel::workbench {

/// What a project file contains; docs/files.md describes it.
struct Project {
    Curves curves = {};
    std::vector<RegionNote> notes = {};
    std::optional<double> tolerance = {};
    Background background = {};
    kit::StoredSolids solids = {};
    kit::ViewAngles view = {};
    std::set<int> hidden = {}; ///< bodies
    std::optional<kit::Plane> plane = {};

    /// Of what is kept in case of a crash: the project file that it belongs to, empty for none.
    std::string saved_as = {};
};

/// Writes a project file, completely or not at all. Throws a kit::Error.
void write_project(const Project& project, const std::filesystem::path& file);

/// Reads one. Coordinates are what they were to the last digit. Throws a kit::Error that names the
/// file, the entry in it, and what is wrong there.
Project read_project(const std::filesystem::path& file, const kit::Context& context = {});

/// Whether the name is that of a project file: it ends with ".korvel".
bool is_project_file(const std::filesystem::path& file);

} // namespace korvel::workbench
