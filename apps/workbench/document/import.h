#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include <QString>

#include "apps/workbench/document/curves.h"
#include "apps/workbench/document/map_model.h"
#include "kit/kit.h"

namespace korvel::workbench {

/// How a file is read.
struct ImportOptions {
    kit::GridChoice grid = {};
    kit::ReadFeaturesOptions features = {}; ///< the layer and a condition
    bool adds = false;                      ///< solids to those that there are
};

/// What a file contains.
struct Imported {
    std::optional<Curves> curves = {};
    std::vector<RegionNote> notes = {}; ///< names of regions
    std::optional<kit::Solids> solids = {};
    QString report = {}; ///< for the user: "48 curves with 3300 points"
};

/// Reads a file of any kind that the kit reads as a map or as solids. Throws a kit::Error, also for
/// a section or a triangle file, which contain neither.
Imported import_file(const std::filesystem::path& file, const ImportOptions& options,
                     const kit::Context& context);

} // namespace korvel::workbench
