#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <QString>

#include "apps/workbench/document/curves.h"
#include "apps/workbench/document/map_model.h"
#include "kit/kit.h"

namespace korvel::workbench {

/// How a file is read. Reference systems are as `kit::projection` takes them.
struct ImportOptions {
    kit::GridChoice grid = {};              ///< in the coordinates that the map gets
    kit::ReadFeaturesOptions features = {}; ///< the layer and a condition
    std::string reference = {}; ///< what the file's coordinates are in; empty: what the file names
    std::string project = {};   ///< what they are transformed to; empty: nothing
    bool adds = false;          ///< solids to those that there are
};

/// A map as its file has it.
struct MapSource {
    bool is_read = false;
    std::vector<std::string> layers = {}; ///< of the file, where there are several
    std::string reference = {};           ///< the system that the file names
    kit::Rectangle bounds = {};           ///< of its coordinates
};

/// What a file contains.
struct Imported {
    std::optional<Curves> curves = {};
    std::vector<RegionNote> notes = {}; ///< names of regions
    std::optional<kit::Solids> solids = {};
    QString report = {};      ///< for the user: "48 curves with 3300 points"
    double largest_shift = 0; ///< the farthest that a coordinate of the map was moved to the grid
};

/// Reads a file of any kind that the kit reads as a map or as solids. Throws a kit::Error, also for
/// a section or a triangle file, which contain neither, and for a map that cannot be transformed.
Imported import_file(const std::filesystem::path& file, const ImportOptions& options,
                     const kit::Context& context);

/// The same, and what is known of a map also where an error is thrown.
Imported import_file(const std::filesystem::path& file, const ImportOptions& options,
                     const kit::Context& context, MapSource& source);

} // namespace korvel::workbench
